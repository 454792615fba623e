// Auto-brightness colour cameras: 17 single bytes, continue read.
#include "tests/device/keyed_fields.h"

namespace device_test {
namespace {

const FamilyProfile kAutoBrightnessCamera = {
    .family = "AutoBrightnessCamera",
    .codes = {"0v", "0V", "0W"},
    .recordSize = 17,
    .readPolicy = ReadFailure::Continue,
    .handler = AutoBrightnessCameraSettings,
    .writeFailureResult = -2,
};
INSTANTIATE_TEST_SUITE_P(AutoBrightness, FamilyFrame, ::testing::Values(kAutoBrightnessCamera), PrintFamily);

// 15..16 have no key.
const KeyedFamily kLayout = {
    kAutoBrightnessCamera,
    {{"LensType", 0, 1}, {"AutoBrightness", 1, 1}, {"BackLight", 2, 1}, {"DayNight", 3, 1},
     {"AcPowerFrequency", 4, 1}, {"WhiteBalance", 5, 1}, {"DayNightChgTh", 6, 1}, {"Gamma", 7, 1},
     {"Contrast", 8, 1}, {"Sharpness", 9, 1}, {"Hue", 10, 1}, {"Saturation", 11, 1}, {"Mirror", 12, 1},
     {"AutoBrightnessMax", 13, 1}, {"AutoShutterMax", 14, 1}},
};
INSTANTIATE_TEST_SUITE_P(AutoBrightness, KeyedFields, ::testing::Values(kLayout), PrintKeyedFamily);

}  // namespace
}  // namespace device_test
