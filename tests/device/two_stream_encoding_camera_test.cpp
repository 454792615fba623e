// Two-stream encoding camera module 3Z: 252-byte record, continue read,
// two bounded 20-byte OSD texts.
#include <algorithm>
#include <optional>

#include "tests/device/family_frame.h"
#include "tests/device/keyed_layout.h"

namespace device_test {
namespace {

const FamilyProfile kTwoStreamEncodingCamera = {
    .family = "TwoStreamEncodingCamera",
    .codes = {"3Z"},
    .recordSize = 252,
    .readPolicy = ReadFailure::Continue,
    .handler = TwoStreamEncodingCameraSettings,
    .writeFailureResult = -1,
};
INSTANTIATE_TEST_SUITE_P(TwoStream, FamilyFrame, ::testing::Values(kTwoStreamEncodingCamera), PrintFamily);

Bytes Quiet() { return QuietRecord(kTwoStreamEncodingCamera); }

const std::vector<KeyAt> kNumericKeys = {
    {"PowerFrequency", 4, 4},        {"CamCtlPage", 8, 1},
    {"Brightness", 12, 4},           {"Contrast", 16, 4},
    {"Sharpness", 20, 4},            {"Saturation", 24, 4},
    {"BackLightCompensation", 28, 1}, {"BackLightLevel", 29, 1},
    {"ImageSensorMode", 30, 1},      {"HistogramEnable", 31, 1},
    {"WhitebalanceMode", 32, 1},     {"NDShutterMode", 33, 1},
    {"DeNoise", 36, 4},              {"Exposure", 40, 4},
    {"DynamicRangeMode", 44, 1},     {"DynamicRangeWDRLevel", 45, 1},
    {"DynamicRangeDefogLevel", 46, 1}, {"SNFLevel", 48, 4},
    {"TNFLevel", 52, 4},             {"ExposureMode", 56, 1},
    {"CaptureMaxShutterTime", 57, 1}, {"CaptureMinShutterTime", 58, 1},
    {"CaptureMaxGain", 59, 1},       {"AperatureMaxST", 60, 1},
    {"AperatureMinST", 61, 1},       {"AperatureMaxGain", 62, 1},
    {"AperatureMaxIris", 63, 1},     {"AperatureMinIris", 64, 1},
    {"QualityMaxGain", 65, 1},       {"ManualShutterTime", 66, 1},
    {"ManualGain", 67, 1},           {"Mirror", 68, 1},
    {"S1_ForceIFrame", 69, 1},       {"S1_QPInitValue", 70, 1},
    {"S1_QPMinValue", 71, 1},        {"S1_QPMaxValue", 72, 1},
    {"S1_EncoderPreset", 73, 1},     {"S1_PacketSize", 74, 1},
    {"S2_ForceIFrame", 75, 1},       {"S2_QPInitValue", 76, 1},
    {"S2_QPMinValue", 77, 1},        {"S2_QPMaxValue", 78, 1},
    {"S2_EncoderPreset", 79, 1},     {"S2_PacketSize", 80, 1},
    {"S1_OSDDateEnable", 83, 1},     {"S1_OSDTimeEnable", 84, 1},
    {"S1_OSDLogoEnable", 85, 1},     {"S1_OSDLogoPosition", 86, 1},
    {"S1_OSDTextEnable", 87, 1},     {"S1_OSDTextPosition", 108, 1},
    {"S1_OSDDetailInfoEnable", 109, 1}, {"S2_OSDDateEnable", 110, 1},
    {"S2_OSDTimeEnable", 111, 1},    {"S2_OSDLogoEnable", 112, 1},
    {"S2_OSDLogoPosition", 113, 1},  {"S2_OSDTextEnable", 114, 1},
    {"S2_OSDTextPosition", 135, 1},  {"S2_OSDDetailInfoEnable", 136, 1},
    {"ZF_ZoomSpeed", 137, 1},        {"ZF_FocusSpeed", 138, 1},
    {"ZF_FocusType", 139, 1},        {"ZF_AFDurationTime", 140, 1},
    {"ZF_AFThreshold", 141, 1},      {"FD_Enable", 142, 1},
    {"FD_Region_X", 144, 4},         {"FD_Region_Y", 148, 4},
    {"FD_Region_W", 152, 4},         {"FD_Region_H", 156, 4},
    {"FD_ConfidenceLevel", 160, 1},  {"FD_Direction", 161, 1},
    {"PM_Enable", 162, 1},           {"PM_Option", 163, 1},
};

constexpr size_t kS1Text = 88;
constexpr size_t kS2Text = 115;

void PutText(Bytes& record, size_t offset, const std::string& text) {
  std::copy(text.begin(), text.end(), record.begin() + static_cast<std::ptrdiff_t>(offset));
  record.at(offset + text.size()) = 0;
}

TEST(TwoStreamEncodingCamera, EveryKeyLandsInItsFieldAndUnkeyedBytesStay) {
  DeviceRoot::Get().Reset();
  // Unkeyed: 0..3, 9..11, 34..35, 47, 81..82, 143, 164..251.
  Bytes expected = Quiet();
  const std::string form =
      PostEveryKey(kNumericKeys, expected) + "&S1_OSDTextString=Gate&S2_OSDTextString=Yard+North";
  PutText(expected, kS1Text, "Gate");
  PutText(expected, kS2Text, "Yard North");
  const Outcome o = PostToModule("3Z", Quiet(), form);
  EXPECT_EQ(Hex(o.record), Hex(expected));
  EXPECT_EQ(o.answer.out, "");
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
}

TEST(TwoStreamEncodingCamera, OsdTextsAreBoundedToTheirTwentyBytes) {
  DeviceRoot::Get().Reset();
  const std::string nineteen(19, 'a');
  struct Case {
    std::string value;
    std::optional<std::string> stored;  // none: the field is kept as read
  };
  const Case cases[] = {
      {"ab", "ab"},                      // the rest of the field keeps its bytes
      {nineteen, nineteen},              // fills the field exactly
      {nineteen + "b", nineteen},        // one too many: cut, the next field untouched
      {std::string(127, 'c'), std::string(19, 'c')},  // the longest value that fits the buffer
      {std::string(128, 'd'), std::nullopt},          // too long for the buffer: not posted
      {"", std::nullopt},                              // empty: not posted
  };
  for (const Case& c : cases) {
    for (const auto& [key, offset] : {std::pair{"S1_OSDTextString", kS1Text}, std::pair{"S2_OSDTextString", kS2Text}}) {
      Bytes expected = Quiet();
      if (c.stored) PutText(expected, offset, *c.stored);
      const Outcome o = PostToModule("3Z", Quiet(), std::string(key) + "=" + c.value);
      EXPECT_EQ(Hex(o.record), Hex(expected)) << key << " " << c.value.size();
      EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
    }
  }
}

TEST(TwoStreamEncodingCamera, WordsTakeTheWholeValue) {
  DeviceRoot::Get().Reset();
  ExpectEachStore("3Z", Quiet(),
                  {
                      {"FD_Region_W=-1", 152, 4, 0xFFFFFFFF},
                      {"PowerFrequency=0x7FFFFFFF", 4, 4, 0x7FFFFFFF},
                      {"CamCtlPage=258", 8, 1, 2},
                  });
}

}  // namespace
}  // namespace device_test
