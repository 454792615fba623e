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

// A lookup: the value found (or "<none>") and its line.
struct GetCase {
  std::string text;
  const char* key;
  int occurrence, start;
  std::string value;
  int line;
};

TEST(TcfgValues, Lookups) {
  const std::string v127(127, '7');
  const std::string malformed = "=5\n = 5\nNOVALUE\nEMPTY=\nOPEN=\"abc\nOPEN2='\nTRAIL= \t \n \t= =\t\n=\nQ=\"\n'\n#\n;;;\nK\n";
  const GetCase cases[] = {
      {"CENTER_X = 320 # pixels\n", "CENTER_X", 0, 0, "320", 0},
      {"CENTER_Y=\"240\";\n", "CENTER_Y", 0, 0, "240", 0},
      {"OUTER_RADIUS\t'300' ; outer\n", "OUTER_RADIUS", 0, 0, "300", 0},
      // Only the whole key at the start of a line.
      {"CENTER_XY=1\nCENTER_X2=5\n CENTER_X=6\n#CENTER_X=7\nCENTER_X\t8\n", "CENTER_X", 0, 0, "8", 4},
      {"CENTER_XY=1\n", "CENTER", 0, 0, "<none>", -1},
      {"CENTER_XY=1\n", "CENTER_XYZ", 0, 0, "<none>", -1},
      // Separators, inner blanks, empty values, the first of several.
      {"A = =\t= 1\n", "A", 0, 0, "1", 0},
      {"B = a b\t c  \t\n", "B", 0, 0, "a b\t c", 0},
      {"C =\nD=#only comment\nE = \"\"\n", "D", 0, 0, "", 1},
      {"E = \"\"\n", "E", 0, 0, "", 0},
      {"F=x;y;z\n", "F", 0, 0, "x", 0},
      // Occurrence and start line.
      {"A=1\nA=2\nB=0\nA=3\n", "A", 1, 0, "2", 1},
      {"A=1\nA=2\nB=0\nA=3\n", "A", 0, 2, "3", 3},
      {"A=1\nA=2\nB=0\nA=3\n", "A", 1, 1, "3", 3},
      {"A=1\nA=2\nB=0\nA=3\n", "A", 3, 0, "<none>", -1},
      {"A=1\nA=2\nB=0\nA=3\n", "A", 1, 2, "<none>", -1},
      {"A=1\nA=2\nB=0\nA=3\n", "A", 0, 4, "<none>", -1},
      {"A=1\nA=2\nB=0\nA=3\n", "A", -1, 0, "<none>", -1},
      {"A=1\nA=2\nB=0\nA=3\n", "A", 0, -1, "<none>", -1},
      // At most 127 characters.
      {"K127=" + v127 + "\n", "K127", 0, 0, v127, 0},
      // Malformed lines stay in bounds; the empty key matches a leading separator.
      {malformed, "NOVALUE", 0, 0, "<none>", -1},
      {malformed, "EMPTY", 0, 0, "", 3},
      {malformed, "OPEN", 0, 0, "abc", 4},
      {malformed, "OPEN2", 0, 0, "", 5},
      {malformed, "TRAIL", 0, 0, "", 6},
      {malformed, "Q", 0, 0, "", 9},
      {malformed, "KEY", 0, 0, "<none>", -1},
      {malformed, "", 0, 0, "5", 0},
  };
  for (const GetCase& c : cases) {
    Cfg cfg = Mem(c.text);
    char out[kTcfgValueSize] = "junk";
    const int line = get_cfg_value(cfg.get(), c.key, out, sizeof out, c.occurrence, c.start);
    EXPECT_EQ(line < 0 ? "<none>" : std::string(out), c.value) << c.text << c.key;
    EXPECT_EQ(line, c.line) << c.text << c.key;
    if (line < 0) EXPECT_STREQ(out, "") << c.key;
  }
}

// A replacement: the result and every line afterwards.
struct SetCase {
  std::string text;
  const char* key;
  const char* value;
  int occurrence, start, result;
  std::vector<std::string> lines;
};

TEST(TcfgValues, Replacements) {
  const std::string tail = " # " + std::string(1000, 'c');
  const SetCase cases[] = {
      // Quotes, comments and semicolons stay around the value.
      {"CENTER_X = 320 # pixels\n", "CENTER_X", "400", 0, 0, 0, {"CENTER_X = 400 # pixels"}},
      {"CENTER_Y=\"240\";\n", "CENTER_Y", "400", 0, 0, 0, {"CENTER_Y=\"400\";"}},
      {"OUTER_RADIUS\t'300' ; outer\n", "OUTER_RADIUS", "12345", 0, 0, 0, {"OUTER_RADIUS\t'12345' ; outer"}},
      {"CENTER_XY=1\n", "CENTER_X", "2", 0, 0, -1, {"CENTER_XY=1"}},  // never added
      {"B = a b\t c  \t\n", "B", "d", 0, 0, 0, {"B = d  \t"}},
      {"C =\n", "C", "5", 0, 0, 0, {"C =5"}},
      {"D=#only comment\n", "D", "6", 0, 0, 0, {"D=6#only comment"}},
      {"E = \"\"\n", "E", "7", 0, 0, 0, {"E = \"7\""}},
      {"F=x;y;z\n", "F", "", 0, 0, 0, {"F=;y;z"}},
      {"A=1\nA=2\nB=0\nA=3\n", "A", "9", 2, 0, 0, {"A=1", "A=2", "B=0", "A=9"}},
      {"A=1\nA=2\nB=0\nA=3\n", "A", "9", 0, 4, -1, {"A=1", "A=2", "B=0", "A=3"}},
      {"K = 1 # c\n", "K", "333333", 0, 0, 0, {"K = 333333 # c"}},
      {"K = 1" + tail + "\n", "K", "22", 0, 0, 0, {"K = 22" + tail}},
      // Emptied, the blank before the comment joins the separators.
      {"K = 1" + tail + "\n", "K", "", 0, 0, 0, {"K = " + tail}},
      {"OPEN=\"abc\n", "OPEN", "2", 0, 0, 0, {"OPEN=\"2"}},
      {"OPEN2='\n", "OPEN2", "3", 0, 0, 0, {"OPEN2='3"}},
      {"TRAIL= \t \n", "TRAIL", "4", 0, 0, 0, {"TRAIL= \t 4"}},
      {"Q=\"\n", "Q", "5", 0, 0, 0, {"Q=\"5"}},
      {"=5\n = 5\n \t= =\t\n", "", "6", 2, 0, 0, {"=5", " = 5", " \t= =\t6"}},
      {"NOVALUE\n", "NOVALUE", "7", 0, 0, -1, {"NOVALUE"}},
  };
  for (const SetCase& c : cases) {
    Cfg cfg = Mem(c.text);
    EXPECT_EQ(set_cfg_value(cfg.get(), c.key, c.value, c.occurrence, c.start), c.result) << c.text;
    EXPECT_EQ(Lines(cfg.get()), c.lines) << c.text;
  }
  // Replaced twice, then read back; a value is written as given, only reading it back is bounded.
  Cfg cfg = Mem("K = 1" + tail + "\n");
  ASSERT_EQ(set_cfg_value(cfg.get(), "K", ""), 0);
  ASSERT_EQ(set_cfg_value(cfg.get(), "K", "5"), 0);
  EXPECT_EQ(Lines(cfg.get())[0], "K =  5" + tail.substr(1));
  EXPECT_EQ(Value(cfg.get(), "K"), "5");
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
  for (int i = 3; i < 101; ++i) add_cfg_line(cfg.get(), "z");
  const std::string dump = StderrOf([&] { dump_cfg(cfg.get()); });
  EXPECT_NE(dump.find("\n[99] z\n[100] z\n"), std::string::npos);
  EXPECT_EQ(StderrOf([] { dump_cfg(nullptr); }), "");
}

// --- Rows and columns ------------------------------------------------------

TEST(TcfgColumns, ColumnsSplitOnRunsOfDelimiters) {
  Cfg cfg = Mem("  eth0 \t192.168.0.1\t\t255.255.255.0\n\"my cam\",'x',y\"z\n");
  struct Case {
    int row, col;
    const char* delimiters;
    int result;
    const char* value;
  };
  const Case cases[] = {
      {0, 0, " \t", 0, "eth0"}, {0, 1, " \t", 0, "192.168.0.1"}, {0, 2, " \t", 0, "255.255.255.0"},
      {0, 3, " \t", -1, ""},
      // One opening quote is skipped; the value ends at the next quote.
      {1, 0, ",", 0, "my cam"}, {1, 1, ",", 0, "x"}, {1, 2, ",", 0, "y"},
      // No delimiters: the whole row is one column.
      {0, 0, "", 0, "  eth0 \t192.168.0.1\t\t255.255.255.0"},
      {-1, 0, ",", -1, ""}, {2, 0, ",", -1, ""}, {0, -1, ",", -1, ""},
  };
  for (const Case& c : cases) {
    char out[kTcfgValueSize] = "junk";
    EXPECT_EQ(get_cfg_col(cfg.get(), c.row, c.col, c.delimiters, out, sizeof out), c.result) << c.row << c.col;
    EXPECT_STREQ(out, c.value) << c.row << c.col;
  }
  char out[kTcfgValueSize];
  EXPECT_EQ(get_cfg_col(nullptr, 0, 0, ",", out, sizeof out), -1);
  EXPECT_EQ(get_cfg_col(cfg.get(), 0, 0, nullptr, out, sizeof out), -1);
  EXPECT_EQ(StderrOf([&] { EXPECT_EQ(get_cfg_col(cfg.get(), 0, 0, " \t", out, 4), -1); }),
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

TEST(TcfgColumns, RowsFoundByKeyColumn) {
  Cfg cfg = Mem("user admin 1\ngroup admin x\nuser guest 0\n\"user\" quoted 2\nuser\nusers many 3\n");
  struct Case {
    int keyCol;
    const char* key;
    int col, occurrence, row;
    const char* value;
  };
  const Case cases[] = {
      {0, "user", 1, 0, 0, "admin"}, {0, "user", 2, 1, 2, "0"}, {0, "user", 1, 2, 3, "quoted"},
      {0, "user", 1, 3, -1, ""},  // the fourth "user" row has no second column
      {0, "user", 1, 4, -1, ""},  {0, "use", 1, 0, -1, ""},      {1, "admin", 2, 1, 1, "x"},
      {0, "user", 1, -1, -1, ""},
  };
  for (const Case& c : cases) {
    char out[kTcfgValueSize] = "junk";
    EXPECT_EQ(find_cfg_row(cfg.get(), c.keyCol, c.key, c.col, " ", out, sizeof out, c.occurrence), c.row) << c.key;
    EXPECT_STREQ(out, c.value) << c.key << c.occurrence;
  }
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

TEST_F(TcfgFiles, SaveNormalisesLineEndsAndKeepsEverythingElse) {
  const std::string path = Path("fish_eye.conf");
  Cfg cfg = Load(path,
                 "# fisheye\r\n\r\nCENTER_X = 320 # pixels\r\n\r\n\r\nCENTER_Y=\"240\";\r\n"
                 "SRC_HEIGHT=1080\r\nlast line without end");
  ASSERT_EQ(cfg->lineCount, 5);
  EXPECT_EQ(set_cfg_value(cfg.get(), "CENTER_X", "400"), 0);
  EXPECT_EQ(save_cfg(cfg.get()), 0);
  EXPECT_EQ(ReadFile(path),
            "# fisheye\nCENTER_X = 400 # pixels\nCENTER_Y=\"240\";\nSRC_HEIGHT=1080\n"
            "last line without end\n");

  // A reload reads the file again and forgets the replacements.
  WriteFile(path, "CENTER_X=1\nCENTER_Y=2\n" + std::string(200, '#'));  // same size or more
  EXPECT_EQ(load_cfg(cfg.get()), 3);
  EXPECT_EQ(Value(cfg.get(), "CENTER_X"), "1");
  EXPECT_EQ(cfg->owned[1], nullptr);
}

TEST_F(TcfgFiles, SaveWritesWholeFileAndTruncates) {
  const std::string path = Path("rows.conf");
  std::string text;
  for (int i = 0; i < kTcfgMaxLines + 1; ++i) text += std::to_string(i) + "\n";
  Cfg cfg = Load(path, text);
  EXPECT_EQ(cfg->lineCount, kTcfgMaxLines);
  EXPECT_EQ(save_cfg(cfg.get()), 0);
  // The line beyond the table is lost on save.
  EXPECT_EQ(ReadFile(path), text.substr(0, text.size() - std::string("32768\n").size()));

  cfg = Load(path, "\n\n\n");
  EXPECT_EQ(cfg->lineCount, 0);
  EXPECT_EQ(save_cfg(cfg.get()), 0);
  EXPECT_EQ(ReadFile(path), "");
}

TEST_F(TcfgFiles, MissingFileWithAndWithoutCreate) {
  const std::string path = Path("missing.conf");
  EXPECT_EQ(StderrOf([&] { EXPECT_EQ(new_cfg(path.c_str(), false), nullptr); }),
            "[new_cfg:tcfg_util(129)]\t" + path + " does not exist\n");
  EXPECT_FALSE(std::filesystem::exists(path));

  const mode_t oldMask = umask(0);
  Cfg cfg(new_cfg(path.c_str(), true));
  umask(oldMask);
  ASSERT_NE(cfg, nullptr);
  struct stat st;
  ASSERT_EQ(stat(path.c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 07777, 0744u);
  EXPECT_EQ(st.st_size, 0);
  EXPECT_EQ(cfg->size, 0u);
  EXPECT_EQ(std::string(cfg->path), path);
  EXPECT_EQ(load_cfg(cfg.get()), 0);
  EXPECT_EQ(add_cfg_line(cfg.get(), "CENTER_X=1"), 0);
  EXPECT_EQ(save_cfg(cfg.get()), 0);
  EXPECT_EQ(ReadFile(path), "CENTER_X=1\n");

  // An existing file is left as it is.
  Cfg again(new_cfg(path.c_str(), true));
  ASSERT_NE(again, nullptr);
  EXPECT_EQ(again->size, 11u);
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

  // It grew: only the size taken is read.
  WriteFile(path, "K=1\n");
  cfg.reset(new_cfg(path.c_str(), false));
  WriteFile(path, "K=1\nL=2\n");
  EXPECT_EQ(load_cfg(cfg.get()), 1);

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
