// Single-key modules: one byte, always the 204 answer.
#include "tests/device/family_frame.h"

namespace device_test {
namespace {

const FamilyProfile kSingleKeyModule = {
    .family = "SingleKeyModule",
    .codes = {"1A", "1a", "1T", "1t", "1O", "1o"},
    .recordSize = 4,
    .readPolicy = ReadFailure::Continue,
    .handler = SingleKeyModuleSettings,
    .writeFailureResult = -2,
    .quietResult = 0,
};
INSTANTIATE_TEST_SUITE_P(SingleKey, FamilyFrame, ::testing::Values(kSingleKeyModule), PrintFamily);

TEST(SingleKeyModule, KeyValueIsTheOnlyByteWrittenAndTheAnswerIsAlways204) {
  DeviceRoot::Get().Reset();
  const std::pair<std::string, uint8_t> cases[] = {
      {"KeyValue=0x1FF", 0xFF}, {"KeyValue=0", 0}, {"KeyValue=300", 44},
      {"KeyValue=-1", 0xFF},    {"KeyValue=", 0xA5}, {"Hue=3", 0xA5},
  };
  for (const auto& [form, stored] : cases) {
    const Bytes record = {0xA5, 0x01, 0x02, 0x03};
    const Outcome o = PostToModule("1t", record, form + "&RetReDir=/r");
    EXPECT_EQ(Hex(o.record), Hex(Bytes{stored, 0x01, 0x02, 0x03})) << form;
    EXPECT_EQ(o.answer.out, kAnswer204) << form;
    EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
  }
}

}  // namespace
}  // namespace device_test
