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

TEST(TcfgValues, CommentQuotesAndSemicolonStayAroundTheValue) {
  Cfg cfg = Mem(
      "CENTER_X = 320 # pixels\n"
      "CENTER_Y=\"240\";\n"
      "OUTER_RADIUS\t'300' ; outer\n");
  EXPECT_EQ(Value(cfg.get(), "CENTER_X"), "320");
  EXPECT_EQ(Value(cfg.get(), "CENTER_Y"), "240");
  EXPECT_EQ(Value(cfg.get(), "OUTER_RADIUS"), "300");

  EXPECT_EQ(set_cfg_value(cfg.get(), "CENTER_X", "400"), 0);
  EXPECT_EQ(set_cfg_value(cfg.get(), "CENTER_Y", "400"), 0);
  EXPECT_EQ(set_cfg_value(cfg.get(), "OUTER_RADIUS", "12345"), 0);
  EXPECT_EQ(Lines(cfg.get()), (std::vector<std::string>{"CENTER_X = 400 # pixels",
                                                        "CENTER_Y=\"400\";",
                                                        "OUTER_RADIUS\t'12345' ; outer"}));
  EXPECT_EQ(Value(cfg.get(), "CENTER_X"), "400");
}

TEST(TcfgValues, KeyMatchesOnlyWholeAtLineStart) {
  Cfg cfg = Mem("CENTER_XY=1\nCENTER_X2=5\n CENTER_X=6\n#CENTER_X=7\nCENTER_X\t8\n");
  int line = -2;
  EXPECT_EQ(Value(cfg.get(), "CENTER_X", &line), "8");
  EXPECT_EQ(line, 4);
  EXPECT_EQ(Value(cfg.get(), "CENTER"), "<none>");
  EXPECT_EQ(Value(cfg.get(), "CENTER_XYZ"), "<none>");  // longer than the line's key

  // A key that is not in the file is never added.
  Cfg other = Mem("CENTER_XY=1\n");
  EXPECT_EQ(set_cfg_value(other.get(), "CENTER_X", "2"), -1);
  EXPECT_EQ(Lines(other.get()), std::vector<std::string>{"CENTER_XY=1"});
}

TEST(TcfgValues, SeparatorsBlanksAndEmptyValues) {
  Cfg cfg = Mem(
      "A = =\t= 1\n"
      "B = a b\t c  \t\n"
      "C =\n"
      "D=#only comment\n"
      "E = \"\"\n"
      "F=x;y;z\n");
  EXPECT_EQ(Value(cfg.get(), "A"), "1");
  EXPECT_EQ(Value(cfg.get(), "B"), "a b\t c");  // inner blanks are part of it
  EXPECT_EQ(Value(cfg.get(), "C"), "");
  EXPECT_EQ(Value(cfg.get(), "D"), "");
  EXPECT_EQ(Value(cfg.get(), "E"), "");
  EXPECT_EQ(Value(cfg.get(), "F"), "x");

  EXPECT_EQ(set_cfg_value(cfg.get(), "B", "d"), 0);
  EXPECT_EQ(set_cfg_value(cfg.get(), "C", "5"), 0);
  EXPECT_EQ(set_cfg_value(cfg.get(), "D", "6"), 0);
  EXPECT_EQ(set_cfg_value(cfg.get(), "E", "7"), 0);
  EXPECT_EQ(set_cfg_value(cfg.get(), "F", ""), 0);
  EXPECT_EQ(Lines(cfg.get()), (std::vector<std::string>{"A = =\t= 1", "B = d  \t", "C =5",
                                                        "D=6#only comment", "E = \"7\"",
                                                        "F=;y;z"}));
}

TEST(TcfgValues, OccurrenceAndStartLine) {
  Cfg cfg = Mem("A=1\nA=2\nB=0\nA=3\n");
  char out[8];
  EXPECT_EQ(get_cfg_value(cfg.get(), "A", out, sizeof out, 1, 0), 1);
  EXPECT_STREQ(out, "2");
  EXPECT_EQ(get_cfg_value(cfg.get(), "A", out, sizeof out, 0, 2), 3);
  EXPECT_STREQ(out, "3");
  EXPECT_EQ(get_cfg_value(cfg.get(), "A", out, sizeof out, 1, 1), 3);
  for (auto [occurrence, start] :
       std::initializer_list<std::pair<int, int>>{{3, 0}, {1, 2}, {0, 4}, {-1, 0}, {0, -1}}) {
    strcpy(out, "junk");
    EXPECT_EQ(get_cfg_value(cfg.get(), "A", out, sizeof out, occurrence, start), -1);
    EXPECT_STREQ(out, "");
  }

  EXPECT_EQ(set_cfg_value(cfg.get(), "A", "9", 2, 0), 0);
  EXPECT_EQ(set_cfg_value(cfg.get(), "A", "9", 0, 4), -1);
  EXPECT_EQ(Lines(cfg.get()), (std::vector<std::string>{"A=1", "A=2", "B=0", "A=9"}));
}

TEST(TcfgValues, ValueLimitIs127Characters) {
  const std::string v127(127, '7'), v128(128, '8');
  Cfg cfg = Mem("K127=" + v127 + "\nK128 = \"" + v128 + "\" # kept\n");
  EXPECT_EQ(Value(cfg.get(), "K127"), v127);
  EXPECT_EQ(set_cfg_value(cfg.get(), "K127", "1"), 0);

  std::string got;
  EXPECT_EQ(StderrOf([&] { got = Value(cfg.get(), "K128"); }),
            "insufficient string buffer size\n");
  EXPECT_EQ(got, "<none>");
  EXPECT_EQ(StderrOf([&] { EXPECT_EQ(set_cfg_value(cfg.get(), "K128", "1"), -1); }),
            "insufficient string buffer size\n");
  EXPECT_EQ(Lines(cfg.get()), (std::vector<std::string>{"K127=1", "K128 = \"" + v128 + "\" # kept"}));

  // The caller's buffer bounds the copy: "12345" needs six bytes.
  Cfg small = Mem("K=12345\n");
  char out[6] = "junk";
  EXPECT_EQ(StderrOf([&] { EXPECT_EQ(get_cfg_value(small.get(), "K", out, 5), -1); }),
            "insufficient string buffer size\n");
  EXPECT_STREQ(out, "");
  EXPECT_EQ(get_cfg_value(small.get(), "K", out, 6), 0);
  EXPECT_STREQ(out, "12345");
}

TEST(TcfgValues, LongTailsAndRepeatedReplacement) {
  const std::string comment = " # " + std::string(1000, 'c');
  Cfg cfg = Mem("K = 1" + comment + "\n");
  for (const char* value : {"22", "333333", "4"}) {
    ASSERT_EQ(set_cfg_value(cfg.get(), "K", value), 0);
    EXPECT_EQ(Lines(cfg.get())[0], std::string("K = ") + value + comment);
  }
  // Emptied, the blank before the comment joins the separators: the next
  // value goes after it and meets the comment.
  ASSERT_EQ(set_cfg_value(cfg.get(), "K", ""), 0);
  EXPECT_EQ(Lines(cfg.get())[0], "K = " + comment);
  EXPECT_EQ(Value(cfg.get(), "K"), "");
  ASSERT_EQ(set_cfg_value(cfg.get(), "K", "5"), 0);
  EXPECT_EQ(Lines(cfg.get())[0], "K =  5" + comment.substr(1));
  // The new value is written as given; only reading it back is bounded.
  const std::string v300(300, 'v');
  EXPECT_EQ(set_cfg_value(cfg.get(), "K", v300.c_str()), 0);
  EXPECT_EQ(Lines(cfg.get())[0], "K =  " + v300 + comment.substr(1));
  EXPECT_EQ(StderrOf([&] { EXPECT_EQ(Value(cfg.get(), "K"), "<none>"); }),
            "insufficient string buffer size\n");
}

TEST(TcfgValues, MalformedLinesStayInBounds) {
  const std::vector<std::string> lines = {
      "=5", " = 5", "NOVALUE", "EMPTY=", "OPEN=\"abc", "OPEN2='", "TRAIL= \t ",
      " \t= =\t", "=", "Q=\"", "'", "#", ";;;", "K"};
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  Cfg cfg = Mem(text);
  ASSERT_EQ(Lines(cfg.get()), lines);

  EXPECT_EQ(Value(cfg.get(), "NOVALUE"), "<none>");  // no separator: not a key line
  EXPECT_EQ(Value(cfg.get(), "EMPTY"), "");
  EXPECT_EQ(Value(cfg.get(), "OPEN"), "abc");
  EXPECT_EQ(Value(cfg.get(), "OPEN2"), "");
  EXPECT_EQ(Value(cfg.get(), "TRAIL"), "");
  EXPECT_EQ(Value(cfg.get(), "Q"), "");
  EXPECT_EQ(Value(cfg.get(), "KEY"), "<none>");  // longer than the line "K"
  // The empty key matches the lines that start with a separator.
  int line = -2;
  EXPECT_EQ(Value(cfg.get(), "", &line), "5");
  EXPECT_EQ(line, 0);

  EXPECT_EQ(set_cfg_value(cfg.get(), "EMPTY", "1"), 0);
  EXPECT_EQ(set_cfg_value(cfg.get(), "OPEN", "2"), 0);
  EXPECT_EQ(set_cfg_value(cfg.get(), "OPEN2", "3"), 0);
  EXPECT_EQ(set_cfg_value(cfg.get(), "TRAIL", "4"), 0);
  EXPECT_EQ(set_cfg_value(cfg.get(), "Q", "5"), 0);
  EXPECT_EQ(set_cfg_value(cfg.get(), "", "6", 2, 0), 0);
  EXPECT_EQ(set_cfg_value(cfg.get(), "NOVALUE", "7"), -1);
  std::vector<std::string> expected = lines;
  expected[3] = "EMPTY=1";
  expected[4] = "OPEN=\"2";
  expected[5] = "OPEN2='3";
  expected[6] = "TRAIL= \t 4";
  expected[7] = " \t= =\t6";
  expected[9] = "Q=\"5";
  EXPECT_EQ(Lines(cfg.get()), expected);

  // Null arguments fail without touching anything.
  char out[4] = "x";
  EXPECT_EQ(get_cfg_value(nullptr, "K", out, sizeof out), -1);
  EXPECT_STREQ(out, "");
  EXPECT_EQ(get_cfg_value(cfg.get(), nullptr, out, sizeof out), -1);
  EXPECT_EQ(get_cfg_value(cfg.get(), "K", nullptr, 4), -1);
  EXPECT_EQ(get_cfg_value(cfg.get(), "EMPTY", out, 0), -1);
  EXPECT_EQ(set_cfg_value(nullptr, "K", "1"), -1);
  EXPECT_EQ(set_cfg_value(cfg.get(), "EMPTY", nullptr), -1);
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
  char out[kTcfgValueSize];
  const char* expected[] = {"eth0", "192.168.0.1", "255.255.255.0"};
  for (int col = 0; col < 3; ++col) {
    EXPECT_EQ(get_cfg_col(cfg.get(), 0, col, " \t", out, sizeof out), 0);
    EXPECT_STREQ(out, expected[col]);
  }
  strcpy(out, "junk");
  EXPECT_EQ(get_cfg_col(cfg.get(), 0, 3, " \t", out, sizeof out), -1);
  EXPECT_STREQ(out, "");

  // One opening quote is skipped; the value ends at the next quote.
  EXPECT_EQ(get_cfg_col(cfg.get(), 1, 0, ",", out, sizeof out), 0);
  EXPECT_STREQ(out, "my cam");
  EXPECT_EQ(get_cfg_col(cfg.get(), 1, 1, ",", out, sizeof out), 0);
  EXPECT_STREQ(out, "x");
  EXPECT_EQ(get_cfg_col(cfg.get(), 1, 2, ",", out, sizeof out), 0);
  EXPECT_STREQ(out, "y");
  // No delimiters: the whole row is one column.
  EXPECT_EQ(get_cfg_col(cfg.get(), 0, 0, "", out, sizeof out), 0);
  EXPECT_STREQ(out, "  eth0 \t192.168.0.1\t\t255.255.255.0");

  for (int row : {-1, 2}) EXPECT_EQ(get_cfg_col(cfg.get(), row, 0, ",", out, sizeof out), -1);
  EXPECT_EQ(get_cfg_col(cfg.get(), 0, -1, ",", out, sizeof out), -1);
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
  Cfg cfg = Mem(
      "user admin 1\n"
      "group admin x\n"
      "user guest 0\n"
      "\"user\" quoted 2\n"
      "user\n"
      "users many 3\n");
  char out[kTcfgValueSize];
  EXPECT_EQ(find_cfg_row(cfg.get(), 0, "user", 1, " ", out, sizeof out, 0), 0);
  EXPECT_STREQ(out, "admin");
  EXPECT_EQ(find_cfg_row(cfg.get(), 0, "user", 2, " ", out, sizeof out, 1), 2);
  EXPECT_STREQ(out, "0");
  EXPECT_EQ(find_cfg_row(cfg.get(), 0, "user", 1, " ", out, sizeof out, 2), 3);
  EXPECT_STREQ(out, "quoted");
  // The fourth "user" row has no second column.
  EXPECT_EQ(find_cfg_row(cfg.get(), 0, "user", 1, " ", out, sizeof out, 3), -1);
  EXPECT_STREQ(out, "");
  EXPECT_EQ(find_cfg_row(cfg.get(), 0, "user", 1, " ", out, sizeof out, 4), -1);
  EXPECT_EQ(find_cfg_row(cfg.get(), 0, "use", 1, " ", out, sizeof out, 0), -1);
  EXPECT_EQ(find_cfg_row(cfg.get(), 1, "admin", 2, " ", out, sizeof out, 1), 1);
  EXPECT_STREQ(out, "x");
  EXPECT_EQ(find_cfg_row(cfg.get(), 0, "user", 1, " ", out, sizeof out, -1), -1);
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
