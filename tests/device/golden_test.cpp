// Golden transcripts: recorded requests and what came back, replayed
// against the real executable in the device root. A case names the files
// it starts with (as changes from the freshly reset root), the request, and
// then the exit status, answer, diagnostics, signals and every file the
// request changed. Files are text in quotes, or bytes as a base pattern
// with the offsets that differ from it.
//
// Re-recording after a deliberate change (never done by a plain run):
//   ZRCAMCTL_GOLDEN_RECORD=1 ctest --preset host -R Golden
#include <dirent.h>
#include <gtest/gtest.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <map>
#include <sstream>

#include "device_test_config.h"
#include "tests/device/device_root.h"

namespace device_test {
namespace {

struct Entry {
  char kind;  // 'f' file, 'd' directory, 'l' link
  std::string data;
  bool operator==(const Entry&) const = default;
};
using Tree = std::map<std::string, Entry>;

// What a request may read or change: everything but the programs, the
// libraries and the kernel's files; the basic configuration and the shell's
// cat are watched on their own.
void Walk(const std::string& host, const std::string& path, Tree& tree) {
  static const char* const kSkip[] = {"/bin", "/usr", "/lib", "/dev", "/proc", "/web/cgi-bin"};
  for (const char* s : kSkip)
    if (path == s) return;
  DIR* dir = opendir((host + path).c_str());
  if (!dir) return;
  while (const dirent* e = readdir(dir)) {
    const std::string name = e->d_name;
    if (name == "." || name == "..") continue;
    const std::string p = path + "/" + name;
    struct stat st;
    if (lstat((host + p).c_str(), &st) != 0) continue;
    if (S_ISDIR(st.st_mode)) {
      tree[p] = {'d', ""};
      Walk(host, p, tree);
    } else if (S_ISLNK(st.st_mode)) {
      char target[512];
      const ssize_t n = readlink((host + p).c_str(), target, sizeof target);
      tree[p] = {'l', std::string(target, n > 0 ? n : 0)};
    } else if (S_ISREG(st.st_mode)) {
      tree[p] = {'f', Slurp(host + p)};
    }
  }
  closedir(dir);
}

Tree Snapshot(const DeviceRoot& root) {
  Tree tree;
  Walk(root.HostPath(""), "", tree);
  for (const char* p : {"/bin/cat", "/proc/driver/qe_basic_conf"}) {
    struct stat st;
    if (lstat(root.HostPath(p).c_str(), &st) == 0) tree[p] = S_ISLNK(st.st_mode) ? Entry{'l', "busybox"} : Entry{'f', *root.ReadFile(p)};
  }
  return tree;
}

std::string Quoted(const std::string& s) {
  std::string q = "\"";
  for (const unsigned char c : s) {
    if (c == '\n') q += "\\n";
    else if (c == '"' || c == '\\') q += std::string("\\") + static_cast<char>(c);
    else if (c < 0x20 || c > 0x7e) {
      char hex[5];
      snprintf(hex, sizeof hex, "\\x%02x", c);
      q += hex;
    } else {
      q += static_cast<char>(c);
    }
  }
  return q + "\"";
}

// The quoted string at the start of s; s is left after it.
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

bool IsText(const std::string& path, const std::string& s) {
  if (s.size() > 4096 || path.size() < 4 || path.substr(path.size() - 4) == ".bin") return false;
  for (const unsigned char c : s)
    if ((c < 0x20 && c != '\n' && c != '\t') || c > 0x7e) return false;
  return true;
}

uint8_t PatternByte(uint8_t seed, size_t i) { return static_cast<uint8_t>(seed + i * 37); }

// Bytes as their differences from a reference: "bytes SIZE BASE" and one
// "  at OFFSET: hh hh ..." line per run of changed bytes.
std::string DescribeBytes(const std::string& now, const std::string* was) {
  auto base = [&](int kind, size_t i) -> uint8_t {
    if (kind == 0) return i < was->size() ? static_cast<uint8_t>((*was)[i]) : 0;
    if (kind == 1) return 0;
    const uint8_t first = now.empty() ? 0 : static_cast<uint8_t>(now[0]);
    return kind == 2 ? first : PatternByte(first, i);
  };
  int best = -1;
  size_t fewest = SIZE_MAX;
  for (int kind = was ? 0 : 1; kind < 4; ++kind) {
    size_t n = 0;
    for (size_t i = 0; i < now.size(); ++i) n += static_cast<uint8_t>(now[i]) != base(kind, i);
    if (n < fewest) fewest = n, best = kind;
  }
  char head[64];
  const unsigned first = now.empty() ? 0 : static_cast<uint8_t>(now[0]);
  static const char* const kBase[] = {"was", "zeros", "fill", "pattern"};
  snprintf(head, sizeof head, "bytes %zu %s", now.size(), kBase[best]);
  std::string out = head;
  if (best >= 2) snprintf(head, sizeof head, " %02x", first), out += head;
  for (size_t i = 0; i < now.size();) {
    if (static_cast<uint8_t>(now[i]) == base(best, i)) {
      ++i;
      continue;
    }
    snprintf(head, sizeof head, "\n  at %zu:", i);
    out += head;
    // A run goes on across up to three unchanged bytes, 16 bytes a line.
    size_t end = i + 1;
    for (size_t j = end; j < now.size() && j < i + 16 && j < end + 4; ++j)
      if (static_cast<uint8_t>(now[j]) != base(best, j)) end = j + 1;
    for (; i < end; ++i) {
      snprintf(head, sizeof head, " %02x", static_cast<uint8_t>(now[i]));
      out += head;
    }
  }
  return out;
}

std::string Describe(const std::string& path, const Entry* now, const Entry* was) {
  if (!now) return "gone";
  if (now->kind == 'd') return "dir";
  if (now->kind == 'l') return "link " + Quoted(now->data);
  if (IsText(path, now->data) && (!was || was->kind != 'f' || IsText(path, was->data))) return Quoted(now->data);
  return DescribeBytes(now->data, was && was->kind == 'f' ? &was->data : nullptr);
}

std::string Changes(const Tree& before, const Tree& after, const std::string& prefix) {
  std::string out;
  auto line = [&](const std::string& path) {
    const auto b = before.find(path), a = after.find(path);
    const Entry* was = b == before.end() ? nullptr : &b->second;
    const Entry* now = a == after.end() ? nullptr : &a->second;
    if (was && now && *was == *now) return;
    out += prefix + path + " " + Describe(path, now, was) + "\n";
  };
  for (const auto& [path, e] : before) line(path);
  for (const auto& [path, e] : after)
    if (!before.count(path)) line(path);
  return out;
}

// Daemon pids differ from run to run; pid files name them by placeholder.
std::string PidsOut(const DeviceRoot& root, std::string s) {
  for (const char* d : {"zrcamctld", "vmfd"}) {
    const std::string pid = std::to_string(root.DaemonPid(d)), mark = std::string("$") + d;
    for (size_t at; (at = s.find("/var/run/" + std::string(d) + ".pid \"" + pid)) != std::string::npos;)
      s.replace(s.find(pid, at), pid.size(), mark);
  }
  return s;
}

struct Case {
  std::string name;
  std::string argv0;
  Request request;
  std::string given;     // the case's "given" lines, as written
  std::string expected;  // everything between "expect" and "end"
};

std::string Outcome(const DeviceRoot& root, const Tree& before, const Answer& a) {
  std::string out = a.termSignal ? "signal " + std::to_string(a.termSignal) : "exit " + std::to_string(a.exitStatus);
  out += "\nout " + Quoted(a.out) + "\nerr " + Quoted(a.err) + "\n";
  for (const auto& [name, sigs] : {std::pair{"zrcamctld", &a.zrcamctldSignals}, {"vmfd", &a.vmfdSignals}}) {
    if (sigs->empty()) continue;
    out += name;
    for (int s : *sigs) out += " " + std::to_string(s);
    out += "\n";
  }
  return out + PidsOut(root, Changes(before, Snapshot(root), ""));
}

// Writes the given files into the freshly reset root.
void Apply(const DeviceRoot& root, const std::string& given) {
  std::istringstream lines(given);
  std::string line, path, content;
  char kind = 0;
  auto flush = [&] {
    if (kind == 'b') root.WriteFile(path, content);
    kind = 0;
  };
  while (std::getline(lines, line)) {
    std::string_view rest(line);
    if (rest.substr(0, 5) == "  at ") {
      size_t at = std::stoul(std::string(rest.substr(5)));
      rest.remove_prefix(rest.find(':') + 1);
      for (; rest.size() >= 3; rest.remove_prefix(3)) content.at(at++) = static_cast<char>(std::stoi(std::string(rest.substr(1, 2)), nullptr, 16));
      continue;
    }
    flush();
    if (line.rfind("given ", 0) != 0) continue;  // the request's own lines
    rest.remove_prefix(6);
    path = std::string(rest.substr(0, rest.find(' ')));
    rest.remove_prefix(path.size() + 1);
    const std::string host = root.HostPath(path);
    root.RemoveAll(path);
    if (rest == "gone") continue;
    root.MakeDirs(path);
    if (rest == "dir") {
      mkdir(host.c_str(), 0755);
    } else if (rest.substr(0, 5) == "link ") {
      rest.remove_prefix(5);
      (void)!symlink(Unquote(rest).c_str(), host.c_str());
    } else if (rest[0] == '"') {
      std::string text = Unquote(rest);
      for (const char* d : {"zrcamctld", "vmfd"}) {
        const size_t at = text.find(std::string("$") + d);
        if (at != std::string::npos) text.replace(at, strlen(d) + 1, std::to_string(root.DaemonPid(d)));
      }
      root.WriteFile(path, text);
    } else {  // bytes SIZE BASE [SEED]
      unsigned size = 0, seed = 0;
      char base[16] = "";
      sscanf(std::string(rest).c_str(), "bytes %u %15s %x", &size, base, &seed);
      content.assign(size, base[0] == 'z' ? 0 : static_cast<char>(seed));
      if (base[0] == 'p')
        for (size_t i = 0; i < size; ++i) content[i] = static_cast<char>(PatternByte(static_cast<uint8_t>(seed), i));
      kind = 'b';
    }
  }
  flush();
}

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

std::string Format(const Case& c) { return "case " + c.name + "\n" + c.given + "expect\n" + c.expected + "end\n"; }

std::string Replay(DeviceRoot& root, const Case& c) {
  root.Reset();
  Apply(root, c.given);
  const Tree before = Snapshot(root);
  return Outcome(root, before, root.RunAs(c.argv0, c.request));
}

std::vector<std::string> GoldenFiles() {
  std::vector<std::string> files;
  if (DIR* dir = opendir(ZRCAMCTL_GOLDEN_DIR)) {
    while (const dirent* e = readdir(dir)) {
      const std::string name = e->d_name;
      if (name.size() > 7 && name.substr(name.size() - 7) == ".golden") files.push_back(name.substr(0, name.size() - 7));
    }
    closedir(dir);
  }
  std::sort(files.begin(), files.end());
  return files;
}

class Golden : public ::testing::TestWithParam<std::string> {};

TEST_P(Golden, Replays) {
  DeviceRoot& root = DeviceRoot::Get();
  const std::string file = std::string(ZRCAMCTL_GOLDEN_DIR) + "/" + GetParam() + ".golden";
  std::vector<Case> cases = Parse(file);
  ASSERT_FALSE(cases.empty()) << file;
  const bool record = getenv("ZRCAMCTL_GOLDEN_RECORD") != nullptr;
  std::string rewritten;
  for (Case& c : cases) {
    const std::string got = Replay(root, c);
    if (record) c.expected = got;
    EXPECT_EQ(got, c.expected) << file << ": case " << c.name << "\n" << c.given;
    rewritten += Format(c);
  }
  if (record) std::ofstream(file, std::ios::binary | std::ios::trunc) << rewritten;
}

INSTANTIATE_TEST_SUITE_P(Transcripts, Golden, ::testing::ValuesIn(GoldenFiles()),
                         [](const auto& info) {
                           std::string n = info.param;
                           for (char& ch : n)
                             if (!isalnum(static_cast<unsigned char>(ch))) ch = '_';
                           return n;
                         });

}  // namespace
}  // namespace device_test
