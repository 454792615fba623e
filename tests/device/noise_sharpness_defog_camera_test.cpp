// Noise-reduction, sharpness and defog cameras: 64-byte record of words,
// halfwords and bytes, continue read, a flush and -1 on a failed write.
#include "tests/device/family_frame.h"

namespace device_test {
namespace {

const FamilyProfile kNoiseSharpnessDefogCamera = {
    .family = "NoiseSharpnessDefogCamera",
    .codes = {"6A", "6B", "6C", "6D", "6E", "6F", "6G", "6H", "6T"},
    .recordSize = 64,
    .readPolicy = ReadFailure::Continue,
    .handler = NoiseSharpnessDefogSettings,
    .writeFailureResult = -1,
};
INSTANTIATE_TEST_SUITE_P(NoiseSharpnessDefog, FamilyFrame, ::testing::Values(kNoiseSharpnessDefogCamera),
                         PrintFamily);

void Put(Bytes& b, size_t offset, int width, uint32_t v) {
  for (int i = 0; i < width; ++i) b[offset + i] = static_cast<uint8_t>(v >> (8 * i));
}

struct Key {
  const char* name;
  size_t offset;
  int width;
};
const Key kKeys[] = {
    {"WdrMode", 0, 4}, {"DisEnable", 4, 4}, {"NrEnable", 8, 4}, {"NrType", 12, 4},
    {"NrManualThreshold", 16, 1}, {"NrManualThresholdLong", 17, 1}, {"NrAutoThreshold", 18, 1},
    {"RGain", 20, 2}, {"GGain", 22, 2}, {"BGain", 24, 2}, {"SharpnessEnable", 28, 4},
    {"SharpnessType", 32, 4}, {"ManualSharpnessD", 36, 1}, {"ManualSharpnessUd", 37, 1},
    {"ManualSharpnessRgb", 38, 1}, {"AutoSharpnessD", 39, 1}, {"AutoSharpnessUd", 40, 1},
    {"AutoSharpnessRgb", 41, 1}, {"SharpnessLutCore", 42, 1}, {"SharpnessLutStrength", 43, 1},
    {"SharpnessLutMagnitude", 44, 1}, {"DefogEnable", 48, 4}, {"DefogHorizontal", 52, 1},
    {"DefogVertical", 53, 1}, {"DefogType", 56, 4}, {"DefogManualStrength", 60, 1},
    {"DefogAutoStrength", 61, 1},
};

TEST(NoiseSharpnessDefogCamera, EveryKeyLandsAtItsFieldAndUnkeyedBytesStay) {
  DeviceRoot::Get().Reset();
  const Bytes quiet = QuietRecord(kNoiseSharpnessDefogCamera);
  std::string form;
  Bytes expected = quiet;
  int32_t value = -70000;
  for (const Key& k : kKeys) {
    form += std::string(form.empty() ? "" : "&") + k.name + "=" + std::to_string(value);
    Put(expected, k.offset, k.width, static_cast<uint32_t>(value));
    value += 12345;
  }
  // 19, 26..27, 45..47, 54..55 and 62..63 keep the pattern.
  const Outcome o = PostToModule("6T", quiet, form);
  EXPECT_EQ(Hex(o.record), Hex(expected));
  EXPECT_EQ(o.answer.out, "");
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
}

TEST(NoiseSharpnessDefogCamera, EachKeyChangesOnlyItsOwnBytes) {
  DeviceRoot::Get().Reset();
  const Bytes quiet = QuietRecord(kNoiseSharpnessDefogCamera);
  struct Case {
    std::string form;
    size_t offset;
    Bytes bytes;
  };
  const Case cases[] = {
      {"RGain=70000", 20, {0x70, 0x11}},  // 4464
      {"NrManualThresholdLong=0x1FF", 17, {0xFF}},
      {"NrManualThreshold=300", 16, {44}},
      {"ManualSharpnessD=7", 36, {7}},
      {"DefogType=-1", 56, {0xFF, 0xFF, 0xFF, 0xFF}},
      {"WdrMode=0x80000001", 0, {0x01, 0x00, 0x00, 0x80}},
  };
  for (const Case& c : cases) {
    Bytes expected = quiet;
    std::copy(c.bytes.begin(), c.bytes.end(), expected.begin() + c.offset);
    const Outcome o = PostToModule("6A", quiet, c.form);
    EXPECT_EQ(Hex(o.record), Hex(expected)) << c.form;
  }
}

}  // namespace
}  // namespace device_test
