// Image sensors with their own processing (modules 5A..5T): 296-byte record
// of 32-bit words, continue read, -1 after a failed write.
#include "tests/device/family_frame.h"
#include "tests/device/keyed_layout.h"

namespace device_test {
namespace {

const FamilyProfile kSensorImageProcessing = {
    .family = "SensorImageProcessing",
    .codes = {"5A", "5B", "5C", "5D", "5E", "5F", "5G", "5H", "5M", "5O", "5T"},
    .recordSize = 296,
    .readPolicy = ReadFailure::Continue,
    .handler = SensorImageProcessingSettings,
    .writeFailureResult = -1,
};
INSTANTIATE_TEST_SUITE_P(Sensor, FamilyFrame, ::testing::Values(kSensorImageProcessing), PrintFamily);

Bytes Quiet() { return QuietRecord(kSensorImageProcessing); }

// In file order.
const std::vector<KeyAt> kKeys = {
    {"CamCtlPage", 4, 1},     {"Brightness", 8, 4},      {"Contrast", 12, 4},
    {"Hue", 16, 4},           {"Saturation", 20, 4},     {"Sharpness", 24, 4},
    {"WdrMode", 28, 4},       {"MrNrEn", 32, 4},         {"TmNrEn", 36, 4},
    {"DrcStrength", 40, 4},   {"DrcMode", 44, 4},        {"SensorFps", 48, 4},
    {"SensorMirror", 52, 4},  {"SensorFlip", 56, 4},     {"AeEnable", 60, 4},
    {"AeMaxGain", 64, 4},     {"AeIrisEnable", 68, 4},   {"AeShutterMode", 72, 4},
    {"AeShutterConstExp", 76, 4}, {"AeSlowShoot", 80, 4}, {"AwbSceneMode", 88, 4},
    {"AwbMode", 92, 4},       {"DNControl", 96, 4},      {"DNDwellingTime", 100, 4},
    {"DNThreshold", 104, 4},  {"NDThreshold", 108, 4},   {"AwbRGain", 112, 4},
    {"AwbGGain", 116, 4},     {"AwbBGain", 120, 4},
};

TEST(SensorImageProcessing, EveryKeyLandsInItsFieldAndUnkeyedBytesStay) {
  DeviceRoot::Get().Reset();
  // Unkeyed: 0..3, 5..7, 84..87, 124..295.
  Bytes expected = Quiet();
  const std::string form = PostEveryKey(kKeys, expected);
  const Outcome o = PostToModule("5O", Quiet(), form);
  EXPECT_EQ(Hex(o.record), Hex(expected));
  EXPECT_EQ(o.answer.out, "");
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
}

TEST(SensorImageProcessing, WordsTakeTheWholeValueAndThePageOnlyItsLowByte) {
  DeviceRoot::Get().Reset();
  ExpectEachStore("5D", Quiet(),
                  {
                      {"Brightness=-5", 8, 4, 0xFFFFFFFB},
                      {"CamCtlPage=258", 4, 1, 2},  // 5..7 stay
                      {"AwbMode=0x10", 92, 4, 0x10},
                      {"AwbSceneMode=7", 88, 4, 7},
                      {"NDThreshold=2147483647", 108, 4, 0x7FFFFFFF},
                  });
}

}  // namespace
}  // namespace device_test
