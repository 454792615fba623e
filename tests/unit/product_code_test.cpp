// The product-code reader, the record path and the module table.
#include <gtest/gtest.h>

#include <string.h>

#include <string>

#include "modules/module_table.h"
#include "modules/product_code.h"
#include "tests/cases.h"

namespace {

TEST(ProductCode, ParseAndRecordPath) {
  for (const cases::Case& k : cases::Read("unit", "product_code")) {
    char out[kPnCodeBufferSize + 200];
    memset(out, 'X', sizeof out);
    std::string text = k[1];
    const int key = std::stoi(k[2]);
    testing::internal::CaptureStderr();
    const int r = key >= 0 ? ParseQefString(text.data(), key, out)
                           : MakeCamCtlConfPath(out, std::stoi(k[3]), text.c_str());
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(r, std::stoi(k[4])) << k[0];
    EXPECT_EQ(r < 0 ? err : std::string(out), k[5]) << k[0];
    EXPECT_EQ(r < 0 ? 'X' : out[kPnCodeBufferSize], 'X') << k[0];  // nothing past 64 bytes
  }
  char path[kPnCodeBufferSize];
  testing::internal::CaptureStderr();
  EXPECT_EQ(MakeCamCtlConfPath(nullptr, 256, "ABCDEFGHIJKLMNOPQRS0D") * 10 +
                MakeCamCtlConfPath(path, 64, nullptr),
      -11);
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
