// Key and mains-frequency modules, 3-byte and two-byte records: the same
// keys and the KeyValue answer.
#include "tests/device/family_frame.h"

namespace device_test {
namespace {

const FamilyProfile kKeyPowerFrequencyModule = {
    .family = "KeyPowerFrequencyModule",
    .codes = {"1B", "11", "21"},
    .recordSize = 3,
    .readPolicy = ReadFailure::Continue,
    .handler = KeyPowerFrequencyModuleSettings,
    .writeFailureResult = -2,
    .quietBytes = {{1, 0}},  // KeyValue
};
const FamilyProfile kTwoByteKeyPowerFrequencyModule = {
    .family = "TwoByteKeyPowerFrequencyModule",
    .codes = {"1X", "1x", "2X", "2x"},
    .recordSize = 2,
    .readPolicy = ReadFailure::Continue,
    .handler = TwoByteKeyPowerFrequencyModuleSettings,
    .writeFailureResult = -2,
    .quietBytes = {{1, 0}},
};
INSTANTIATE_TEST_SUITE_P(KeyPowerFrequency, FamilyFrame,
                         ::testing::Values(kKeyPowerFrequencyModule, kTwoByteKeyPowerFrequencyModule),
                         PrintFamily);

TEST(KeyPowerFrequencyModule, KeyValueAtOffsetOneDecidesTheAnswer) {
  DeviceRoot::Get().Reset();
  struct Case {
    std::string form;
    uint8_t storedKey;
    uint8_t frequency, key;  // bytes 0 and 1 after the request
    bool returnPage;
  };
  const Case cases[] = {
      {"KeyValue=0", 1, 0x50, 0, true},
      {"KeyValue=1", 0, 0x50, 1, false},
      {"KeyValue=7", 0, 0x50, 7, false},
      {"KeyValue=256", 1, 0x50, 0, true},
      {"PowerFrequency=0x13C", 0, 0x3C, 0, true},
      {"PowerFrequency=60", 1, 60, 1, false},  // the stored key decides
      {"PowerFrequency=-1&KeyValue=0x200", 9, 0xFF, 0, true},
      {"KeyValue=&PowerFrequency=", 2, 0x50, 2, false},
  };
  for (const auto& [code, size] : {std::pair<std::string, size_t>{"21", 3}, {"2x", 2}}) {
    for (const Case& c : cases) {
      Bytes record = {0x50, c.storedKey, 0x77};
      record.resize(size);
      Bytes expected = {c.frequency, c.key, 0x77};  // the third byte is the daemon's
      expected.resize(size);
      const Outcome o = PostToModule(code, record, c.form);
      EXPECT_EQ(Hex(o.record), Hex(expected)) << code << " " << c.form;
      EXPECT_EQ(o.answer.out, c.returnPage ? "" : kAnswer204) << code << " " << c.form;
      EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
    }
  }
}

}  // namespace
}  // namespace device_test
