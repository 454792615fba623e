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
#include "tests/cases.h"

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

// One call on a fresh in-memory object: op | name | text | key | arg | a |
// b | c (see data/tcfg.cases); its result, the value read or the lines
// afterwards, and what went to stderr.
std::string Call(const cases::Case& k) {
  Cfg cfg = Mem(k[2]);
  char out[kTcfgValueSize + 8] = "junk";
  const std::string& op = k[0];
  const char *key = k[3].c_str(), *arg = k[4].c_str();
  const int a = std::stoi(k[5]), b = std::stoi(k[6]), c = std::stoi(k[7]);
  int r = cfg->lineCount;
  const std::string err = StderrOf([&] {
    if (op == "get") r = get_cfg_value(cfg.get(), key, out, a, b, c);
    if (op == "set") r = set_cfg_value(cfg.get(), key, arg, b, c);
    if (op == "col") r = get_cfg_col(cfg.get(), a, b, key, out, c);
    if (op == "row") r = find_cfg_row(cfg.get(), a, key, b, " ", out, sizeof out, c);
    if (op == "put") r = set_cfg_col(cfg.get(), a, key, b, ":", arg, c);
  });
  const bool read = op == "get" || op == "col" || op == "row";
  return std::to_string(r) + " " + (read ? std::string(out) : Lines(cfg.get())) +
         (err.empty() ? "" : " ! " + err);
}

TEST(Tcfg, Cases) {
  std::string wide;  // 130 columns
  for (int i = 0; i < 130; ++i) wide += "c" + std::to_string(i) + " ";
  for (const cases::Case& k : cases::Read("unit", "tcfg", {{"wide", wide}}))
    EXPECT_EQ(Call(k), k[8]) << k[1];
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
