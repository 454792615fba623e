// Thermal cameras: 22-byte record with four 16-bit values, continue read.
#include "tests/device/keyed_fields.h"

namespace device_test {
namespace {

const FamilyProfile kThermalCamera = {
    .family = "ThermalCamera",
    .codes = {"0D", "09"},
    .recordSize = 22,
    .readPolicy = ReadFailure::Continue,
    .handler = ThermalCameraSettings,
    .writeFailureResult = -2,
};
INSTANTIATE_TEST_SUITE_P(Thermal, FamilyFrame, ::testing::Values(kThermalCamera), PrintFamily);

// 20..21 have no key.
const KeyedFamily kLayout = {
    kThermalCamera,
    {{"Color", 0, 1}, {"Agc", 1, 1}, {"Brightness", 2, 2}, {"Contrast", 4, 2},
     {"DetailBrightness", 6, 2}, {"DetailContrast", 8, 2}, {"Invert", 10, 1}, {"Mirror", 11, 1},
     {"Flip", 12, 1}, {"Filter", 13, 1}, {"Zoom", 14, 1}, {"EContrast", 15, 1}, {"Center", 16, 1},
     {"Indicator", 17, 1}, {"Tv", 18, 1}, {"Nuc", 19, 1}},
};
INSTANTIATE_TEST_SUITE_P(Thermal, KeyedFields, ::testing::Values(kLayout), PrintKeyedFamily);

TEST(ThermalCamera, HalfwordsKeepTheirLowSixteenBits) {
  DeviceRoot::Get().Reset();
  const Bytes quiet = QuietRecord(kThermalCamera);
  const Outcome o =
      PostToModule("0D", quiet, "Brightness=-1&Contrast=65536&DetailBrightness=0x1FF&DetailContrast=70000");
  Bytes expected = quiet;
  PutLE(expected, 2, 2, 0xFFFF);
  PutLE(expected, 4, 2, 0);
  PutLE(expected, 6, 2, 0x1FF);
  PutLE(expected, 8, 2, 70000 & 0xFFFF);
  EXPECT_EQ(Hex(o.record), Hex(expected));
}

}  // namespace
}  // namespace device_test
