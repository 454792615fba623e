// Chroma and ACC cameras: 32-byte record with signed 32-bit words, continue read.
#include "tests/device/keyed_fields.h"

namespace device_test {
namespace {

const FamilyProfile kChromaAccCamera = {
    .family = "ChromaAccCamera",
    .codes = {"0M", "0m"},
    .recordSize = 32,
    .readPolicy = ReadFailure::Continue,
    .handler = ChromaAccCameraSettings,
    .writeFailureResult = -1,
};
INSTANTIATE_TEST_SUITE_P(ChromaAcc, FamilyFrame, ::testing::Values(kChromaAccCamera), PrintFamily);

// 22..23 have no key.
const KeyedFamily kLayout = {
    kChromaAccCamera,
    {{"Brightness", 0, 4}, {"ChromaSaturation", 4, 4}, {"AccOnOff", 8, 1}, {"AccIntensity", 9, 1},
     {"MaxAgcGain", 10, 1}, {"LightCompensation", 11, 1}, {"LightCompensationIntensity", 12, 1},
     {"DayNightOnOff", 13, 1}, {"DayNightDelay", 14, 1}, {"Sharpness", 15, 1}, {"SlowShutter", 16, 1},
     {"FlckerlessMode", 17, 1}, {"ManualShutterOnOff", 18, 1}, {"ManualShutterSpeed", 19, 1},
     {"WbMode", 20, 1}, {"ImageReverse", 21, 1}, {"rGain", 24, 4}, {"bGain", 28, 4}},
};
INSTANTIATE_TEST_SUITE_P(ChromaAcc, KeyedFields, ::testing::Values(kLayout), PrintKeyedFamily);

TEST(ChromaAccCamera, WordsTakeNegativeAndHexValues) {
  DeviceRoot::Get().Reset();
  const Bytes quiet = QuietRecord(kChromaAccCamera);
  const Outcome o = PostToModule("0m", quiet, "Brightness=-2&ChromaSaturation=0x7FFFFFFF&rGain=-2147483648");
  Bytes expected = quiet;
  PutLE(expected, 0, 4, 0xFFFFFFFE);
  PutLE(expected, 4, 4, 0x7FFFFFFF);
  PutLE(expected, 24, 4, 0x80000000);
  EXPECT_EQ(Hex(o.record), Hex(expected));
}

}  // namespace
}  // namespace device_test
