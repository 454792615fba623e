// Golden transcripts: recorded requests and what came back, replayed
// against the real executable in the device root. A case names the files
// it starts with (as changes from the freshly reset root), the request, and
// then the exit status, answer, diagnostics, signals and every file the
// request changed. Files are text in quotes, or bytes as a base pattern
// with the offsets that differ from it.
//
// Re-recording after a deliberate change (never done by a plain run):
//   ZRCAMCTL_GOLDEN_RECORD=1 ctest --preset host -R Golden
#include <gtest/gtest.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string_view>

#include "tests/cases.h"
#include "tests/device/device_root.h"
#include "inspect/family_notes.h"
#include "inspect/record_keys.h"
#include "modules/module_table.h"

namespace device_test {
namespace {

struct Case {
  std::string name;
  std::string argv0;
  Request request;
  std::string given;     // the case's "given" lines, as written
  std::string expected;  // everything between "expect" and "end"
};

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

std::vector<Case> Parse(const std::string& file) {
  std::vector<Case> cases;
  std::ifstream in(file);
  bool expecting = false;
  for (std::string line; std::getline(in, line);) {
    if (line.rfind("case ", 0) == 0) {
      cases.push_back({line.substr(5), "", {.form = false}, "", ""});
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

// The transcripts' names (without ".golden"), sorted.
std::vector<std::string> GoldenFiles() {
  std::vector<std::string> files;
  for (const std::string& name : ListHost(ZRCAMCTL_TESTS_DIR "/golden"))
    if (name.ends_with(".golden")) files.push_back(name.substr(0, name.size() - 7));
  return files;
}

// A file of a case: a "given PATH ..." line, or a changed file of the outcome.
struct FileLine {
  std::string path;
  std::string description;  // "gone", "dir", "link ...", a quoted text, or "bytes SIZE BASE [SEED]"
  std::string bytes;        // a bytes file's content, its "  at" lines applied
};

// The file lines of `text` that start with `prefix` and a path. A "was"
// base is the same path's content in `was` (zeros past its end).
std::vector<FileLine> FileLines(const std::string& text, const std::string& prefix,
    const std::map<std::string, std::string>& was = {}) {
  std::vector<FileLine> files;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    std::string_view rest(line);
    if (rest.substr(0, 5) == "  at ") {
      if (files.empty()) continue;
      size_t at = std::stoul(std::string(rest.substr(5)));
      rest.remove_prefix(rest.find(':') + 1);
      for (; rest.size() >= 3; rest.remove_prefix(3))
        files.back().bytes.at(at++) =
            static_cast<char>(std::stoi(std::string(rest.substr(1, 2)), nullptr, 16));
      continue;
    }
    if (line.compare(0, prefix.size(), prefix) != 0 || line.size() <= prefix.size() ||
        line[prefix.size()] != '/')
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
        if (base[0] == 'p')
          file.bytes[i] = static_cast<char>(PatternByte(static_cast<uint8_t>(seed), i));
        if (base[0] == 'w')
          file.bytes[i] = before != was.end() && i < before->second.size() ? before->second[i] : 0;
      }
    }
    files.push_back(file);
  }
  return files;
}

struct Entry {
  char kind;  // 'f' file, 'd' directory, 'l' link
  std::string data;
  bool operator==(const Entry&) const = default;
};
using Tree = std::map<std::string, Entry>;

// What a request may read or change: everything but the programs, the
// libraries and the kernel's files; the basic configuration and the shell's
// cat are watched on their own.
Tree Snapshot(const DeviceRoot& root) {
  namespace fs = std::filesystem;
  static const std::set<std::string> kSkip = {
      "/bin", "/usr", "/lib", "/dev", "/proc", "/web/cgi-bin"};
  const std::string host = root.HostPath("");
  Tree tree;
  for (auto it = fs::recursive_directory_iterator(host); it != fs::end(it); ++it) {
    const std::string p = it->path().string().substr(host.size());
    if (it->is_symlink()) tree[p] = {'l', fs::read_symlink(it->path())};
    else if (it->is_directory()) tree[p] = {'d', ""};
    else if (it->is_regular_file()) tree[p] = {'f', cases::ReadAll(it->path())};
    if (kSkip.count(p)) it.disable_recursion_pending();
  }
  for (const char* p : {"/bin/cat", "/proc/driver/qe_basic_conf"}) {
    struct stat st;
    if (lstat(root.HostPath(p).c_str(), &st) == 0)
      tree[p] = S_ISLNK(st.st_mode) ? Entry{'l', "busybox"} : Entry{'f', *root.ReadFile(p)};
  }
  return tree;
}

std::string Quoted(const std::string& s) {
  std::string q = "\"";
  for (const unsigned char c : s) {
    if (c == '\n') q += "\\n";
    else if (c == '"' || c == '\\') q += std::string("\\") + static_cast<char>(c);
    else if (c < 0x20 || c > 0x7e)
      q += {'\\', 'x', "0123456789abcdef"[c >> 4], "0123456789abcdef"[c & 15]};
    else q += static_cast<char>(c);
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
  const uint8_t first = now.empty() ? 0 : static_cast<uint8_t>(now[0]);
  auto base = [&](int kind, size_t i) -> uint8_t {
    if (kind == 0) return i < was->size() ? static_cast<uint8_t>((*was)[i]) : 0;
    return kind == 1 ? 0 : kind == 2 ? first : PatternByte(first, i);
  };
  int best = -1;
  size_t fewest = SIZE_MAX;
  for (int kind = was ? 0 : 1; kind < 4; ++kind) {
    size_t n = 0;
    for (size_t i = 0; i < now.size(); ++i) n += static_cast<uint8_t>(now[i]) != base(kind, i);
    if (n < fewest) fewest = n, best = kind;
  }
  char head[64];
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
  if (IsText(path, now->data) && (!was || was->kind != 'f' || IsText(path, was->data)))
    return Quoted(now->data);
  return DescribeBytes(now->data, was && was->kind == 'f' ? &was->data : nullptr);
}

std::string Changes(const Tree& before, const Tree& after) {
  std::string out;
  auto line = [&](const std::string& path) {
    const auto b = before.find(path), a = after.find(path);
    const Entry* was = b == before.end() ? nullptr : &b->second;
    const Entry* now = a == after.end() ? nullptr : &a->second;
    if (was && now && *was == *now) return;
    out += path + " " + Describe(path, now, was) + "\n";
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
    for (size_t at;
         (at = s.find("/var/run/" + std::string(d) + ".pid \"" + pid)) != std::string::npos;)
      s.replace(s.find(pid, at), pid.size(), mark);
  }
  return s;
}

std::string Outcome(const DeviceRoot& root, const Tree& before, const Answer& a) {
  std::string out = a.termSignal ? "signal " + std::to_string(a.termSignal)
                                 : "exit " + std::to_string(a.exitStatus);
  out += "\nout " + Quoted(a.out) + "\nerr " + Quoted(a.err) + "\n";
  for (const auto& [name, sigs] :
      {std::pair{"zrcamctld", &a.zrcamctldSignals}, {"vmfd", &a.vmfdSignals}}) {
    if (sigs->empty()) continue;
    out += name;
    for (int s : *sigs) out += " " + std::to_string(s);
    out += "\n";
  }
  return out + PidsOut(root, Changes(before, Snapshot(root)));
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
        if (at != std::string::npos)
          text.replace(at, strlen(d) + 1, std::to_string(root.DaemonPid(d)));
      }
      root.WriteFile(file.path, text);
    } else {
      root.WriteFile(file.path, file.bytes);
    }
  }
}

class Golden : public ::testing::TestWithParam<std::string> {};

TEST_P(Golden, Replays) {
  DeviceRoot& root = DeviceRoot::Get();
  const std::string file = std::string(ZRCAMCTL_TESTS_DIR "/golden/") + GetParam() + ".golden";
  std::vector<Case> cases = Parse(file);
  ASSERT_FALSE(cases.empty()) << file;
  const bool record = getenv("ZRCAMCTL_GOLDEN_RECORD") != nullptr;
  std::string rewritten;
  for (Case& c : cases) {
    root.Reset();
    Apply(root, c.given);
    const Tree before = Snapshot(root);
    const std::string got = Outcome(root, before, root.RunAs(c.argv0, c.request));
    if (record) c.expected = got;
    EXPECT_EQ(got, c.expected) << file << ": case " << c.name << "\n" << c.given;
    rewritten += "case " + c.name + "\n" + c.given + "expect\n" + c.expected + "end\n";
  }
  if (record) std::ofstream(file, std::ios::binary | std::ios::trunc) << rewritten;
}

// The inspector reads back what the set program wrote: for each case that
// posts one key alone, the record the case left holds, under that key, the
// posted value as its row stores it; under a shut gate, or in a slot the id
// does not select, what it held before. Keys of a family's own rules aside.
KeyValue AsStored(const Field& field, const std::string& posted, std::string& text) {
  const FieldType type = field.Type();
  if (type == FieldType::Text || type == FieldType::PaddedText) {
    text = posted.substr(0, type == FieldType::Text ? field.arg - 1u : field.arg);
    return {true, 0, reinterpret_cast<const uint8_t*>(text.data()), text.size()};
  }
  const ValueRule rule = field.Rule();
  uint32_t v = rule == ValueRule::Unsigned ? DecimalToUInt32(posted.c_str())
                                           : FormValueToInt(posted.c_str());
  if (rule == ValueRule::Reversed) v = field.arg - v;
  if (type == FieldType::Bit) v = (v & 0xFFFF) != 0;
  if (rule == ValueRule::AtLeastOne && static_cast<int32_t>(v) <= 0) v = 1;
  v &= type == FieldType::U8 || rule == ValueRule::LowByte ? 0xFF
       : type == FieldType::U16                            ? 0xFFFF
                                                           : ~0u;
  const bool signedWord = type == FieldType::U32 && rule != ValueRule::Unsigned;
  const int64_t value = signedWord ? int64_t{static_cast<int32_t>(v)} : int64_t{v};
  return {false, type == FieldType::Checkbox ? 1 : value, nullptr, 0};
}

// A family's transcripts: tests/golden/<its file's name, '-' for '_'>.golden.
std::string TranscriptName(std::string file, char from = '_', char to = '-') {
  std::replace(file.begin(), file.end(), from, to);
  return file;
}

TEST_P(Golden, DecodesAsPosted) {
  static RecordKey keys[kMaxRecordKeys];
  const std::string golden = GetParam();
  for (const Case& c : Parse(std::string(ZRCAMCTL_TESTS_DIR "/golden/") + golden + ".golden")) {
    if (c.name.find(" OneKey ") == std::string::npos) continue;
    const std::string pair = c.request.body.substr(0, c.request.body.find('&'));
    const std::string key = pair.substr(0, pair.find('=')), value = pair.substr(pair.find('=') + 1);
    std::map<std::string, std::string> given, left;
    std::string code = "0J";  // the module of the product code, unless given
    for (const FileLine& file : FileLines(c.given, "given ")) {
      given[file.path] = left[file.path] = file.bytes;
      std::string_view quoted = file.description;
      const std::string text = file.path == "/proc/driver/qe_basic_conf" ? Unquote(quoted) : "";
      if (text.find("QEF_STR1=\"") != std::string::npos)
        code = text.substr(text.find("QEF_STR1=\"") + 29, 2);
    }
    for (const FileLine& file : FileLines(c.expected, "", given)) left[file.path] = file.bytes;
    const ModuleRow* row = FindModuleRow(ModuleCode(code.c_str()));
    const FamilyNotes* notes = row && row->family ? FindFamilyNotes(row->family) : nullptr;
    ASSERT_TRUE(notes) << c.name << ": module " << code;
    if (IsOwnKey(*notes, key.c_str())) continue;
    // The record, then each side file; slot ids are the record's rows.
    std::string ids;
    int found = 0;
    auto check =
        [&](const Layout& layout, const std::string& path, uint32_t size, const Block* gate) {
          std::string now = left[path], was = given[path];
          now.resize(size), was.resize(size);  // a missing file reads as zeros
          if (ids.empty()) ids = now;
          const RecordView after = {reinterpret_cast<uint8_t*>(now.data()), size};
          const RecordView before = {reinterpret_cast<uint8_t*>(was.data()), size};
          const RecordView idRecord = {
              reinterpret_cast<uint8_t*>(ids.data()), static_cast<uint32_t>(ids.size())};
          const int count = ListRecordKeys(layout, keys, kMaxRecordKeys, true, gate);
          for (int k = 0; k < count; ++k) {
            char posted[kShownKeySize], want[kShownValueSize], got[kShownValueSize];
            PostedKey(keys[k], posted, sizeof posted);
            const uint32_t id = keys[k].group ? StoredValue(idRecord, *keys[k].group) : 0;
            const bool shut = keys[k].group && id >= keys[k].limit;
            if (key != posted || (keys[k].kind == KeyKind::Slot && !shut && id != keys[k].index))
              continue;
            ++found;
            std::string text;
            const KeyValue expected =
                shut ? ReadKey(keys[k], before) : AsStored(keys[k].field, value, text);
            ShowValue(expected, false, want, sizeof want);
            ShowValue(ReadKey(keys[k], after), false, got, sizeof got);
            EXPECT_STREQ(got, want)
                << golden << ": case " << c.name << ": " << key << " at " << keys[k].field.offset;
          }
        };
    const Layout& layout = row->family->layout;
    ASSERT_EQ(left[DeviceRoot::RecordPath(code)].size(), row->family->layout.size) << c.name;
    check(layout, DeviceRoot::RecordPath(code), row->family->layout.size, nullptr);
    ForEachBlock(layout.blocks, layout.count, [&](const Block& block, const Block* holder) {
      if (block.op == Op::SideFile)
        check(block.side.file->layout, block.side.file->path, block.side.file->layout.size, holder);
    });
    EXPECT_GT(found, 0) << golden << ": case " << c.name << ": no key " << key << " in the layout";
  }
}

// Every family a module routes to has its transcripts.
TEST(Transcripts, EveryRoutedFamilyHasItsOwn) {
  const std::vector<std::string> files = GoldenFiles();
  for (const ModuleRow& row : ModuleTable) {
    if (!row.family) continue;
    const std::string name = TranscriptName(FindFamilyNotes(row.family)->file);
    EXPECT_TRUE(std::binary_search(files.begin(), files.end(), name)) << name << ".golden";
  }
}

// Test names: the file's, '_' for '-'.
INSTANTIATE_TEST_SUITE_P(Transcripts, Golden, ::testing::ValuesIn(GoldenFiles()),
    [](const auto& info) { return TranscriptName(info.param, '-', '_'); });

}  // namespace
}  // namespace device_test
