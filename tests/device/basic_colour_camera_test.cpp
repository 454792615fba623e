// Basic colour cameras: 20 single bytes, abort read, write failure -3.
#include "tests/device/keyed_fields.h"

namespace device_test {
namespace {

const FamilyProfile kBasicColourCamera = {
    .family = "BasicColourCamera",
    .codes = {"0H", "0K"},
    .recordSize = 20,
    .readPolicy = ReadFailure::Abort,
    .handler = BasicColourCameraSettings,
    .writeFailureResult = -3,
};
INSTANTIATE_TEST_SUITE_P(BasicColour, FamilyFrame, ::testing::Values(kBasicColourCamera), PrintFamily);

// 18..19 have no key.
const KeyedFamily kLayout = {
    kBasicColourCamera,
    {{"SysMode", 0, 1}, {"LensType", 1, 1}, {"AutoGainRef", 2, 1}, {"BackLight", 3, 1},
     {"DayNight", 4, 1}, {"AcPowerFrequency", 5, 1}, {"WhiteBalance", 6, 1}, {"Gamma", 7, 1},
     {"Brightness", 8, 1}, {"HSharpness", 9, 1}, {"VSharpness", 10, 1}, {"RHue", 11, 1},
     {"BHue", 12, 1}, {"RSaturation", 13, 1}, {"BSaturation", 14, 1}, {"HMirror", 15, 1},
     {"VMirror", 16, 1}, {"ManualShutterSpeed", 17, 1}},
};
INSTANTIATE_TEST_SUITE_P(BasicColour, KeyedFields, ::testing::Values(kLayout), PrintKeyedFamily);

TEST(BasicColourCamera, ShortRecordAbortsWithoutRewriting) {
  DeviceRoot& root = DeviceRoot::Get();
  root.Reset();
  root.SetModule("0H");
  Bytes shortRecord = Pattern(19);
  root.WriteRecord("0H", shortRecord);
  const Answer a = root.Post("zrcamctlset.cgi", "SysMode=1");
  EXPECT_EQ(a.out, ErrorPage("zrcamctlset.cgi", "ZrCamCtlReadConfFromFile is failed\n"));
  EXPECT_EQ(a.err, "fread is failed [sizeToRead:20 sizeToReaded:19]\nZrCamCtlReadConfFromFile is failed\n");
  EXPECT_EQ(a.zrcamctldSignals, std::vector<int>{});
  EXPECT_EQ(Hex(root.ReadRecord("0H").value()), Hex(shortRecord));
}

}  // namespace
}  // namespace device_test
