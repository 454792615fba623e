// Cameras with reversed day/night thresholds: 9-byte record, continue read,
// the thresholds stored as 15 minus the posted value.
#include "tests/device/keyed_fields.h"

namespace device_test {
namespace {

const FamilyProfile kReversedThresholdCamera = {
    .family = "ReversedThresholdCamera",
    .codes = {"0G"},
    .recordSize = 9,
    .readPolicy = ReadFailure::Continue,
    .handler = ReversedThresholdCameraSettings,
    .writeFailureResult = -1,
};
INSTANTIATE_TEST_SUITE_P(ReversedThreshold, FamilyFrame, ::testing::Values(kReversedThresholdCamera),
                         PrintFamily);

// The thresholds at 5 and 6 are tested below; 8 has no key.
const KeyedFamily kLayout = {
    kReversedThresholdCamera,
    {{"MaxExposureTime", 0, 1}, {"Gamma", 1, 1}, {"NoiseFilter", 2, 1}, {"Sharpness", 3, 1},
     {"Mirror", 4, 1}, {"DnMode", 7, 1}},
};
INSTANTIATE_TEST_SUITE_P(ReversedThreshold, KeyedFields, ::testing::Values(kLayout), PrintKeyedFamily);

TEST(ReversedThresholdCamera, ThresholdsAreStoredCountedDownFromFifteen) {
  DeviceRoot::Get().Reset();
  const Bytes quiet = QuietRecord(kReversedThresholdCamera);
  struct Case {
    std::string posted;
    uint8_t stored;
  };
  const Case cases[] = {{"3", 12}, {"15", 0}, {"16", 255}, {"20", 251}, {"0", 15}, {"-1", 16}, {"0x10F", 0}};
  // Each request posts two cases, one per threshold, so neither can land in the other's byte.
  for (size_t i = 0; i < std::size(cases); ++i) {
    const Case& d2n = cases[i];
    const Case& n2d = cases[(i + 1) % std::size(cases)];
    const std::string form = "D2nThreshold=" + d2n.posted + "&N2dThreshold=" + n2d.posted;
    const Outcome o = PostToModule("0G", quiet, form);
    Bytes expected = quiet;
    expected[5] = d2n.stored;
    expected[6] = n2d.stored;
    EXPECT_EQ(Hex(o.record), Hex(expected)) << form;
  }
}

}  // namespace
}  // namespace device_test
