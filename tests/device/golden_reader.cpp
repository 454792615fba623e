#include "tests/device/golden_reader.h"

#include <ctype.h>
#include <dirent.h>
#include <stdio.h>

#include <algorithm>
#include <fstream>
#include <sstream>

namespace device_test {

std::string Unquote(std::string_view& s) {
  std::string out;
  size_t i = 1;
  for (; i < s.size() && s[i] != '"'; ++i) {
    if (s[i] != '\\') {
      out += s[i];
    } else if (s[++i] == 'n') {
      out += '\n';
    } else if (s[i] == 'x') {
      out += static_cast<char>(std::stoi(std::string(s.substr(i + 1, 2)), nullptr, 16));
      i += 2;
    } else {
      out += s[i];
    }
  }
  s.remove_prefix(std::min(s.size(), i + 1));
  return out;
}

uint8_t PatternByte(uint8_t seed, size_t i) { return static_cast<uint8_t>(seed + i * 37); }

std::vector<Case> Parse(const std::string& file) {
  std::vector<Case> cases;
  std::ifstream in(file);
  bool expecting = false;
  for (std::string line; std::getline(in, line);) {
    if (line.rfind("case ", 0) == 0) {
      cases.push_back({line.substr(5), "", {.method = "", .contentType = "", .contentLength = ""}, "", ""});
      expecting = false;
      continue;
    }
    if (cases.empty() || line == "end") continue;
    Case& c = cases.back();
    if (expecting || line == "expect") {
      if (expecting) c.expected += line + "\n";
      expecting = true;
      continue;
    }
    c.given += line + "\n";
    std::string_view rest(line);
    rest.remove_prefix(std::min(rest.size(), rest.find(' ') + 1));
    if (line.rfind("argv0 ", 0) == 0) {
      c.argv0 = rest;
    } else if (line.rfind("env ", 0) == 0) {
      const std::string e = Unquote(rest);
      c.request.env.push_back({e.substr(0, e.find('=')), e.substr(e.find('=') + 1)});
    } else if (line.rfind("stdin ", 0) == 0) {
      c.request.body = Unquote(rest);
    }
  }
  return cases;
}

std::vector<std::string> GoldenFiles(const std::string& directory) {
  std::vector<std::string> files;
  if (DIR* dir = opendir(directory.c_str())) {
    while (const dirent* e = readdir(dir)) {
      const std::string name = e->d_name;
      if (name.size() > 7 && name.substr(name.size() - 7) == ".golden") files.push_back(name.substr(0, name.size() - 7));
    }
    closedir(dir);
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::string GoldenName(const ::testing::TestParamInfo<std::string>& info) {
  std::string n = info.param;
  for (char& ch : n)
    if (!isalnum(static_cast<unsigned char>(ch))) ch = '_';
  return n;
}

std::vector<FileLine> FileLines(const std::string& text, const std::string& prefix,
                                const std::map<std::string, std::string>& was) {
  std::vector<FileLine> files;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    std::string_view rest(line);
    if (rest.substr(0, 5) == "  at ") {
      if (files.empty()) continue;
      size_t at = std::stoul(std::string(rest.substr(5)));
      rest.remove_prefix(rest.find(':') + 1);
      for (; rest.size() >= 3; rest.remove_prefix(3))
        files.back().bytes.at(at++) = static_cast<char>(std::stoi(std::string(rest.substr(1, 2)), nullptr, 16));
      continue;
    }
    if (line.compare(0, prefix.size(), prefix) != 0 || line.size() <= prefix.size() || line[prefix.size()] != '/')
      continue;
    rest.remove_prefix(prefix.size());
    FileLine file;
    file.path = std::string(rest.substr(0, rest.find(' ')));
    rest.remove_prefix(std::min(rest.size(), file.path.size() + 1));
    file.description = rest;
    if (rest.substr(0, 6) == "bytes ") {  // bytes SIZE BASE [SEED]
      unsigned size = 0, seed = 0;
      char base[16] = "";
      sscanf(std::string(rest).c_str(), "bytes %u %15s %x", &size, base, &seed);
      file.bytes.assign(size, base[0] == 'z' ? 0 : static_cast<char>(seed));
      const auto before = was.find(file.path);
      for (size_t i = 0; i < size; ++i) {
        if (base[0] == 'p') file.bytes[i] = static_cast<char>(PatternByte(static_cast<uint8_t>(seed), i));
        if (base[0] == 'w') file.bytes[i] = before != was.end() && i < before->second.size() ? before->second[i] : 0;
      }
    }
    files.push_back(file);
  }
  return files;
}

}  // namespace device_test
