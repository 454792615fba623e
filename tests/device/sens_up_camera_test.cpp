// Sens-up day/night cameras: 16 single bytes, continue read.
#include "tests/device/keyed_fields.h"

namespace device_test {
namespace {

const FamilyProfile kSensUpCamera = {
    .family = "SensUpCamera",
    .codes = {"0o"},
    .recordSize = 16,
    .readPolicy = ReadFailure::Continue,
    .handler = SensUpCameraSettings,
    .writeFailureResult = -1,
};
INSTANTIATE_TEST_SUITE_P(SensUp, FamilyFrame, ::testing::Values(kSensUpCamera), PrintFamily);

const KeyedFamily kLayout = {
    kSensUpCamera,
    {{"LensType", 0, 1}, {"Brightness", 1, 1}, {"Shutter", 2, 1}, {"Agc", 3, 1}, {"SensUp", 4, 1},
     {"DayNight", 5, 1}, {"DayToNightThreshold", 6, 1}, {"DayToNightDelay", 7, 1},
     {"NightToDayThreshold", 8, 1}, {"NightToDayDelay", 9, 1}, {"Hmirror", 10, 1}, {"Vmirror", 11, 1},
     {"SharpnessOnOff", 12, 1}, {"SharpnessLevel", 13, 1}, {"WdrBlc", 14, 1}, {"ColorGain", 15, 1}},
};
INSTANTIATE_TEST_SUITE_P(SensUp, KeyedFields, ::testing::Values(kLayout), PrintKeyedFamily);

}  // namespace
}  // namespace device_test
