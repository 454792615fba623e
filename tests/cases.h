// Table-driven cases kept as data: tests/<suite>/data/<name>.cases, one case
// a line, its fields between " | ". A line starting with "#" is a comment;
// "@name = text" names a text that "${name}" stands for further down;
// "{{N*text}}" is text N times; \n \r \t \v \f \0 \\ are the C escapes and
// \e is nothing (an empty field, or an end a trailing blank would not show).
// Also the files cases work on: a whole file, a directory of a test's own.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>
#include <string.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace cases {

// A whole file ("" when it cannot be read).
inline std::string ReadAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream all;
  all << in.rdbuf();
  return all.str();
}

// A test in a fresh directory of its own, removed after it.
class InTempDir : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_NE(mkdtemp(dir.data()), nullptr); }
  void TearDown() override { std::filesystem::remove_all(dir); }
  std::string dir = "/tmp/zrcamctl-test.XXXXXX";
};

using Case = std::vector<std::string>;
using Names = std::map<std::string, std::string>;

inline std::string Expand(const std::string& in, const Names& names) {
  std::string out;
  for (size_t i = 0; i < in.size(); ++i) {
    if (in[i] == '\\' && i + 1 < in.size()) {
      static const char kFrom[] = "nrtvf0", kTo[] = "\n\r\t\v\f";
      const char c = in[++i];
      const char* at = strchr(kFrom, c);
      if (c != 'e') out += at ? kTo[at - kFrom] : c;  // kTo[5] is the NUL
    } else if (in.compare(i, 2, "${") == 0) {
      const size_t end = in.find('}', i);
      out += names.at(in.substr(i + 2, end - i - 2));
      i = end;
    } else if (in.compare(i, 2, "{{") == 0) {
      const size_t star = in.find('*', i), end = in.find("}}", star);
      const std::string text = Expand(in.substr(star + 1, end - star - 1), names);
      for (int n = atoi(in.c_str() + i + 2); n > 0; --n) out += text;
      i = end + 1;
    } else {
      out += in[i];
    }
  }
  return out;
}

// The cases of tests/<suite>/data/<name>.cases (a failure when there are
// none); names: texts the test makes, for "${name}".
inline std::vector<Case> Read(const std::string& suite, const std::string& name, Names names = {}) {
  const std::string path = ZRCAMCTL_TESTS_DIR "/" + suite + "/data/" + name + ".cases";
  std::ifstream in(path);
  std::vector<Case> all;
  for (std::string line; std::getline(in, line);) {
    if (line.empty() || line[0] == '#') continue;
    if (line[0] == '@') {
      const size_t eq = line.find(" = ");
      names[line.substr(1, eq - 1)] = Expand(line.substr(eq + 3), names);
      continue;
    }
    Case& fields = all.emplace_back();
    for (size_t at = 0, bar;; at = bar + 3) {
      bar = line.find(" | ", at);
      fields.push_back(Expand(line.substr(at, bar - at), names));
      if (bar == std::string::npos) break;
    }
  }
  if (all.empty()) ADD_FAILURE() << "no cases in " << path;
  return all;
}

}  // namespace cases
