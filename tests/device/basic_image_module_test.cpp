// Basic image modules: single bytes and one 32-bit brightness word.
#include "tests/device/family_frame.h"

namespace device_test {
namespace {

const FamilyProfile kBasicImageModule = {
    .family = "BasicImageModule",
    .codes = {"1M"},
    .recordSize = 16,
    .readPolicy = ReadFailure::Continue,
    .handler = BasicImageModuleSettings,
    .writeFailureResult = -2,
};
INSTANTIATE_TEST_SUITE_P(BasicImage, FamilyFrame, ::testing::Values(kBasicImageModule), PrintFamily);

TEST(BasicImageModule, BytesAndTheBrightnessWord) {
  DeviceRoot::Get().Reset();
  const Bytes quiet = QuietRecord(kBasicImageModule);
  struct Case {
    std::string form;
    std::vector<std::pair<size_t, uint8_t>> changes;
  };
  const Case cases[] = {
      // Every key: 1..3 and 15 stay.
      {"PowerFreq=0x132&Brightness=-1&Contrast=0x1FF&Sharpness=1&Mirror=2&AutoGainControl=3"
       "&NoiseReduction=4&Shutter=300&DayNight=-1",
       {{0, 0x32}, {4, 0xFF}, {5, 0xFF}, {6, 0xFF}, {7, 0xFF}, {8, 0xFF}, {9, 1}, {10, 2}, {11, 3},
        {12, 4}, {13, 44}, {14, 0xFF}}},
      {"Brightness=0x100", {{4, 0x00}, {5, 0x01}, {6, 0x00}, {7, 0x00}}},
      {"Brightness=2147483648", {{4, 0xFF}, {5, 0xFF}, {6, 0xFF}, {7, 0x7F}}},  // saturates
      {"Contrast=&Mirror=" + std::string(200, '1'), {}},
  };
  for (const Case& c : cases) {
    Bytes expected = quiet;
    for (const auto& [offset, value] : c.changes) expected[offset] = value;
    const Outcome o = PostToModule("1M", quiet, c.form);
    EXPECT_EQ(Hex(o.record), Hex(expected)) << c.form;
    EXPECT_EQ(o.answer.out, "") << c.form;
    EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
  }
}

}  // namespace
}  // namespace device_test
