// The product-code reader and the record path.
#include <gtest/gtest.h>

#include <string>

#include "modules/module_table.h"
#include "modules/product_code.h"

namespace {

int Parse(std::string text, char* out, int key = 1, std::string* err = nullptr) {
  testing::internal::CaptureStderr();
  const int r = ParseQefString(text.data(), key, out);
  const std::string e = testing::internal::GetCapturedStderr();
  if (err) *err = e;
  return r;
}

TEST(ProductCode, ExtractsTheQuotedValue) {
  char out[kPnCodeBufferSize] = {};
  std::string err;
  EXPECT_EQ(Parse("QEF_STR0=\"a\";\nQEF_STR1=\"ABCDEFGHIJKLMNOPQRS0D\";\nQEF_STR2=\"z\";", out), 21);
  EXPECT_STREQ(out, "ABCDEFGHIJKLMNOPQRS0D");
  EXPECT_EQ(Parse("QEF_STR7=\"last\";", out, 7), 4);
  EXPECT_EQ(Parse("QEF_STR1=\"\";", out), 0);

  EXPECT_EQ(Parse("QEF_STR1=\"ABC\"\n", out, 1, &err), -1);
  EXPECT_EQ(err, "qet_get_and_init_pn_code():strstr(\";) error for end\n");
  EXPECT_EQ(Parse("QEF_STR1=ABC;", out, 1, &err), -1);  // no opening quote
  EXPECT_EQ(err, "qet_get_and_init_pn_code():strstr(QEF_STR1=\") error for start\n");

  // Cut to 63 characters in the 64-byte buffer.
  char bounded[kPnCodeBufferSize + 8];
  memset(bounded, 'X', sizeof bounded);
  EXPECT_EQ(Parse("QEF_STR1=\"" + std::string(200, 'p') + "\";", bounded), 63);
  EXPECT_EQ(std::string(bounded), std::string(63, 'p'));
  EXPECT_EQ(bounded[64], 'X');
}

TEST(ProductCode, RecordPath) {
  char path[256];
  EXPECT_EQ(MakeCamCtlConfPath(path, 256, "ABCDEFGHIJKLMNOPQRS0D"), 0);
  EXPECT_STREQ(path, "/opt/kfp/etc/ZrConf/ZrCamCtlConf0D.bin");
  testing::internal::CaptureStderr();
  EXPECT_EQ(MakeCamCtlConfPath(path, 256, "ABCDEFGHIJKLMNOPQRS0"), -2);
  EXPECT_EQ(MakeCamCtlConfPath(nullptr, 256, "ABCDEFGHIJKLMNOPQRS0D"), -1);
  EXPECT_EQ(MakeCamCtlConfPath(path, 38, "ABCDEFGHIJKLMNOPQRS0D"), -3);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "pnCodeLength is not correct[pnCodeLength=20]\n"
            "a_filePath or a_pnCode is null\n"
            "strlen(value)>=a_filePathBufferLength [strlen(value)=38 a_filePathBufferLength=38]\n");
  EXPECT_EQ(MakeCamCtlConfPath(path, 39, "ABCDEFGHIJKLMNOPQRS0D"), 0);
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
