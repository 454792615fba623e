// Day/night camera module 3A: 140-byte record, continue read, the AgcGain
// clamp and the lower-case keys of the last block.
#include "tests/device/family_frame.h"
#include "tests/device/keyed_layout.h"

namespace device_test {
namespace {

const FamilyProfile kDayNightCamera = {
    .family = "DayNightCamera",
    .codes = {"3A"},
    .recordSize = 140,
    .readPolicy = ReadFailure::Continue,
    .handler = DayNightCameraSettings,
    .writeFailureResult = -1,
};
INSTANTIATE_TEST_SUITE_P(DayNight, FamilyFrame, ::testing::Values(kDayNightCamera), PrintFamily);

Bytes Quiet() { return QuietRecord(kDayNightCamera); }

// Every key but AgcGain, whose clamp is tried on its own.
const std::vector<KeyAt> kKeys = {
    {"PowerFrequency", 0, 4}, {"Hue", 4, 4},          {"Saturation", 8, 4},      {"Brightness", 12, 4},
    {"Contrast", 16, 4},      {"Sharpness", 20, 4},   {"DayNightMode", 24, 1},   {"TdnDwellTime", 25, 1},
    {"DayNightDetect", 28, 4}, {"D2nThreshold", 32, 4}, {"N2dThreshold", 36, 4}, {"VerticalFlip", 40, 4},
    {"HorizontalFlip", 44, 4}, {"Blc", 48, 4},        {"Wdr", 52, 4},            {"ManualShutter", 56, 4},
    {"ShutterSpeed", 60, 4},  {"WhiteBalance", 64, 4}, {"RGain", 68, 4},         {"GGain", 72, 4},
    {"BGain", 76, 4},         {"LensType", 80, 4},    {"VideoOut", 84, 4},       {"VOutSrcChan", 88, 1},
    {"VOutSkipCount", 89, 1}, {"XyRatio", 92, 4},     {"TargetExposure", 100, 4}, {"NoiseFilter", 104, 4},
    {"SensUpLevel", 108, 1},  {"IrLedBrightness", 109, 1}, {"AEWtype", 128, 1}, {"AEWswitch", 129, 1},
    {"expPriority", 130, 1},  {"vnfEnable", 131, 1},  {"vnfMode", 132, 1},       {"vnfStrength", 133, 1},
    {"ldcEnable", 134, 1},    {"histogram", 135, 1},  {"dynRange", 136, 1},      {"dynRangeStrength", 137, 1},
};

TEST(DayNightCamera, EveryKeyLandsInItsFieldAndUnkeyedBytesStay) {
  DeviceRoot::Get().Reset();
  // Unkeyed: 26..27, 90..91, 110..127, 138..139.
  Bytes expected = Quiet();
  const std::string form = PostEveryKey(kKeys, expected) + "&AgcGain=0x10";
  PutLE(expected, 96, 4, 16);
  const Outcome o = PostToModule("3A", Quiet(), form);
  EXPECT_EQ(Hex(o.record), Hex(expected));
  EXPECT_EQ(o.answer.out, "");
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
}

TEST(DayNightCamera, AgcGainBelowOneIsStoredAsOneAndOtherWidthsTruncate) {
  DeviceRoot::Get().Reset();
  ExpectEachStore("3A", Quiet(),
                  {
                      {"AgcGain=0", 96, 4, 1},
                      {"AgcGain=-7", 96, 4, 1},
                      {"AgcGain=-2147483648", 96, 4, 1},
                      {"AgcGain=1", 96, 4, 1},
                      {"AgcGain=500", 96, 4, 500},
                      {"AgcGain=2147483647", 96, 4, 0x7FFFFFFF},
                      {"VOutSkipCount=257", 89, 1, 1},
                      {"dynRangeStrength=0x1FF", 137, 1, 0xFF},
                      {"AEWtype=-1", 128, 1, 0xFF},
                  });
}

TEST(DayNightCamera, AbsentOrMiscasedKeysLeaveTheirBytes) {
  DeviceRoot::Get().Reset();
  Bytes zeroGain = Quiet();
  PutLE(zeroGain, 96, 4, 0);  // a stored 0 is not clamped when the key is absent
  for (const std::string form : {"Hue=3", "agcGain=5", "AewType=5", "ExpPriority=5", "DynRange=5"}) {
    Bytes expected = zeroGain;
    if (form == "Hue=3") PutLE(expected, 4, 4, 3);
    const Outcome o = PostToModule("3A", zeroGain, form);
    EXPECT_EQ(Hex(o.record), Hex(expected)) << form;
  }
}

}  // namespace
}  // namespace device_test
