// The product-code reader, the record path and the module table.
#include <gtest/gtest.h>

#include <string.h>

#include <string>

#include "modules/module_table.h"
#include "modules/product_code.h"

namespace {

TEST(ProductCode, ParseAndRecordPath) {
  const std::string p62(62, 'p'), p63(63, 'p'), p64(64, 'p');
  const char* kCode = "ABCDEFGHIJKLMNOPQRS0D";
  // The value read (at most 63 characters) and its length, or the path made; then stderr.
  struct Case {
    const char* name;
    std::string text;
    int key, size;
    int want;
    std::string out;
  };
  const Case cases[] = {
      {"among others",
          "QEF_STR0=\"a\";\nQEF_STR1=\"" + std::string(kCode) + "\";\nQEF_STR2=\"z\";",
          1,
          0,
          21,
          kCode},
      {"last key", "QEF_STR7=\"last\";", 7, 0, 4, "last"},
      {"empty", "QEF_STR1=\"\";", 1, 0, 0, ""},
      {"62 characters", "QEF_STR1=\"" + p62 + "\";", 1, 0, 62, p62},
      {"63 characters", "QEF_STR1=\"" + p63 + "\";", 1, 0, 63, p63},
      {"64 characters", "QEF_STR1=\"" + p64 + "\";", 1, 0, 63, p63},
      {"no end",
          "QEF_STR1=\"ABC\"\n",
          1,
          0,
          -1,
          "qet_get_and_init_pn_code():strstr(\";) error for end\n"},
      {"no quote",
          "QEF_STR1=ABC;",
          1,
          0,
          -1,
          "qet_get_and_init_pn_code():strstr(QEF_STR1=\") error for start\n"},
      {"path", kCode, -1, 256, 0, "/opt/kfp/etc/ZrConf/ZrCamCtlConf0D.bin"},
      {"22 characters",
          std::string(kCode) + "X",
          -1,
          256,
          0,
          "/opt/kfp/etc/ZrConf/ZrCamCtlConf0D.bin"},
      {"20 characters",
          "ABCDEFGHIJKLMNOPQRS0",
          -1,
          256,
          -2,
          "pnCodeLength is not correct[pnCodeLength=20]\n"},
      {"38 in 40", kCode, -1, 40, 0, "/opt/kfp/etc/ZrConf/ZrCamCtlConf0D.bin"},
      {"38 in 39", kCode, -1, 39, 0, "/opt/kfp/etc/ZrConf/ZrCamCtlConf0D.bin"},
      {"38 in 38",
          kCode,
          -1,
          38,
          -3,
          "strlen(value)>=a_filePathBufferLength [strlen(value)=38 a_filePathBufferLength=38]\n"},
  };
  for (const Case& k : cases) {
    char out[kPnCodeBufferSize + 200];
    memset(out, 'X', sizeof out);
    std::string text = k.text;
    testing::internal::CaptureStderr();
    const int r = k.key >= 0 ? ParseQefString(text.data(), k.key, out)
                             : MakeCamCtlConfPath(out, k.size, text.c_str());
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(r, k.want) << k.name;
    EXPECT_EQ(r < 0 ? err : std::string(out), k.out) << k.name;
    EXPECT_EQ(r < 0 ? 'X' : out[kPnCodeBufferSize], 'X')
        << k.name;  // nothing written past 64 bytes
  }
  char path[kPnCodeBufferSize];
  testing::internal::CaptureStderr();
  EXPECT_EQ(
      MakeCamCtlConfPath(nullptr, 256, kCode) * 10 + MakeCamCtlConfPath(path, 64, nullptr), -11);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
      "a_filePath or a_pnCode is null\na_filePath or a_pnCode is null\n");
}

// Without the driver's file (the host) the product code cannot be read.
TEST(ProductCode, WithoutTheDriver) {
  const std::string noStart = "qet_get_and_init_pn_code():strstr(QEF_STR1=\") error for start\n";
  char out[kPnCodeBufferSize] = "junk";
  testing::internal::CaptureStderr();
  EXPECT_EQ(PnCodeUtilQefStrRead(out, 8), -1);
  EXPECT_EQ(PnCodeUtilQefStrRead(out, 7), -1);
  EXPECT_EQ(GetExtCamId(out), -1);
  std::string want =
      "PnCodeUtilQefStrRead():KeyOffset=8 error\n"
      "qet_get_and_init_pn_code():strstr(QEF_STR7=\") error for start\n";
  want += noStart + "PnCodeUtilRead is failed\n";
  std::string err = testing::internal::GetCapturedStderr(), ours;  // less what cat says
  for (size_t at = 0, nl; (nl = err.find('\n', at)) != std::string::npos; at = nl + 1)
    if (err.substr(at, nl - at).find("qe_basic_conf") == std::string::npos)
      ours += err.substr(at, nl + 1 - at);
  EXPECT_EQ(ours, want);
}

TEST(ModuleTable, RowsAndCodes) {
  EXPECT_EQ(ModuleCode("0D"), 0x3044u);
  EXPECT_EQ(FindModuleRow(0x3044), &ModuleTable[0]);
  EXPECT_EQ(FindModuleRow(ModuleCode("2x")), &ModuleTable[141]);
  EXPECT_EQ(FindModuleRow(0), nullptr);
  EXPECT_EQ(FindModuleRow(0xFFFFFFFF), nullptr);
  for (const ModuleRow& row : ModuleTable) EXPECT_EQ(FindModuleRow(row.code), &row);  // unique
  EXPECT_EQ(FindModuleRow(ModuleCode("0J"))->family, &kZoomCameraModule);
  EXPECT_EQ(FindModuleRow(ModuleCode("0T"))->family, &kDayNightIrCamera);
  EXPECT_EQ(FindModuleRow(ModuleCode("1Y"))->family, nullptr);
}

}  // namespace
