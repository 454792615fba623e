// Flickerless cameras with a command key: 12 single bytes, abort read, the
// "Key" byte reset to 255 when not posted and deciding the answer.
#include "tests/device/keyed_fields.h"

namespace device_test {
namespace {

const FamilyProfile kFlickerlessCamera = {
    .family = "FlickerlessCamera",
    .codes = {"0j", "0i"},
    .recordSize = 12,
    .readPolicy = ReadFailure::Abort,
    .handler = FlickerlessCameraSettings,
    .writeFailureResult = -1,
    .quietBytes = {{11, 255}},  // no command
};
INSTANTIATE_TEST_SUITE_P(Flickerless, FamilyFrame, ::testing::Values(kFlickerlessCamera), PrintFamily);

// "Key" at 11 is tested below.
const KeyedFamily kLayout = {
    kFlickerlessCamera,
    {{"Contrast", 0, 1}, {"Brightness", 1, 1}, {"Sharpness", 2, 1}, {"AgcGain", 3, 1},
     {"ColorSaturation", 4, 1}, {"Mirror", 5, 1}, {"DayNight", 6, 1}, {"MaxExposureTime", 7, 1},
     {"BackLight", 8, 1}, {"PowerFrequency", 9, 1}, {"Flickerless", 10, 1}},
};
INSTANTIATE_TEST_SUITE_P(Flickerless, KeyedFields, ::testing::Values(kLayout), PrintKeyedFamily);

TEST(FlickerlessCamera, KeyIsResetWhenAbsentAndAPendingKeyAnswers204) {
  DeviceRoot::Get().Reset();
  struct Case {
    std::string form;
    uint8_t storedKey;
    uint8_t key;  // after the request
    bool returnPage;
  };
  const Case cases[] = {
      {"", 7, 255, true},          {"Key=", 7, 255, true},      {"Contrast=3", 0, 255, true},
      {"Key=0xFF", 0, 255, true},  {"Key=-1", 0, 255, true},    {"Key=511", 0, 255, true},
      {"Key=0", 255, 0, false},    {"Key=254", 255, 254, false}, {"Key=256", 255, 0, false},
      {"Contrast=3&Key=1", 255, 1, false},
  };
  for (const Case& c : cases) {
    Bytes record = QuietRecord(kFlickerlessCamera);
    record[11] = c.storedKey;
    Bytes expected = record;
    expected[11] = c.key;
    if (c.form.find("Contrast=3") != std::string::npos) expected[0] = 3;
    const Outcome o = PostToModule("0i", record, c.form);
    EXPECT_EQ(Hex(o.record), Hex(expected)) << c.form;
    EXPECT_EQ(o.answer.out, c.returnPage ? "" : kAnswer204) << c.form;
    EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10}) << c.form;
  }
}

}  // namespace
}  // namespace device_test
