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
    char out[kProductCodeSize + 200];
    memset(out, 'X', sizeof out);
    std::string text = k[1];
    const int key = std::stoi(k[2]);
    testing::internal::CaptureStderr();
    const int r = key >= 0 ? ParseQefString(text.data(), key, out)
                           : MakeCamCtlConfPath(out, std::stoi(k[3]), text.c_str());
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(r, std::stoi(k[4])) << k[0];
    EXPECT_EQ(r < 0 ? err : std::string(out), k[5]) << k[0];
    EXPECT_EQ(r < 0 ? 'X' : out[kProductCodeSize], 'X') << k[0];  // nothing past 64 bytes
  }
  char path[kProductCodeSize];
  testing::internal::CaptureStderr();
  EXPECT_EQ(MakeCamCtlConfPath(nullptr, 256, "ABCDEFGHIJKLMNOPQRS0D"), -1);
  EXPECT_EQ(MakeCamCtlConfPath(path, 64, nullptr), -1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
      "a_filePath or a_pnCode is null\na_filePath or a_pnCode is null\n");
}

// Every code finds its own row: no two rows share a code.
TEST(ModuleTable, EveryCodeFindsItsRow) {
  for (const ModuleRow& row : ModuleTable) EXPECT_EQ(FindModuleRow(row.code), &row);
}

}  // namespace
