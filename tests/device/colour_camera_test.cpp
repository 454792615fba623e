// Simple colour cameras (modules 0N, 0n, 0P, 0p): 10-byte record of
// halfwords, continue read.
#include "tests/device/family_frame.h"
#include "tests/device/keyed_layout.h"

namespace device_test {
namespace {

const FamilyProfile kColourCamera = {
    .family = "ColourCamera",
    .codes = {"0N", "0n", "0P", "0p"},
    .recordSize = 10,
    .readPolicy = ReadFailure::Continue,
    .handler = ColourCameraSettings,
    .writeFailureResult = -2,
};
INSTANTIATE_TEST_SUITE_P(Colour, FamilyFrame, ::testing::Values(kColourCamera), PrintFamily);

Bytes Quiet() { return QuietRecord(kColourCamera); }

TEST(ColourCamera, EveryKeyLandsInItsHalfword) {
  DeviceRoot::Get().Reset();
  Bytes expected = Quiet();
  const std::string form = PostEveryKey({{"CamHue", 0, 2},
                                         {"CamSaturation", 2, 2},
                                         {"CamBrightness", 4, 2},
                                         {"CamContrast", 6, 2},
                                         {"CameraDefault", 8, 2}},
                                        expected);
  const Outcome o = PostToModule("0p", Quiet(), form);
  EXPECT_EQ(Hex(o.record), Hex(expected));
  EXPECT_EQ(o.answer.out, "");
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
}

TEST(ColourCamera, ValuesKeepTheirLowSixteenBits) {
  DeviceRoot::Get().Reset();
  ExpectEachStore("0n", Quiet(),
                  {
                      {"CamHue=65536", 0, 2, 0},
                      {"CamHue=65535", 0, 2, 0xFFFF},
                      {"CamSaturation=-1", 2, 2, 0xFFFF},
                      {"CamContrast=0x12345", 6, 2, 0x2345},
                      {"CameraDefault=1", 8, 2, 1},
                  });
}

}  // namespace
}  // namespace device_test
