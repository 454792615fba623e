// Exposure and picture cameras with mains-frequency flags: 41 single bytes,
// continue read, the flags at 1 and 2 derived from "ExposerFrequency", and
// the answer decided by "KeyValue".
#include "tests/device/keyed_fields.h"

namespace device_test {
namespace {

const FamilyProfile kMainsFrequencyFlagCamera = {
    .family = "MainsFrequencyFlagCamera",
    .codes = {"0l"},
    .recordSize = 41,
    .readPolicy = ReadFailure::Continue,
    .handler = MainsFrequencyFlagCameraSettings,
    .writeFailureResult = -2,
    .quietBytes = {{0, 0}},  // KeyValue
};
INSTANTIATE_TEST_SUITE_P(MainsFrequencyFlag, FamilyFrame, ::testing::Values(kMainsFrequencyFlagCamera),
                         PrintFamily);

// "KeyValue" (0) and "ExposerFrequency" (8, with the flags at 1 and 2) are tested below.
const KeyedFamily kLayout = {
    kMainsFrequencyFlagCamera,
    {{"LensMode", 3, 1}, {"ExposerShutter", 4, 1}, {"ExposerShutterSpeed", 5, 1}, {"ExposerAgc", 6, 1},
     {"ExposerDss", 7, 1}, {"ExposerDoorMode", 9, 1}, {"AwbMode", 10, 1}, {"AwbManualPreset", 11, 1},
     {"AwbManualKelvin", 12, 1}, {"AwbManual_R_Gain", 13, 1}, {"AwbManual_B_Gain", 14, 1},
     {"PictureBritness", 15, 1}, {"PictureColorGain", 16, 1}, {"PictureAce", 17, 1},
     {"PictureSharpness", 18, 1}, {"PictureMirror", 19, 1}, {"PictureFlip", 20, 1},
     {"PictureStill", 21, 1}, {"PictureShading", 22, 1}, {"Picture_D_Zoom", 23, 1},
     {"Picture_HL_Mask", 24, 1}, {"Picture_HL_MaskLevel", 25, 1}, {"Picture_HL_MaskColor", 26, 1},
     {"WbdWdrBlcDnrMode", 27, 1}, {"WbdWdrWeight", 28, 1}, {"WbdBlcOsd", 29, 1}, {"WbdBlcPosX", 30, 1},
     {"WbdBlcPosY", 31, 1}, {"WbdBlcSizeX", 32, 1}, {"WbdBlcSizeY", 33, 1}, {"WbdDnr", 34, 1},
     {"DayNightMode", 35, 1}, {"DayNightAutoAgcThrs", 36, 1}, {"DayNightAutoMargine", 37, 1},
     {"DayNightAutoDealy", 38, 1}, {"DayNightExtDealy", 39, 1}, {"FdLvdsDelay", 40, 1}},
};
INSTANTIATE_TEST_SUITE_P(MainsFrequencyFlag, KeyedFields, ::testing::Values(kLayout), PrintKeyedFamily);

TEST(MainsFrequencyFlagCamera, FlagsFollowTheStoredFrequencyByte) {
  DeviceRoot::Get().Reset();
  Bytes quiet = QuietRecord(kMainsFrequencyFlagCamera);
  quiet[1] = 7, quiet[2] = 9, quiet[8] = 5;  // neither flag pattern
  struct Case {
    std::string form;
    uint8_t frequency, on, off;
  };
  const Case cases[] = {
      {"ExposerFrequency=256", 0, 0, 1}, {"ExposerFrequency=1", 1, 1, 0},
      {"ExposerFrequency=0", 0, 0, 1},   {"ExposerFrequency=0x132", 0x32, 1, 0},
      {"ExposerFrequency=-256", 0, 0, 1}, {"ExposerFrequency=-1", 255, 1, 0},
      {"ExposerFrequency=", 5, 7, 9},    {"ExposerDss=5", 5, 7, 9},
  };
  for (const Case& c : cases) {
    const Outcome o = PostToModule("0l", quiet, c.form);
    Bytes expected = quiet;
    expected[8] = c.frequency, expected[1] = c.on, expected[2] = c.off;
    if (c.form == "ExposerDss=5") expected[7] = 5;
    EXPECT_EQ(Hex(o.record), Hex(expected)) << c.form;
    EXPECT_EQ(o.answer.out, "") << c.form;
  }
}

TEST(MainsFrequencyFlagCamera, KeyValueDecidesTheAnswerButLocksNothing) {
  DeviceRoot::Get().Reset();
  struct Case {
    std::string form;
    uint8_t storedKeyValue, keyValue;
    bool returnPage;
  };
  const Case cases[] = {
      {"KeyValue=2", 0, 2, false}, {"KeyValue=1", 0, 1, false},  {"", 5, 5, false},
      {"", 1, 1, false},           {"KeyValue=0", 5, 0, true},   {"KeyValue=256", 5, 0, true},
      {"KeyValue=", 1, 1, false},  {"KeyValue=", 0, 0, true},
  };
  for (const Case& c : cases) {
    Bytes record = QuietRecord(kMainsFrequencyFlagCamera);
    record[0] = c.storedKeyValue;
    // Every other kind of key is applied whatever the KeyValue byte holds.
    const std::string others = "LensMode=4&ExposerFrequency=1&FdLvdsDelay=300";
    const Outcome o = PostToModule("0l", record, c.form.empty() ? others : c.form + "&" + others);
    Bytes expected = record;
    expected[0] = c.keyValue;
    expected[3] = 4;
    expected[8] = 1, expected[1] = 1, expected[2] = 0;
    expected[40] = 44;
    EXPECT_EQ(Hex(o.record), Hex(expected)) << c.form << " over " << int(c.storedKeyValue);
    EXPECT_EQ(o.answer.out, c.returnPage ? "" : kAnswer204) << c.form << " over " << int(c.storedKeyValue);
    EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
  }
}

}  // namespace
}  // namespace device_test
