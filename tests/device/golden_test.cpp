// Golden transcripts: recorded requests and what came back, replayed
// against the real executable in the device root. A case names the files
// it starts with (as changes from the freshly reset root), the request, and
// then the exit status, answer, diagnostics, signals and every file the
// request changed; a case that posts one form is one line under the file's
// defaults (the format: README.md, Golden transcripts).
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
#include "frame/record_keys.h"
#include "modules/module_table.h"

namespace device_test {
namespace {

struct Case {
  std::string name, argv0;
  Request request;
  std::string given;     // the case's "given" lines, as written
  std::string expected;  // everything between "expect" and "end"
  std::string before;    // the "defaults" and "group" lines written before it
  // A one-key line's body as quoted, the inspector's values, its defaults
  // block and group line, the defaults' answer and first bytes file.
  std::string body, values, context, answer, file;
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

// The file lines of `text` that start with `prefix` and a path.
std::vector<FileLine> FileLines(const std::string& text, const std::string& prefix) {
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
      for (size_t i = 0; base[0] == 'p' && i < size; ++i)
        file.bytes[i] = static_cast<char>(PatternByte(static_cast<uint8_t>(seed), i));
    }
    files.push_back(file);
  }
  return files;
}

// A file's cases, its one-key lines expanded into the cases they stand for.
std::vector<Case> Parse(std::istream& in) {
  std::vector<Case> cases;
  Case defaults;
  std::string before, group, context;
  bool expecting = false, inDefaults = false;
  auto take = [&](const std::string& line) {
    if (line.rfind("case ", 0) == 0 || line == "defaults") {
      cases.push_back({line.substr(std::min<size_t>(5, line.size())), "", {.form = false}});
      if (!inDefaults) cases.back().before = std::exchange(before, "");
      expecting = false;
    } else if (line == "end" && inDefaults) {
      defaults = cases.back(), inDefaults = false;
      cases.pop_back();
    } else if (!cases.empty() && line != "end") {
      Case& c = cases.back();
      if (expecting || line == "expect") {
        if (expecting) c.expected += line + "\n";
        expecting = true;
        return;
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
  };
  for (std::string line; std::getline(in, line);) {
    const bool grouping = line.rfind("group ", 0) == 0;
    if (line == "defaults") inDefaults = true, context.clear();
    if (inDefaults) context += line + "\n";
    if (grouping) group = line.substr(6);
    if (inDefaults || grouping) before += line + "\n";
    if (line[0] != '"' && !grouping) take(line);
    if (line[0] != '"') continue;
    std::string_view rest(line);
    const std::string body = Unquote(rest), quoted = line.substr(0, line.size() - rest.size());
    const size_t valuesAt = rest.find(" = ");
    const std::string values(valuesAt == rest.npos ? "" : rest.substr(valuesAt + 3));
    rest = rest.substr(0, valuesAt);
    std::string answer = defaults.expected, file, changes;
    if (rest.substr(0, 5) == " out ") {
      std::string_view out = rest.substr(5);
      Unquote(out);
      const size_t at = ("\n" + answer).find("\nout "), end = answer.find('\n', at);
      answer.replace(at, end - at, rest.substr(1, rest.size() - out.size() - 1));
      rest = out;
    }
    std::map<std::string, size_t> sizes;
    for (const FileLine& f : FileLines(defaults.given, "given "))
      if (f.description.rfind("bytes ", 0) == 0 && sizes.emplace(f.path, f.bytes.size()).second)
        file = file.empty() ? f.path : file;
    std::istringstream tokens{std::string(rest)};
    for (std::string t, path = file; tokens >> t;) {
      if (t[0] == '/') {
        path = t;
        continue;
      }
      if (!path.empty()) changes += path + " bytes " + std::to_string(sizes[path]) + " was\n";
      changes += "  at " + t.substr(0, t.find(':')) + ":";
      for (size_t i = t.find(':') + 1; i + 1 < t.size(); i += 2) changes += " " + t.substr(i, 2);
      changes += "\n", path.clear();
    }
    const size_t files = ("\n" + defaults.given).find("\ngiven ");
    std::istringstream text(
        "case " + std::to_string(cases.size() + 1) + " " + group + " " +
        body.substr(0, body.find_first_of("=&")) + "\n" + defaults.given.substr(0, files) +
        "env \"CONTENT_LENGTH=" + std::to_string(body.size()) + "\"\nstdin " + quoted + "\n" +
        (files == std::string::npos ? "" : defaults.given.substr(files)) + "expect\n" + answer +
        changes + "end");
    for (std::string l; std::getline(text, l);) take(l);
    Case& c = cases.back();
    c.body = quoted, c.values = values, c.context = context + "group " + group + "\n";
    c.answer = defaults.expected, c.file = file;
  }
  return cases;
}

// A one-key case's line for what came back: "" when it takes a whole case.
std::string OneKeyLine(const Case& c, const std::string& got) {
  std::string line = c.body;
  std::istringstream lines(got);
  for (std::string l; std::getline(lines, l);) {
    if (l.rfind("out ", 0) == 0 && ("\n" + c.answer).find("\n" + l + "\n") == std::string::npos)
      line += " " + l;
    if (l[0] == '/' && l.substr(0, l.find(' ')) != c.file) line += " " + l.substr(0, l.find(' '));
    if (l.rfind("  at ", 0) != 0) continue;
    line += " " + l.substr(5, l.find(':') - 5) + ":";
    for (size_t i = l.find(':') + 2; i < l.size(); i += 3) line += l.substr(i, 2);
  }
  std::istringstream text(c.context + line + "\n");
  const std::vector<Case> e = Parse(text);
  return e.size() == 1 && e[0].given == c.given && e[0].expected == got ? line : "";
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

// What the inspector reads, in the files a case left, under the first key it
// posts: wherever the family's layout has the key, of a slot table only in
// the slot the record's id row selects.
std::string InspectorValues(const DeviceRoot& root, const std::string& body) {
  static RecordKey keys[kMaxRecordKeys];
  auto bytes = [&](const std::string& path) {
    std::string data = root.ReadFile(path).value_or("");
    data.resize(std::max<size_t>(data.size(), 1 << 19));  // zeros past the file's end
    return data;
  };
  const std::string conf = root.ReadFile("/proc/driver/qe_basic_conf").value_or("");
  const size_t at = conf.find("QEF_STR1=\"");  // the module code: the code's characters 19, 20
  const std::string code = at != conf.npos && at + 31 <= conf.size() ? conf.substr(at + 29, 2) : "";
  const ModuleRow* row = code.empty() ? nullptr : FindModuleRow(ModuleCode(code.c_str()));
  if (!row || !row->family) return "";
  std::string values, ids = bytes(DeviceRoot::RecordPath(code));
  const std::string key = body.substr(0, body.find_first_of("=&"));
  auto read = [&](const Layout& layout, std::string data, const Block* gate) {
    const RecordView record = {reinterpret_cast<uint8_t*>(data.data()), 1 << 19},
                     idRecord = {reinterpret_cast<uint8_t*>(ids.data()), 1 << 19};
    const int count = ListRecordKeys(layout, keys, kMaxRecordKeys, true, gate);
    for (int k = 0; k < count; ++k) {
      char posted[kShownKeySize], value[kShownValueSize];
      PostedKey(keys[k], posted, sizeof posted);
      if (key != posted ||
          (keys[k].kind == KeyKind::Slot && StoredValue(idRecord, *keys[k].group) != keys[k].index))
        continue;
      ShowValue(ReadKey(keys[k], record), false, value, sizeof value);
      values += (values.empty() ? "" : " ") + std::string(value);
    }
  };
  const Layout& layout = row->family->layout;
  read(layout, ids, nullptr);
  ForEachBlock(layout.blocks, layout.count, [&](const Block& block, const Block* holder) {
    if (block.op == Op::SideFile)
      read(block.side.file->layout, bytes(block.side.file->path), holder);
  });
  return values;
}

class Golden : public ::testing::TestWithParam<std::string> {};

TEST_P(Golden, Replays) {
  DeviceRoot& root = DeviceRoot::Get();
  const std::string file = std::string(ZRCAMCTL_TESTS_DIR "/golden/") + GetParam() + ".golden";
  std::ifstream in(file);
  std::vector<Case> cases = Parse(in);
  ASSERT_FALSE(cases.empty()) << file;
  const bool record = getenv("ZRCAMCTL_GOLDEN_RECORD") != nullptr;
  const bool sample = !record && getenv("ZRCAMCTL_GOLDEN_SAMPLE") != nullptr;
  std::string rewritten;
  // The sample: a file's first case of each rule, and its first one-key
  // line for each number of changed bytes.
  std::set<std::string> seen;
  int replayed = 0;
  for (Case& c : cases) {
    size_t width = 0;
    for (size_t at = 0; (at = c.expected.find("\n  at ", at)) != std::string::npos; ++at)
      width += (c.expected.find('\n', at + 1) - c.expected.find(':', at)) / 3;
    const std::string kind =
        c.body.empty() ? c.name.substr(c.name.find(' ') + 1) : "width " + std::to_string(width);
    if (!seen.insert(kind).second && sample) continue;
    root.Reset();
    Apply(root, c.given);
    const Tree before = Snapshot(root);
    const std::string got = Outcome(root, before, root.RunAs(c.argv0, c.request));
    const std::string values = c.body.empty() ? "" : InspectorValues(root, c.request.body);
    if (record) c.expected = got, c.values = values;
    EXPECT_EQ(got, c.expected) << file << ": case " << c.name << "\n" << c.given;
    EXPECT_EQ(values, c.values) << file << ": case " << c.name << ": the inspector's values";
    ++replayed;
    const std::string line = record && !c.body.empty() ? OneKeyLine(c, got) : "";
    rewritten += c.before + (!line.empty() ? line + (values.empty() ? "" : " = " + values) + "\n"
                                           : "case " + c.name + "\n" + c.given + "expect\n" +
                                                 c.expected + "end\n");
  }
  printf("transcript %s: %d cases replayed\n", GetParam().c_str(), replayed);
  if (record) std::ofstream(file, std::ios::binary | std::ios::trunc) << rewritten;
}

// A family's transcripts: tests/golden/<its file's name, '-' for '_'>.golden.
std::string TranscriptName(std::string file, char from = '_', char to = '-') {
  std::replace(file.begin(), file.end(), from, to);
  return file;
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
