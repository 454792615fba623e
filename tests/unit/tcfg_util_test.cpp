// The text configuration library: values in "KEY = value" lines, rows and
// columns, the line table and its limit, files on disk and their failures.
#include <gtest/gtest.h>

#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "tcfg/tcfg_util.h"

namespace {

struct CfgDeleter {
  void operator()(tcfg* cfg) const { free_cfg(cfg); }
};
using Cfg = std::unique_ptr<tcfg, CfgDeleter>;

Cfg Mem(const std::string& text) { return Cfg(create_mem_cfg(text.data(), text.size())); }

std::vector<std::string> Lines(const tcfg* cfg) {
  std::vector<std::string> lines;
  for (int i = 0; i < cfg->lineCount; ++i) lines.emplace_back(cfg->lines[i]);
  return lines;
}

std::string Value(tcfg* cfg, const char* key, int* line = nullptr) {
  char out[kTcfgValueSize];
  const int found = get_cfg_value(cfg, key, out, sizeof out);
  if (line) *line = found;
  return found < 0 ? "<none>" : out;
}

std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

void WriteFile(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

// What a call wrote to standard error.
template <typename F>
std::string StderrOf(F call) {
  testing::internal::CaptureStderr();
  call();
  return testing::internal::GetCapturedStderr();
}

class TcfgFiles : public ::testing::Test {
 protected:
  void SetUp() override {
    char pattern[] = "/tmp/tcfg_test.XXXXXX";
    ASSERT_NE(mkdtemp(pattern), nullptr);
    dir = pattern;
  }
  void TearDown() override { std::filesystem::remove_all(dir); }
  std::string Path(const char* name) const { return dir + "/" + name; }

  // new_cfg and load_cfg on a file holding `text`.
  Cfg Load(const std::string& path, const std::string& text) {
    WriteFile(path, text);
    Cfg cfg(new_cfg(path.c_str(), false));
    EXPECT_NE(cfg, nullptr);
    if (cfg) {
      EXPECT_GE(load_cfg(cfg.get()), 0);
    }
    return cfg;
  }

  std::string dir;
};

// --- "KEY = value" lines ---------------------------------------------------

// The cases of tests/unit/data/tcfg.cases: each line an operation on a text
// and what it must give, written back in the same form and compared.
std::string Quote(const std::string& s) {
  std::string q = "\"";
  for (const char c : s) q += c == '\n' ? std::string("\\n") : c == '\t' ? std::string("\\t") : c == '"' || c == '\\' ? std::string("\\") + c : std::string(1, c);
  return q + "\"";
}

std::vector<std::string> Tokens(const std::string& line) {
  std::vector<std::string> tokens;
  for (size_t i = 0; i < line.size(); ++i) {
    if (line[i] == ' ') continue;
    std::string t;
    if (line[i] != '"') {
      for (; i < line.size() && line[i] != ' '; ++i) t += line[i];
    } else {
      for (++i; line[i] != '"'; ++i) t += line[i] != '\\' ? line[i] : line[++i] == 'n' ? '\n' : line[i] == 't' ? '\t' : line[i];
    }
    tokens.push_back(t);
  }
  return tokens;
}

TEST(Tcfg, RecordedCases) {
  std::ifstream in(ZRCAMCTL_TCFG_CASES);
  int cases = 0;
  for (std::string line; std::getline(in, line);) {
    if (line.empty() || line[0] == '#') continue;
    const std::vector<std::string> t = Tokens(line);
    Cfg cfg = Mem(t.at(1));
    char out[kTcfgValueSize] = "junk";
    auto n = [&](size_t i) { return std::stoi(t.at(i)); };
    int result;
    std::string lines;
    if (t[0] == "get") {
      result = get_cfg_value(cfg.get(), t[2].c_str(), out, sizeof out, n(3), n(4));
    } else if (t[0] == "set") {
      result = set_cfg_value(cfg.get(), t[2].c_str(), t[3].c_str(), n(4), n(5));
      for (const std::string& l : Lines(cfg.get())) lines += (lines.empty() ? "" : "\n") + l;
    } else if (t[0] == "col") {
      result = get_cfg_col(cfg.get(), n(2), n(3), t[4].c_str(), out, sizeof out);
    } else {
      result = find_cfg_row(cfg.get(), n(2), t[3].c_str(), n(4), " ", out, sizeof out, n(5));
    }
    EXPECT_EQ(line.substr(0, line.find(" -> ")) + " -> " + std::to_string(result) + " " + Quote(t[0] == "set" ? lines : out), line);
    ++cases;
  }
  EXPECT_GT(cases, 60);
}

TEST(TcfgValues, RepeatedReplacementOfALongLine) {
  const std::string tail = " # " + std::string(1000, 'c');
  Cfg cfg = Mem("K = 1" + tail + "\n");
  ASSERT_EQ(set_cfg_value(cfg.get(), "K", ""), 0);
  ASSERT_EQ(set_cfg_value(cfg.get(), "K", "5"), 0);
  EXPECT_EQ(Lines(cfg.get())[0], "K =  5" + tail.substr(1));
  EXPECT_EQ(Value(cfg.get(), "K"), "5");
  // A value is written as given; only reading it back is bounded.
  const std::string v300(300, 'v');
  EXPECT_EQ(set_cfg_value(cfg.get(), "K", v300.c_str()), 0);
  EXPECT_EQ(Lines(cfg.get())[0], "K =  " + v300 + tail.substr(1));
  EXPECT_EQ(StderrOf([&] { EXPECT_EQ(Value(cfg.get(), "K"), "<none>"); }), "insufficient string buffer size\n");
}

TEST(TcfgValues, BuffersAndNullArguments) {
  const std::string v128(128, '8');
  Cfg cfg = Mem("K128 = \"" + v128 + "\" # kept\nK=12345\n");
  EXPECT_EQ(StderrOf([&] { EXPECT_EQ(Value(cfg.get(), "K128"), "<none>"); }), "insufficient string buffer size\n");
  EXPECT_EQ(StderrOf([&] { EXPECT_EQ(set_cfg_value(cfg.get(), "K128", "1"), -1); }),
            "insufficient string buffer size\n");
  // The caller's buffer bounds the copy: "12345" needs six bytes.
  char out[6] = "junk";
  EXPECT_EQ(StderrOf([&] { EXPECT_EQ(get_cfg_value(cfg.get(), "K", out, 5), -1); }),
            "insufficient string buffer size\n");
  EXPECT_STREQ(out, "");
  EXPECT_EQ(get_cfg_value(cfg.get(), "K", out, 6), 1);
  EXPECT_STREQ(out, "12345");
  strcpy(out, "x");
  EXPECT_EQ(get_cfg_value(nullptr, "K", out, sizeof out), -1);
  EXPECT_STREQ(out, "");
  EXPECT_EQ(get_cfg_value(cfg.get(), nullptr, out, sizeof out), -1);
  EXPECT_EQ(get_cfg_value(cfg.get(), "K", nullptr, 4), -1);
  EXPECT_EQ(get_cfg_value(cfg.get(), "K", out, 0), -1);
  EXPECT_EQ(set_cfg_value(nullptr, "K", "1"), -1);
  EXPECT_EQ(set_cfg_value(cfg.get(), "K", nullptr), -1);
}

// --- Line splitting and the line table -------------------------------------

TEST(TcfgLines, BreaksAndBlankLinesCollapse) {
  EXPECT_EQ(Lines(Mem("A=1\r\n\r\n\r\nB=2\rC=3\n\n\nD=4").get()),
            (std::vector<std::string>{"A=1", "B=2", "C=3", "D=4"}));
  EXPECT_EQ(Lines(Mem("\r\n\n\r").get()), std::vector<std::string>{});
  EXPECT_EQ(Lines(Mem("").get()), std::vector<std::string>{});
  EXPECT_EQ(Lines(Mem(std::string("A=1\nB=2\0\nC=3\n", 13)).get()),
            (std::vector<std::string>{"A=1", "B=2"}));  // the text ends at a NUL
  EXPECT_EQ(create_mem_cfg(nullptr, 3), nullptr);
  Cfg none(create_mem_cfg(nullptr, 0));
  ASSERT_NE(none, nullptr);
  EXPECT_EQ(none->lineCount, 0);
  EXPECT_STREQ(none->path, "");
}

TEST(TcfgLines, TableHolds32768Lines) {
  std::string text;
  for (int i = 0; i < kTcfgMaxLines + 2; ++i) text += "L" + std::to_string(i) + "=" + std::to_string(i) + "\n";
  Cfg cfg = Mem(text);
  ASSERT_EQ(cfg->lineCount, kTcfgMaxLines);
  EXPECT_STREQ(cfg->lines[kTcfgMaxLines - 1], "L32767=32767");
  EXPECT_EQ(Value(cfg.get(), "L32767"), "32767");
  EXPECT_EQ(Value(cfg.get(), "L32768"), "<none>");  // beyond the table
  EXPECT_EQ(StderrOf([&] { EXPECT_EQ(add_cfg_line(cfg.get(), "X=1"), -1); }), "too many lines\n");

  // Exactly full: the last line is whole and nothing is lost.
  text.clear();
  for (int i = 0; i < kTcfgMaxLines; ++i) text += "x\r\n";
  cfg = Mem(text + "\r\n\n");
  EXPECT_EQ(cfg->lineCount, kTcfgMaxLines);
  EXPECT_STREQ(cfg->lines[kTcfgMaxLines - 1], "x");
}

TEST(TcfgLines, AddedLinesAreCopiesAndDumpShowsIndexes) {
  Cfg cfg = Mem("first\n");
  std::string text = "K = 1";
  ASSERT_EQ(add_cfg_line(cfg.get(), text.c_str()), 0);
  text[4] = '9';
  ASSERT_EQ(add_cfg_line(cfg.get(), ""), 0);
  EXPECT_EQ(Lines(cfg.get()), (std::vector<std::string>{"first", "K = 1", ""}));
  EXPECT_EQ(set_cfg_value(cfg.get(), "K", "2"), 0);  // replaces an added line
  EXPECT_EQ(Value(cfg.get(), "K"), "2");
  EXPECT_EQ(add_cfg_line(nullptr, "x"), -1);
  EXPECT_EQ(add_cfg_line(cfg.get(), nullptr), -1);

  EXPECT_EQ(StderrOf([&] { dump_cfg(cfg.get()); }), "[00] first\n[01] K = 2\n[02] \n");
  EXPECT_EQ(StderrOf([] { dump_cfg(nullptr); }), "");
}

// --- Rows and columns ------------------------------------------------------

TEST(TcfgColumns, BadArguments) {
  Cfg cfg = Mem("a b\n");
  char out[kTcfgValueSize];
  EXPECT_EQ(get_cfg_col(nullptr, 0, 0, ",", out, sizeof out), -1);
  EXPECT_EQ(get_cfg_col(cfg.get(), 0, 0, nullptr, out, sizeof out), -1);
  EXPECT_EQ(StderrOf([&] { EXPECT_EQ(get_cfg_col(cfg.get(), 0, 0, "", out, 3), -1); }),
            "insufficient string buffer size\n");
}

TEST(TcfgColumns, ARowHasAtMost128Columns) {
  std::string row;
  for (int i = 0; i < 130; ++i) row += "c" + std::to_string(i) + " ";
  Cfg cfg = Mem(row);
  char out[16];
  EXPECT_EQ(get_cfg_col(cfg.get(), 0, 127, " ", out, sizeof out), 0);
  EXPECT_STREQ(out, "c127");
  EXPECT_EQ(StderrOf([&] { EXPECT_EQ(get_cfg_col(cfg.get(), 0, 128, " ", out, sizeof out), -1); }),
            "");
  EXPECT_EQ(StderrOf([&] { EXPECT_EQ(get_cfg_col(cfg.get(), 0, 129, " ", out, sizeof out), -1); }),
            "too large col\n");
  EXPECT_EQ(StderrOf([&] {
              EXPECT_EQ(find_cfg_row(cfg.get(), 129, "c0", 0, " ", out, sizeof out, 0), -1);
              EXPECT_EQ(set_cfg_col(cfg.get(), 0, "c0", 200, " ", "x", 0), -1);
            }),
            "too large col\ntoo large col\n");
}

TEST(TcfgColumns, SetReplacesOneColumnOnly) {
  Cfg cfg = Mem("root:\"x\":0:0\nguest:'x':1000:100\nguest:y:1001:100\n");
  EXPECT_EQ(set_cfg_col(cfg.get(), 0, "guest", 1, ":", "secret", 0), 0);
  EXPECT_EQ(set_cfg_col(cfg.get(), 0, "guest", 2, ":", "2000", 1), 0);
  EXPECT_EQ(set_cfg_col(cfg.get(), 0, "guest", 2, ":", "1", 1), 0);  // twice on one line
  EXPECT_EQ(set_cfg_col(cfg.get(), 0, "nobody", 1, ":", "z", 0), -1);
  EXPECT_EQ(set_cfg_col(cfg.get(), 0, "root", 9, ":", "z", 0), -1);
  EXPECT_EQ(Lines(cfg.get()), (std::vector<std::string>{"root:\"x\":0:0", "guest:'secret':1000:100",
                                                        "guest:y:1:100"}));

  const std::string v128(128, 'v');
  ASSERT_EQ(add_cfg_line(cfg.get(), ("long:" + v128 + ":1").c_str()), 0);
  EXPECT_EQ(StderrOf([&] { EXPECT_EQ(set_cfg_col(cfg.get(), 0, "long", 1, ":", "z", 0), -1); }),
            "insufficient string buffer size\n");
  EXPECT_EQ(set_cfg_col(nullptr, 0, "root", 1, ":", "z", 0), -1);
  EXPECT_EQ(set_cfg_col(cfg.get(), 0, "root", 1, ":", nullptr, 0), -1);
}

// --- Files -----------------------------------------------------------------

TEST_F(TcfgFiles, MissingFileWithAndWithoutCreate) {
  const std::string path = Path("missing.conf");
  EXPECT_EQ(StderrOf([&] { EXPECT_EQ(new_cfg(path.c_str(), false), nullptr); }),
            "[new_cfg:tcfg_util(129)]\t" + path + " does not exist\n");
  EXPECT_FALSE(std::filesystem::exists(path));

  // With create, a missing file is made empty (mode 0744 before the umask).
  Cfg cfg(new_cfg(path.c_str(), true));
  ASSERT_NE(cfg, nullptr);
  EXPECT_EQ(load_cfg(cfg.get()), 0);
  EXPECT_EQ(add_cfg_line(cfg.get(), "CENTER_X=1"), 0);
  EXPECT_EQ(save_cfg(cfg.get()), 0);
  EXPECT_EQ(ReadFile(path), "CENTER_X=1\n");

  const std::string nowhere = Path("no/such/dir.conf");
  EXPECT_EQ(StderrOf([&] { EXPECT_EQ(new_cfg(nowhere.c_str(), true), nullptr); }),
            "[create_cfg_file:tcfg_util(54)]\tfail to open " + nowhere + ". errno: 2\n"
            "[new_cfg:tcfg_util(135)]\tfail to create " + nowhere + "\n");
  EXPECT_EQ(new_cfg(nullptr, true), nullptr);
  EXPECT_EQ(create_cfg_file(nullptr), -1);
}

TEST_F(TcfgFiles, PathLimitIs255Characters) {
  WriteFile(Path("f"), "K=1\n");
  // "./" steps make long names for the same file.
  auto longPath = [&](size_t length) {
    std::string path = dir + "/";
    while (path.size() + 3 <= length) path += "./";
    if (path.size() + 1 < length) path += "/";
    return path + "f";
  };
  const std::string p255 = longPath(255), p256 = longPath(256);
  ASSERT_EQ(p255.size(), 255u);
  ASSERT_EQ(p256.size(), 256u);
  Cfg cfg(new_cfg(p255.c_str(), false));
  ASSERT_NE(cfg, nullptr);
  EXPECT_EQ(load_cfg(cfg.get()), 1);
  EXPECT_EQ(StderrOf([&] { EXPECT_EQ(new_cfg(p256.c_str(), false), nullptr); }),
            "[new_cfg:tcfg_util(157)]\tso long file path\n");
}

TEST_F(TcfgFiles, LoadAndSaveFailures) {
  EXPECT_EQ(StderrOf([] { EXPECT_EQ(load_cfg(nullptr), -1); }),
            "[load_cfg:tcfg_util(224)]\targument is NULL\n");
  EXPECT_EQ(StderrOf([] { EXPECT_EQ(save_cfg(nullptr), -1); }),
            "[save_cfg:tcfg_util(262)]\targument is NULL\n");
  free_cfg(nullptr);

  // The file went away between new_cfg and load_cfg.
  const std::string path = Path("gone.conf");
  WriteFile(path, "K=1\n");
  Cfg cfg(new_cfg(path.c_str(), false));
  ASSERT_NE(cfg, nullptr);
  std::filesystem::remove(path);
  EXPECT_EQ(StderrOf([&] { EXPECT_EQ(load_cfg(cfg.get()), -1); }),
            "[load_cfg:tcfg_util(231)]\tfail to open " + path + ". errno: 2\n");

  // It shrank: fewer bytes than the size taken.
  WriteFile(path, "K=1\n");
  cfg.reset(new_cfg(path.c_str(), false));
  WriteFile(path, "K=");
  EXPECT_EQ(StderrOf([&] { EXPECT_EQ(load_cfg(cfg.get()), -1); }),
            "[load_cfg:tcfg_util(239)]\tfail to read " + path + ". errno: 0\n");
  EXPECT_EQ(cfg->lineCount, 0);

  // An in-memory object has no path to load from or save to.
  Cfg mem = Mem("K=1\n");
  EXPECT_EQ(StderrOf([&] { EXPECT_EQ(load_cfg(mem.get()), -1); }),
            "[load_cfg:tcfg_util(231)]\tfail to open . errno: 2\n");
  EXPECT_EQ(StderrOf([&] { EXPECT_EQ(save_cfg(mem.get()), -1); }),
            "open error: No such file or directory\n");

  // Saving into a directory that is gone fails and writes nothing.
  const std::string sub = Path("sub");
  std::filesystem::create_directory(sub);
  WriteFile(sub + "/k.conf", "K=1\n");
  cfg.reset(new_cfg((sub + "/k.conf").c_str(), false));
  ASSERT_EQ(load_cfg(cfg.get()), 1);
  std::filesystem::remove_all(sub);
  StderrOf([&] { EXPECT_EQ(save_cfg(cfg.get()), -1); });
  EXPECT_FALSE(std::filesystem::exists(sub));
}

}  // namespace
