// Infrared-switching cameras (modules 7A, 7B): 116-byte record of 32-bit
// words, continue read, -1 after a failed write.
#include "tests/device/family_frame.h"
#include "tests/device/keyed_layout.h"

namespace device_test {
namespace {

const FamilyProfile kInfraredSwitchingCamera = {
    .family = "InfraredSwitchingCamera",
    .codes = {"7A", "7B"},
    .recordSize = 116,
    .readPolicy = ReadFailure::Continue,
    .handler = InfraredSwitchingCameraSettings,
    .writeFailureResult = -1,
};
INSTANTIATE_TEST_SUITE_P(InfraredSwitching, FamilyFrame, ::testing::Values(kInfraredSwitchingCamera),
                         PrintFamily);

Bytes Quiet() { return QuietRecord(kInfraredSwitchingCamera); }

const std::vector<KeyAt> kKeys = {
    {"AeEnable", 0, 4},    {"OpenThreshold", 4, 4}, {"CloseThreshold", 8, 4}, {"OpenDelay", 12, 4},
    {"CloseDelay", 16, 4}, {"Threshold1x", 20, 4},  {"Threshold2x", 24, 4},   {"Threshold3x", 28, 4},
    {"IrLedMode", 48, 4},  {"DcIrisEnable", 52, 4}, {"AwbEnable", 56, 4},     {"WbMethod", 60, 4},
    {"WbMode", 64, 4},     {"RGain", 68, 4},        {"GGain", 72, 4},         {"BGain", 76, 4},
    {"DGain", 80, 4},      {"Hue", 84, 4},          {"Saturation", 88, 4},    {"Brightness", 92, 4},
    {"Contrast", 96, 4},   {"Sharpness", 100, 4},   {"WdrStrength", 104, 4},  {"ChromaNoiseStrength", 108, 4},
    {"MctfStrength", 112, 4},
};

TEST(InfraredSwitchingCamera, EveryKeyLandsInItsWordAndTheGapStays) {
  DeviceRoot::Get().Reset();
  ASSERT_EQ(kKeys.size(), 25u);
  // Unkeyed: 32..47.
  Bytes expected = Quiet();
  const std::string form = PostEveryKey(kKeys, expected);
  const Outcome o = PostToModule("7B", Quiet(), form);
  EXPECT_EQ(Hex(o.record), Hex(expected));
  EXPECT_EQ(o.answer.out, "");
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
}

TEST(InfraredSwitchingCamera, WordsTakeTheWholeValue) {
  DeviceRoot::Get().Reset();
  ExpectEachStore("7A", Quiet(),
                  {
                      {"Threshold3x=0x01020304", 28, 4, 0x01020304},  // 32.. stay
                      {"DGain=-1", 80, 4, 0xFFFFFFFF},
                      {"MctfStrength=-2147483648", 112, 4, 0x80000000},  // the record's last word
                  });
}

}  // namespace
}  // namespace device_test
