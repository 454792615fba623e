// DC-iris cameras: 24-byte record with three 16-bit values, continue read.
#include "tests/device/keyed_fields.h"

namespace device_test {
namespace {

const FamilyProfile kDcIrisCamera = {
    .family = "DcIrisCamera",
    .codes = {"0h", "0k"},
    .recordSize = 24,
    .readPolicy = ReadFailure::Continue,
    .handler = DcIrisCameraSettings,
    .writeFailureResult = -2,
};
INSTANTIATE_TEST_SUITE_P(DcIris, FamilyFrame, ::testing::Values(kDcIrisCamera), PrintFamily);

// 17 has no key.
const KeyedFamily kLayout = {
    kDcIrisCamera,
    {{"IrisLensType", 0, 1}, {"Brightness", 1, 1}, {"DcIrisLevel", 2, 1}, {"DcIrisSpeed", 3, 1},
     {"MaxAgcGain", 4, 1}, {"SlowShutterEnable", 5, 1}, {"MaxSlowFrame", 6, 1},
     {"ManualShutterEnable", 7, 1}, {"ManualShutterSpeed", 8, 2}, {"PowerFrequency", 10, 1},
     {"BacklightEnable", 11, 1}, {"BacklightMode", 12, 1}, {"DayNightEnable", 13, 1},
     {"Night2DayThreshold", 14, 1}, {"Day2NightThreshold", 15, 1}, {"AwbMode", 16, 1},
     {"ManualRGain", 18, 2}, {"ManualBGain", 20, 2}, {"hMirror", 22, 1}, {"vMirror", 23, 1}},
};
INSTANTIATE_TEST_SUITE_P(DcIris, KeyedFields, ::testing::Values(kLayout), PrintKeyedFamily);

}  // namespace
}  // namespace device_test
