// Image-signal-processor tuning module 1d: 153-byte record of bytes,
// continue read, two parameter sets whose keys follow one rule.
#include "tests/device/family_frame.h"
#include "tests/device/keyed_layout.h"

namespace device_test {
namespace {

const FamilyProfile kTwoSetImageTuning = {
    .family = "TwoSetImageTuning",
    .codes = {"1d"},
    .recordSize = 153,
    .readPolicy = ReadFailure::Continue,
    .handler = TwoSetImageTuningSettings,
    .writeFailureResult = -2,
};
INSTANTIATE_TEST_SUITE_P(TwoSet, FamilyFrame, ::testing::Values(kTwoSetImageTuning), PrintFamily);

Bytes Quiet() { return QuietRecord(kTwoSetImageTuning); }

// The 153 keys: the night set at 0, the day set at 64, then the singles.
std::vector<KeyAt> AllKeys() {
  const char* scalars[] = {"TargetLp",    "TargetSp",    "ColorSatMag", "ColorSatRed",
                           "ColorSatYel", "ColorSatGre", "ColorSatCya", "ColorSatBlu"};
  const char* curves[] = {"Brightness",  "Contrast",    "Sharpness", "Dnr",
                          "ColorGainCb", "ColorGainCr", "GainNeg",   "GainPos"};
  const char* points[] = {"Value", "BrightStart", "BrightEnd", "DarkStart", "DarkEnd", "BrightValue", "DarkValue"};
  const char* singles[] = {
      "AecMode",           "AgcMaxAGainLpHigh",    "AgcMaxAGainSpHigh",    "AgcMaxDGainLpHigh",
      "AgcMaxDGainSpHigh", "WbOffsetRLp",          "WbOffsetBLp",          "WbOffsetRSp",
      "WbOffsetBSp",       "ModeMirrorFlip",       "ModeSensorInfo",       "OsdValueDayNightMode",
      "OsdValueAutoDayNight", "OsdValueAutoNightDay", "OsdValueAutoDwellTime", "OsdValueCdsDayNight",
      "OsdValueCdsNightDay", "OsdValueCdsDwellTime", "OsdValueCdsInputLevel", "AecEnableLp",
      "AecEnableSp",       "AgcEnableLp",          "AgcEnableSp",          "DNControl",
      "ModeShutterSpeed"};
  std::vector<KeyAt> keys;
  for (const std::string prefix : {"N_", "W_"}) {
    for (const char* s : scalars) keys.push_back({prefix + s, keys.size(), 1});
    for (const char* c : curves) {
      for (const char* p : points) keys.push_back({prefix + c + p, keys.size(), 1});
    }
  }
  for (const char* s : singles) keys.push_back({s, keys.size(), 1});
  return keys;
}

TEST(TwoSetImageTuning, EveryOneOfTheKeysLandsInItsOwnByte) {
  DeviceRoot::Get().Reset();
  const std::vector<KeyAt> keys = AllKeys();
  ASSERT_EQ(keys.size(), 153u);
  Bytes expected = Quiet();
  const std::string form = PostEveryKey(keys, expected);
  const Outcome o = PostToModule("1d", Quiet(), form);
  EXPECT_EQ(Hex(o.record), Hex(expected));
  EXPECT_EQ(o.answer.out, "");
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
}

TEST(TwoSetImageTuning, KeysOfEachSetChangeOnlyTheirByte) {
  DeviceRoot::Get().Reset();
  ExpectEachStore("1d", Quiet(),
                  {
                      {"N_TargetLp=5", 0, 1, 5},
                      {"N_DnrDarkEnd=5", 33, 1, 5},
                      {"N_GainPosDarkValue=5", 63, 1, 5},
                      {"W_TargetLp=5", 64, 1, 5},
                      {"W_ColorSatBlu=5", 71, 1, 5},
                      {"W_BrightnessValue=5", 72, 1, 5},
                      {"W_BrightnessBrightStart=5", 73, 1, 5},
                      {"W_BrightnessDarkValue=5", 78, 1, 5},
                      {"W_ColorGainCrValue=5", 107, 1, 5},
                      {"W_GainPosDarkValue=0x1FF", 127, 1, 255},
                      {"AecMode=300", 128, 1, 44},
                      {"ModeShutterSpeed=-1", 152, 1, 255},
                  });
}

TEST(TwoSetImageTuning, KeysOutsideTheRuleChangeNothing) {
  DeviceRoot::Get().Reset();
  const Bytes quiet = Quiet();
  const Outcome o = PostToModule(
      "1d", quiet, "TargetLp=1&X_TargetLp=1&w_TargetLp=1&W_Brightness=1&W_DnrValue2=1&N_GainPosDark=1");
  EXPECT_EQ(Hex(o.record), Hex(quiet));
}

}  // namespace
}  // namespace device_test
