// The text configuration library: values in "KEY = value" lines, rows and
// columns, the line table and its limit, files on disk and their failures.
#include <gtest/gtest.h>

#include <stdint.h>
#include <stdlib.h>

#include <filesystem>
#include <functional>
#include <initializer_list>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

#include "tcfg/tcfg_util.h"

namespace {

struct CfgDeleter {
  void operator()(tcfg* cfg) const { free_cfg(cfg); }
};
using Cfg = std::unique_ptr<tcfg, CfgDeleter>;
Cfg Mem(const std::string& text) { return Cfg(create_mem_cfg(text.data(), text.size())); }
std::string Lines(const tcfg* cfg) {  // every line, "|" between them
  std::string lines;
  for (int i = 0; i < cfg->lineCount; ++i) lines += (i ? "|" : "") + std::string(cfg->lines[i]);
  return lines;
}
template <typename F>
std::string StderrOf(F call) {
  testing::internal::CaptureStderr();
  call();
  return testing::internal::GetCapturedStderr();
}
std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}
void WriteFile(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

// One call on a fresh in-memory object. get: key, out size a, occurrence b,
// start c. set: key, arg, occurrence b, start c. col: row a, col b,
// delimiters key, out size c. row: key column a, key, col b, occurrence c,
// blank-delimited. put: key column a, key, col b, arg, occurrence c,
// colon-delimited. lines: the split alone. The result: the return value,
// the value read or every line afterwards, and what went to stderr.
struct Case {
  const char *name, *op;
  std::string text;
  const char *key, *arg;
  int a, b, c;
  std::string want;
};

std::string Call(const Case& k) {
  Cfg cfg = Mem(k.text);
  char out[kTcfgValueSize + 8] = "junk";
  const std::string op = k.op;
  int r = cfg->lineCount;
  const std::string err = StderrOf([&] {
    if (op == "get") r = get_cfg_value(cfg.get(), k.key, out, k.a, k.b, k.c);
    if (op == "set") r = set_cfg_value(cfg.get(), k.key, k.arg, k.b, k.c);
    if (op == "col") r = get_cfg_col(cfg.get(), k.a, k.b, k.key, out, k.c);
    if (op == "row") r = find_cfg_row(cfg.get(), k.a, k.key, k.b, " ", out, sizeof out, k.c);
    if (op == "put") r = set_cfg_col(cfg.get(), k.a, k.key, k.b, ":", k.arg, k.c);
  });
  const bool read = op == "get" || op == "col" || op == "row";
  return std::to_string(r) + " " + (read ? std::string(out) : Lines(cfg.get())) +
         (err.empty() ? "" : " ! " + err);
}

TEST(Tcfg, Cases) {
  const char* kKeys = "CENTER_XY=1\nCENTER_X2=5\n CENTER_X=6\n#CENTER_X=7\nCENTER_X\t8\n";
  const char* kRepeat = "A=1\nA=2\nB=0\nA=3\n";
  const char* kOdd = "=5\nNOVALUE\nOPEN=\"abc\nTRAIL= \t \nD=#only comment\nE = \"\"\nF=x;y;z\n";
  const char* kNet = "  eth0 \t192.168.0.1\t\t255.255.255.0\n\"my cam\",'x',y\"z\n";
  const char* kUsers =
      "user admin 1\ngroup admin x\nuser guest 0\n\"user\" quoted 2\nuser\nusers many 3\n";
  const char* kPasswd = "root:\"x\":0:0\nguest:'x':1000:100\nguest:y:1001:100\n";
  const std::string v127(127, '7'), v128(128, '8'), k127 = "K=" + v127,
                                                    k128 = "K = '" + v128 + "' # kept";
  const std::string kShort = " ! insufficient string buffer size\n", kLarge = " ! too large col\n";
  std::string wide;  // 130 columns
  for (int i = 0; i < 130; ++i) wide += "c" + std::to_string(i) + " ";
  const Case cases[] = {
      {"breaks collapse",
          "lines",
          "A=1\r\n\r\n\r\nB=2\rC=3\n\n\nD=4",
          "",
          "",
          0,
          0,
          0,
          "4 A=1|B=2|C=3|D=4"},
      {"only breaks", "lines", "\r\n\n\r", "", "", 0, 0, 0, "0 "},
      {"ends at a NUL",
          "lines",
          std::string("A=1\nB=2\0\nC=3\n", 13),
          "",
          "",
          0,
          0,
          0,
          "2 A=1|B=2"},
      {"whole key only", "get", kKeys, "CENTER_X", "", 128, 0, 0, "4 8"},
      {"key prefix", "get", kKeys, "CENTER", "", 128, 0, 0, "-1 "},
      {"key too long", "get", kKeys, "CENTER_XYZ", "", 128, 0, 0, "-1 "},
      {"separators", "get", "A = =\t= 1\n", "A", "", 128, 0, 0, "0 1"},
      {"inner blanks kept", "get", "B = a b\t c  \t\n", "B", "", 128, 0, 0, "0 a b\t c"},
      {"2nd occurrence", "get", kRepeat, "A", "", 128, 1, 0, "1 2"},
      {"3rd occurrence", "get", kRepeat, "A", "", 128, 2, 0, "3 3"},
      {"from line 2", "get", kRepeat, "A", "", 128, 0, 2, "3 3"},
      {"2nd from line 1", "get", kRepeat, "A", "", 128, 1, 1, "3 3"},
      {"no 4th", "get", kRepeat, "A", "", 128, 3, 0, "-1 "},
      {"no 2nd from line 2", "get", kRepeat, "A", "", 128, 1, 2, "-1 "},
      {"start past end", "get", kRepeat, "A", "", 128, 0, 4, "-1 "},
      {"occurrence -1", "get", kRepeat, "A", "", 128, -1, 0, "-1 "},
      {"start -1", "get", kRepeat, "A", "", 128, 0, -1, "-1 "},
      {"empty key", "get", kOdd, "", "", 128, 0, 0, "0 5"},
      {"no separator", "get", kOdd, "NOVALUE", "", 128, 0, 0, "-1 "},
      {"open quote", "get", kOdd, "OPEN", "", 128, 0, 0, "2 abc"},
      {"blanks only", "get", kOdd, "TRAIL", "", 128, 0, 0, "3 "},
      {"comment only", "get", kOdd, "D", "", 128, 0, 0, "4 "},
      {"empty quotes", "get", kOdd, "E", "", 128, 0, 0, "5 "},
      {"semicolon ends", "get", kOdd, "F", "", 128, 0, 0, "6 x"},
      {"127 in 128", "get", k127, "K", "", 128, 0, 0, "0 " + v127},
      {"128 in 128", "get", k128, "K", "", 128, 0, 0, "-1 " + kShort},
      {"5 in 6", "get", "K=12345", "K", "", 6, 0, 0, "0 12345"},
      {"5 in 5", "get", "K=12345", "K", "", 5, 0, 0, "-1 " + kShort},
      {"size 0", "get", "K=12345", "K", "", 0, 0, 0, "-1 junk"},
      {"set keeps comment",
          "set",
          "CENTER_X = 320 # pixels",
          "CENTER_X",
          "400",
          0,
          0,
          0,
          "0 CENTER_X = 400 # pixels"},
      {"set in quotes",
          "set",
          "CENTER_Y=\"240\";",
          "CENTER_Y",
          "400",
          0,
          0,
          0,
          "0 CENTER_Y=\"400\";"},
      {"set single quotes",
          "set",
          "R\t'300' ; outer",
          "R",
          "12345",
          0,
          0,
          0,
          "0 R\t'12345' ; outer"},
      {"set no such key", "set", "CENTER_XY=1", "CENTER_X", "2", 0, 0, 0, "-1 CENTER_XY=1"},
      {"set keeps blanks", "set", "B = a b\t c  \t", "B", "d", 0, 0, 0, "0 B = d  \t"},
      {"set empty value", "set", "C =", "C", "5", 0, 0, 0, "0 C =5"},
      {"set before comment", "set", "D=#c", "D", "6", 0, 0, 0, "0 D=6#c"},
      {"set to empty", "set", "F=x;y;z", "F", "", 0, 0, 0, "0 F=;y;z"},
      {"set 3rd", "set", kRepeat, "A", "9", 0, 2, 0, "0 A=1|A=2|B=0|A=9"},
      {"set past end", "set", kRepeat, "A", "9", 0, 0, 4, "-1 A=1|A=2|B=0|A=3"},
      {"set no value", "set", "NOVALUE", "NOVALUE", "7", 0, 0, 0, "-1 NOVALUE"},
      {"set over 127", "set", k127, "K", "1", 0, 0, 0, "0 K=1"},
      {"set over 128", "set", k128, "K", "1", 0, 0, 0, "-1 " + k128 + kShort},
      {"column 0", "col", kNet, " \t", "", 0, 0, 128, "0 eth0"},
      {"column 1", "col", kNet, " \t", "", 0, 1, 128, "0 192.168.0.1"},
      {"last column", "col", kNet, " \t", "", 0, 2, 128, "0 255.255.255.0"},
      {"past last column", "col", kNet, " \t", "", 0, 3, 128, "-1 "},
      {"quoted column", "col", kNet, ",", "", 1, 0, 128, "0 my cam"},
      {"single quotes", "col", kNet, ",", "", 1, 1, 128, "0 x"},
      {"quote ends", "col", kNet, ",", "", 1, 2, 128, "0 y"},
      {"no delimiters", "col", kNet, "", "", 0, 0, 128, "0   eth0 \t192.168.0.1\t\t255.255.255.0"},
      {"row -1", "col", kNet, ",", "", -1, 0, 128, "-1 "},
      {"row past end", "col", kNet, ",", "", 2, 0, 128, "-1 "},
      {"column -1", "col", kNet, ",", "", 0, -1, 128, "-1 "},
      {"4 in 5", "col", kNet, " ", "", 0, 0, 5, "0 eth0"},
      {"4 in 4", "col", kNet, " ", "", 0, 0, 4, "-1 " + kShort},
      {"col size 0", "col", kNet, " ", "", 0, 0, 0, "-1 junk"},
      {"column 127", "col", wide, " ", "", 0, 127, 128, "0 c127"},
      {"column 128", "col", wide, " ", "", 0, 128, 128, "-1 "},
      {"column 129", "col", wide, " ", "", 0, 129, 128, "-1 " + kLarge},
      {"row", "row", kUsers, "user", "", 0, 1, 0, "0 admin"},
      {"2nd row", "row", kUsers, "user", "", 0, 2, 1, "2 0"},
      {"quoted key", "row", kUsers, "user", "", 0, 1, 2, "3 quoted"},
      {"no such column", "row", kUsers, "user", "", 0, 1, 3, "-1 "},
      {"no 5th row", "row", kUsers, "user", "", 0, 1, 4, "-1 "},
      {"key prefix", "row", kUsers, "use", "", 0, 1, 0, "-1 "},
      {"key column 1", "row", kUsers, "admin", "", 1, 2, 1, "1 x"},
      {"row occurrence -1", "row", kUsers, "user", "", 0, 1, -1, "-1 "},
      {"row column 129", "row", kUsers, "user", "", 0, 129, 0, "-1 " + kLarge},
      {"key column 129", "row", kUsers, "user", "", 129, 0, 0, "-1 " + kLarge},
      {"short row skipped", "row", "x k\ny\nk\n", "k", "", 1, 0, 1, "-1 "},
      {"put",
          "put",
          kPasswd,
          "guest",
          "secret",
          0,
          1,
          0,
          "0 root:\"x\":0:0|guest:'secret':1000:100|guest:y:1001:100"},
      {"put 2nd",
          "put",
          kPasswd,
          "guest",
          "2000",
          0,
          2,
          1,
          "0 root:\"x\":0:0|guest:'x':1000:100|guest:y:2000:100"},
      {"put no row",
          "put",
          kPasswd,
          "nobody",
          "z",
          0,
          1,
          0,
          "-1 root:\"x\":0:0|guest:'x':1000:100|guest:y:1001:100"},
      {"put no column", "put", "root:x", "root", "z", 0, 9, 0, "-1 root:x"},
      {"put column 200", "put", "root:x", "root", "z", 0, 200, 0, "-1 root:x" + kLarge},
      {"put over 127", "put", "k:" + v127, "k", "z", 0, 1, 0, "0 k:z"},
      {"put over 128", "put", "k:" + v128, "k", "z", 0, 1, 0, "-1 k:" + v128 + kShort},
  };
  for (const Case& k : cases) EXPECT_EQ(Call(k), k.want) << k.name;
}

// Steps on files and on one object, each after the one before.
class TcfgFiles : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_NE(mkdtemp(dir.data()), nullptr); }
  void TearDown() override { std::filesystem::remove_all(dir); }
  std::string dir = "/tmp/tcfg_test.XXXXXX";
};

TEST_F(TcfgFiles, Steps) {
  const std::string k = dir + "/k.conf", none = dir + "/no/such.conf", sub = dir + "/sub",
                    v300(300, 'v');
  const std::string tail = "# " + std::string(1000, 'c');
  std::string p255 = dir + "/", table, full, added = "L = 1";
  while (p255.size() < 249)
    p255 += p255.size() == 248 ? "/" : "./";  // the same file by a longer name
  for (int i = 0; i < kTcfgMaxLines + 2; ++i)
    table += "L" + std::to_string(i) + "=" + std::to_string(i) + "\n";
  for (int i = 0; i < kTcfgMaxLines; ++i) full += "x\r\n";
  Cfg cfg, mem = Mem("K=1\n");
  char out[8] = "x";
  auto I = [](std::initializer_list<long> results) {  // evaluated in order
    std::string all;
    for (const long r : results) all += std::to_string(r);
    return all;
  };
  auto New = [&](const std::string& path, bool create) {
    cfg.reset(new_cfg(path.c_str(), create));
    return long{cfg != nullptr};
  };
  struct Step {
    const char* name;
    std::function<std::string()> run;
    std::string want;
  };
  const Step steps[] = {
      {"missing",
          [&] { return I({New(k, false)}); },
          "0 ! [new_cfg:tcfg_util(129)]\t" + k + " does not exist\n"},
      {"created empty",
          [&] {
            return I({New(k, true), load_cfg(cfg.get())});
          },
          "10"},
      {"saved",
          [&] {
            return I({add_cfg_line(cfg.get(), "A=1"),
                add_cfg_line(cfg.get(), "B=2"),
                save_cfg(cfg.get())});
          },
          "000"},
      {"existing file kept",
          [&] { return I({create_cfg_file(k.c_str())}) + ReadFile(k); },
          "0A=1\nB=2\n"},
      {"reloaded",
          [&] {
            return I({New(k, false), load_cfg(cfg.get()), set_cfg_value(cfg.get(), "A", "7")});
          },
          "120"},
      // A reload with fewer lines: the old second line is gone everywhere.
      {"fewer lines",
          [&] {
            WriteFile(k, "A=1 B=2\n");
            return I({load_cfg(cfg.get()), get_cfg_value(cfg.get(), "B", out, 8)});
          },
          "1-1"},
      {"rows",
          [&] {
            return I({find_cfg_row(cfg.get(), 0, "B=2", 0, " ", out, 8, 0),
                get_cfg_col(cfg.get(), 1, 0, " ", out, 8)});
          },
          "-1-1"},
      {"dumped, saved",
          [&] {
            dump_cfg(cfg.get());
            return I({save_cfg(cfg.get())}) + ReadFile(k);
          },
          "0A=1 B=2\n ! [00] A=1 B=2\n"},
      {"path of 255",
          [&] {
            return I({New(p255 + "k.conf", false), load_cfg(cfg.get())});
          },
          "11"},
      {"path of 256",
          [&] { return I({New(p255 + "/k.conf", false)}); },
          "0 ! [new_cfg:tcfg_util(157)]\tso long file path\n"},
      {"not created",
          [&] {
            return I({New(none, true), create_cfg_file(none.c_str())});
          },
          "0-1 ! [create_cfg_file:tcfg_util(54)]\tfail to open " + none +
              ". errno: 2\n[new_cfg:tcfg_util(135)]\tfail to create " + none +
              "\n[create_cfg_file:tcfg_util(54)]\tfail to open " + none + ". errno: 2\n"},
      {"nulls",
          [&] {
            free_cfg(nullptr);
            return I({create_cfg_file(nullptr), !new_cfg(nullptr, true), load_cfg(nullptr)});
          },
          "-11-1 ! [load_cfg:tcfg_util(224)]\targument is NULL\n"},
      {"save null",
          [&] { return I({save_cfg(nullptr)}); },
          "-1 ! [save_cfg:tcfg_util(262)]\targument is NULL\n"},
      {"gone",
          [&] {
            New(k, false);
            remove(k.c_str());
            return I({load_cfg(cfg.get())});
          },
          "-1 ! [load_cfg:tcfg_util(231)]\tfail to open " + k + ". errno: 2\n"},
      {"shorter",
          [&] {
            WriteFile(k, "A=");
            return I({load_cfg(cfg.get()), cfg->lineCount});
          },
          "-10 ! [load_cfg:tcfg_util(239)]\tfail to read " + k + ". errno: 0\n"},
      {"memory load",
          [&] { return I({load_cfg(mem.get())}); },
          "-1 ! [load_cfg:tcfg_util(231)]\tfail to open . errno: 2\n"},
      {"memory save",
          [&] { return I({save_cfg(mem.get())}); },
          "-1 ! open error: No such file or directory\n"},
      {"directory gone",
          [&] {
            std::filesystem::create_directory(sub);
            WriteFile(sub + "/k", "K=1\n");
            New(sub + "/k", false);
            load_cfg(cfg.get());
            std::filesystem::remove_all(sub);
            return I({save_cfg(cfg.get()), std::filesystem::exists(sub)});
          },
          "-10 ! open error: No such file or directory\n"},
      {"added lines",
          [&] {
            cfg = Mem("K = 1 " + tail + "\n");
            return I({add_cfg_line(cfg.get(), added.c_str()), add_cfg_line(cfg.get(), "")});
          },
          "00"},
      // A replacement of a replacement and of an added line (a copy); a value is written as given.
      {"replaced",
          [&] {
            added[4] = '9';
            return I(
                {set_cfg_value(cfg.get(), "K", ""), set_cfg_value(cfg.get(), "K", v300.c_str())});
          },
          "00"},
      {"replaced added",
          [&] {
            return I({set_cfg_value(cfg.get(), "L", "2"),
                set_cfg_col(cfg.get(), 0, "L", 2, " ", "3", 0)});
          },
          "00"},
      {"dump",
          [&] {
            dump_cfg(cfg.get());
            dump_cfg(nullptr);
            return "";
          },
          " ! [00] K =  " + v300 + tail + "\n[01] L = 3\n[02] \n"},
      {"null arguments",
          [&] {
            return I({get_cfg_value(nullptr, "K", out, 8),
                       get_cfg_value(cfg.get(), nullptr, out, 8),
                       get_cfg_value(cfg.get(), "K", nullptr, 8),
                       set_cfg_value(nullptr, "K", "1"),
                       set_cfg_value(cfg.get(), "K", nullptr),
                       get_cfg_col(nullptr, 0, 0, ",", out, 8),
                       get_cfg_col(cfg.get(), 0, 0, nullptr, out, 8),
                       get_cfg_col(cfg.get(), 0, 0, ",", nullptr, 8),
                       find_cfg_row(nullptr, 0, "L", 0, " ", out, 8, 0),
                       find_cfg_row(cfg.get(), 0, "L", 0, " ", nullptr, 8, 0),
                       set_cfg_col(nullptr, 0, "L", 0, " ", "1", 0),
                       set_cfg_col(cfg.get(), 0, "L", 0, " ", nullptr, 0),
                       add_cfg_line(nullptr, "x"),
                       add_cfg_line(cfg.get(), nullptr),
                       find_cfg_row(cfg.get(), 0, "L", 0, " ", out, 0, 0)}) +
                   out;
          },
          "-1-1-1-1-1-1-1-1-1-1-1-1-1-1-1"},
      {"no data",
          [&] {
            cfg.reset(create_mem_cfg(nullptr, 0));
            return I({cfg->lineCount}) + cfg->path + I({!create_mem_cfg(nullptr, 3)});
          },
          "01"},
      {"4 GiB text",
          [&] { return I({create_mem_cfg("x", UINT32_MAX) == nullptr}); },
          "1"},  // the size field has 32 bits
      {"32768 lines",
          [&] {
            cfg = Mem(table);
            return I({get_cfg_value(cfg.get(), "L32767", out, 8),
                get_cfg_value(cfg.get(), "L32768", out, 8)});
          },
          "32767-1"},
      {"table full", [&] { return I({add_cfg_line(cfg.get(), "X=1")}); }, "-1 ! too many lines\n"},
      {"exactly full",
          [&] {
            cfg = Mem(full + "\n");
            return I({cfg->lineCount}) + cfg->lines[kTcfgMaxLines - 1];
          },
          "32768x"},
  };
  for (const Step& step : steps) {
    std::string got;
    const std::string err = StderrOf([&] { got = step.run(); });
    EXPECT_EQ(got + (err.empty() ? "" : " ! " + err), step.want) << step.name;
  }
  std::error_code e;  // 2^32 - 1 bytes do not fit the 32-bit size (a sparse file takes no room)
  std::filesystem::resize_file(k, UINT32_MAX, e);
  if (!e) StderrOf([&] { EXPECT_EQ(New(k, false), 0); });
}

}  // namespace
