// Environment-mode cameras: 6-byte record, continue read.
#include "tests/device/keyed_fields.h"

namespace device_test {
namespace {

const FamilyProfile kEnvironmentModeCamera = {
    .family = "EnvironmentModeCamera",
    .codes = {"0C"},
    .recordSize = 6,
    .readPolicy = ReadFailure::Continue,
    .handler = EnvironmentModeCameraSettings,
    .writeFailureResult = -1,
};
INSTANTIATE_TEST_SUITE_P(EnvironmentMode, FamilyFrame, ::testing::Values(kEnvironmentModeCamera),
                         PrintFamily);

// 4 has no key.
const KeyedFamily kLayout = {
    kEnvironmentModeCamera,
    {{"PowerFrequency", 0, 1}, {"Contrast", 1, 1}, {"Brightness", 2, 1}, {"Mirror", 3, 1},
     {"Environment", 5, 1}},
};
INSTANTIATE_TEST_SUITE_P(EnvironmentMode, KeyedFields, ::testing::Values(kLayout), PrintKeyedFamily);

}  // namespace
}  // namespace device_test
