// The zoom module handler that no module code routes to: called in this
// process on a record file of its own, 21 bytes, continue read.
#include <gtest/gtest.h>
#include <stdio.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "camctl/module_handler_table.h"
#include "cgi/cgi_request.h"
#include "handlers/settings_handlers.h"
#include "tests/device/device_root.h"

namespace device_test {
namespace {

class UnroutedZoomModule : public ::testing::Test {
 protected:
  void SetUp() override {
    char directory[] = "/tmp/unrouted_zoom_XXXXXX";
    ASSERT_NE(mkdtemp(directory), nullptr);
    directory_ = directory;
    path_ = directory_ + "/ZrCamCtlConfZZ.bin";
  }
  void TearDown() override {
    FreeForm();
    unlink(path_.c_str());
    rmdir(directory_.c_str());
  }

  void WriteRecord(const Bytes& record) {
    std::ofstream(path_, std::ios::binary).write(reinterpret_cast<const char*>(record.data()),
                                                 static_cast<std::streamsize>(record.size()));
  }
  Bytes ReadRecord() {
    std::ifstream in(path_, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }
  // Runs the handler on the form; stderr is kept in err.
  int Run(const std::string& form) {
    FreeForm();
    EXPECT_EQ(ParseUrlEncodedForm(form.data(), form.size()), 0);
    testing::internal::CaptureStderr();
    const int result = UnroutedZoomModuleSettings(errorBuffer, path_.c_str());
    err = testing::internal::GetCapturedStderr();
    return result;
  }

  std::string directory_, path_, err;
  char errorBuffer[256] = {};
};

TEST_F(UnroutedZoomModule, EveryKeyLandsAtItsByteAndTheFirstTwoBytesStay) {
  const char* keys[] = {"FocusMode",   "AwbMode",       "AwbRGain",    "AwbBGain",       "ExpMode",
                        "ExpSlowShutter", "ExpeIris",   "ExpShutter",  "ExpBrightness",  "ExpDayNight",
                        "ExpWdrMode",  "ExpWdrValue",   "ImgSharpness", "MaxDigitalZoom", "PwrFrequency",
                        "Chroma",      "DnrLevel",      "FlipMode",    "Gamma"};
  std::string form = "RetReDir=/r";
  Bytes expected = Pattern(21);
  for (size_t i = 0; i < std::size(keys); ++i) {
    form += std::string("&") + keys[i] + "=" + std::to_string(0x200 + 10 * i);
    expected[2 + i] = static_cast<uint8_t>(10 * i);
  }
  WriteRecord(Pattern(21));
  EXPECT_EQ(Run(form), 1);
  EXPECT_EQ(Hex(ReadRecord()), Hex(expected));
  EXPECT_EQ(err, "");
  EXPECT_STREQ(errorBuffer, "");

  // Near misses of the posted spellings change nothing.
  WriteRecord(Pattern(21));
  EXPECT_EQ(Run("ExpIris=1&PwrFreq=2&Flip=3&DnrMode=4&ExpGamma=5"), 1);
  EXPECT_EQ(Hex(ReadRecord()), Hex(Pattern(21)));
}

TEST_F(UnroutedZoomModule, MissingRecordIsCreatedWithItsSize) {
  EXPECT_EQ(Run("Gamma=-1&FocusMode=0x1FF"), 1);
  Bytes expected(21, 0);
  expected[2] = 0xFF;
  expected[20] = 0xFF;
  EXPECT_EQ(Hex(ReadRecord()), Hex(expected));
  EXPECT_EQ(err, "fopen is failed [PATH:" + path_ + "]\nZrCamCtlReadConfFromFile is failed\n");
  EXPECT_STREQ(errorBuffer, "");
}

TEST_F(UnroutedZoomModule, LongerRecordIsCutAndWriteFailureIsMinusTwo) {
  Bytes longer = Pattern(30);
  WriteRecord(longer);
  EXPECT_EQ(Run("Chroma=3"), 1);
  longer.resize(21);
  longer[17] = 3;
  EXPECT_EQ(Hex(ReadRecord()), Hex(longer));

  FreeForm();
  testing::internal::CaptureStderr();
  EXPECT_EQ(UnroutedZoomModuleSettings(errorBuffer, "/dev/full"), -2);
  EXPECT_NE(testing::internal::GetCapturedStderr().find("ZrCamCtlWriteConfToFile is failed\n"),
            std::string::npos);
  EXPECT_STREQ(errorBuffer, "ZrCamCtlWriteConfToFile is failed\n");
}

TEST(UnroutedZoomModuleRouting, NoModuleRowSelectsIt) {
  ASSERT_NE(UnroutedZoomModuleSettings, nullptr);
  for (int row = 0; row < kModuleCount; ++row) {
    EXPECT_NE(ModuleHandlers[row], &UnroutedZoomModuleSettings) << row;
  }
}

}  // namespace
}  // namespace device_test
