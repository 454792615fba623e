// The text configuration library: values in "KEY = value" lines, rows and
// columns, the line table and its limit, files on disk and their failures.
#include <gtest/gtest.h>

#include <stdint.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "tcfg/tcfg_util.h"
#include "tests/cases.h"

namespace {

using Cfg = std::unique_ptr<tcfg, decltype(&free_cfg)>;
Cfg Mem(const std::string& text) { return {create_mem_cfg(text.data(), text.size()), free_cfg}; }
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
using TcfgFiles = cases::InTempDir;

TEST_F(TcfgFiles, Steps) {
  const std::string k = dir + "/k.conf";
  std::string p255 = dir + "/", table, full, added;
  while (p255.size() < 249) p255 += p255.size() == 248 ? "/" : "./";  // the same directory
  for (int i = 0; i < kTcfgMaxLines + 2; ++i)
    table += "L" + std::to_string(i) + "=" + std::to_string(i) + "\n";
  for (int i = 0; i < kTcfgMaxLines; ++i) full += "x\r\n";
  Cfg cfg(nullptr, free_cfg);
  for (const cases::Case& step : cases::Read("unit",
           "tcfg_files",
           {{"dir", dir}, {"k", k}, {"p255", p255}, {"table", table}, {"full", full}})) {
    const std::string& op = step[1];
    const char* a = step.size() > 3 ? step[2].c_str() : "";
    const char* b = step.size() > 4 ? step[3].c_str() : "";
    char out[8] = "x";
    std::string r;
    auto n = [&](long v) { r = std::to_string(v); };
    const std::string err = StderrOf([&] {
      if (op == "new") cfg.reset(new_cfg(a, *b == '1')), n(cfg != nullptr);
      if (op == "mem") cfg = Mem(a);
      if (op == "load") n(load_cfg(cfg.get()));
      if (op == "save") n(save_cfg(cfg.get()));
      if (op == "add") {  // the library keeps a copy: the caller's line is overwritten after
        added = a;
        n(add_cfg_line(cfg.get(), added.c_str()));
        added.assign(added.size(), '#');
      }
      if (op == "set") n(set_cfg_value(cfg.get(), a, b));
      if (op == "put") n(set_cfg_col(cfg.get(), 0, a, 2, " ", b, 0));
      if (op == "get") n(get_cfg_value(cfg.get(), a, out, 8));
      if (op == "row") n(find_cfg_row(cfg.get(), 0, a, 0, " ", out, 8, 0));
      if (op == "col") n(get_cfg_col(cfg.get(), 1, 0, " ", out, 8));
      if (op == "dump") dump_cfg(cfg.get());
      if (op == "lines") n(cfg->lineCount);
      if (op == "last") r = cfg->lines[cfg->lineCount - 1];
      if (op == "create") n(create_cfg_file(a));
      if (op == "read") r = cases::ReadAll(a);
      if (op == "write") std::ofstream(a, std::ios::binary) << b;
      if (op == "remove") n(remove(a));
      if (op == "mkdir") std::filesystem::create_directory(a);
      if (op == "link") n(symlink(a, b));
      if (op == "rmtree") std::filesystem::remove_all(a), n(std::filesystem::exists(a));
    });
    EXPECT_EQ(r + (err.empty() ? "" : " ! " + err), step.back()) << step[0] << ": " << op;
  }
  std::error_code e;  // 2^32 - 1 bytes do not fit the 32-bit size (a sparse file takes no room)
  std::filesystem::resize_file(k, UINT32_MAX, e);
  if (!e) StderrOf([&] { EXPECT_EQ(new_cfg(k.c_str(), false), nullptr); });
}

// Null arguments, and texts the object cannot hold.
TEST(Tcfg, NullArguments) {
  Cfg cfg = Mem("L = 1\n");
  char out[8] = "x";
  const std::string err = StderrOf([&] {
    free_cfg(nullptr);
    dump_cfg(nullptr);
    for (const int r : {create_cfg_file(nullptr),
             load_cfg(nullptr),
             save_cfg(nullptr),
             get_cfg_value(nullptr, "K", out, 8),
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
             find_cfg_row(cfg.get(), 0, "L", 0, " ", out, 0, 0)})
      EXPECT_EQ(r, -1);
  });
  EXPECT_EQ(err,
      "[load_cfg:tcfg_util(224)]\targument is NULL\n[save_cfg:tcfg_util(262)]\targument is NULL\n");
  EXPECT_EQ(new_cfg(nullptr, true), nullptr);
  cfg.reset(create_mem_cfg(nullptr, 0));
  EXPECT_EQ(std::to_string(cfg->lineCount) + cfg->path, "0");
  EXPECT_EQ(create_mem_cfg(nullptr, 3), nullptr);
  EXPECT_EQ(create_mem_cfg("x", UINT32_MAX), nullptr);  // the size field has 32 bits
}

}  // namespace
