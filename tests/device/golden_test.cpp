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

#include "device_test_config.h"
#include "tests/device/device_root.h"
#include "tests/device/golden_reader.h"

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

bool IsText(const std::string& path, const std::string& s) {
  if (s.size() > 4096 || path.size() < 4 || path.substr(path.size() - 4) == ".bin") return false;
  for (const unsigned char c : s)
    if ((c < 0x20 && c != '\n' && c != '\t') || c > 0x7e) return false;
  return true;
}

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
  for (const FileLine& file : FileLines(given, "given ")) {
    std::string_view rest(file.description);
    const std::string host = root.HostPath(file.path);
    root.RemoveAll(file.path);
    if (rest == "gone") continue;
    root.MakeDirs(file.path);
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
      root.WriteFile(file.path, text);
    } else {
      root.WriteFile(file.path, file.bytes);
    }
  }
}

std::string Format(const Case& c) { return "case " + c.name + "\n" + c.given + "expect\n" + c.expected + "end\n"; }

std::string Replay(DeviceRoot& root, const Case& c) {
  root.Reset();
  Apply(root, c.given);
  const Tree before = Snapshot(root);
  return Outcome(root, before, root.RunAs(c.argv0, c.request));
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

INSTANTIATE_TEST_SUITE_P(Transcripts, Golden, ::testing::ValuesIn(GoldenFiles(ZRCAMCTL_GOLDEN_DIR)), GoldenName);

}  // namespace
}  // namespace device_test
