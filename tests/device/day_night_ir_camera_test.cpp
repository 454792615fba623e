// Day/night IR cameras: 128-byte record of 32-bit words, continue read,
// the AgcGain clamp.
#include "tests/device/family_frame.h"

namespace device_test {
namespace {

const FamilyProfile kDayNightIrCamera = {
    .family = "DayNightIrCamera",
    .codes = {"0y", "0Y", "0w", "0X", "0Z", "0S", "1w", "1V", "0T"},
    .recordSize = 128,
    .readPolicy = ReadFailure::Continue,
    .handler = DayNightIrCameraSettings,
    .writeFailureResult = -1,
};
INSTANTIATE_TEST_SUITE_P(DayNightIr, FamilyFrame, ::testing::Values(kDayNightIrCamera), PrintFamily);

void PutWord(Bytes& b, size_t offset, uint32_t v) {
  for (int i = 0; i < 4; ++i) b[offset + i] = static_cast<uint8_t>(v >> (8 * i));
}

TEST(DayNightIrCamera, WordsBytesAndTheAgcGainClamp) {
  DeviceRoot::Get().Reset();
  const Bytes quiet = QuietRecord(kDayNightIrCamera);
  // Every key posted: the unkeyed bytes 26, 27, 90, 91 and 110..127 stay.
  const char* keys[] = {"PowerFrequency", "Hue", "Saturation", "Brightness", "Contrast", "Sharpness",
                        "DayNightDetect", "D2nThreshold", "N2dThreshold", "VerticalFlip", "HorizontalFlip",
                        "Blc", "Wdr", "ManualShutter", "ShutterSpeed", "WhiteBalance", "RGain", "GGain",
                        "BGain", "LensType", "VideoOut", "XyRatio", "TargetExposure", "NoiseFilter"};
  const size_t offsets[] = {0, 4, 8, 12, 16, 20, 28, 32, 36, 40, 44, 48,
                            52, 56, 60, 64, 68, 72, 76, 80, 84, 92, 100, 104};
  std::string form = "DayNightMode=258&TdnDwellTime=-1&VOutSrcChan=3&VOutSkipCount=0x104"
                     "&SensUpLevel=9&IrLedBrightness=10&AgcGain=0x10";
  Bytes expected = quiet;
  for (size_t i = 0; i < std::size(keys); ++i) {
    const int32_t v = static_cast<int32_t>(i) * 1000 - 3;
    form += std::string("&") + keys[i] + "=" + std::to_string(v);
    PutWord(expected, offsets[i], static_cast<uint32_t>(v));
  }
  expected[24] = 2;  // 258 in a byte
  expected[25] = 0xFF;
  expected[88] = 3;
  expected[89] = 4;
  expected[108] = 9;
  expected[109] = 10;
  PutWord(expected, 96, 16);
  const Outcome o = PostToModule("0T", quiet, form);
  EXPECT_EQ(Hex(o.record), Hex(expected));
  EXPECT_EQ(o.answer.out, "");  // return page, nothing asked of it
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});

  for (const std::string& v : {"0", "-5", "abc", "-2147483649"}) {
    const Outcome c = PostToModule("0y", quiet, "AgcGain=" + v);
    Bytes clamped = quiet;
    PutWord(clamped, 96, 1);
    EXPECT_EQ(Hex(c.record), Hex(clamped)) << v;
  }
  const Outcome big = PostToModule("0y", quiet, "AgcGain=99999999999");
  Bytes saturated = quiet;
  PutWord(saturated, 96, 0x7FFFFFFF);
  EXPECT_EQ(Hex(big.record), Hex(saturated));
}

TEST(DayNightIrCamera, MissingRecordIsCreatedFromZeros) {
  DeviceRoot& root = DeviceRoot::Get();
  root.Reset();
  root.SetModule("0S");
  const Answer a = root.Post("zrcamctlset.cgi", "Hue=-3");
  Bytes expected(128, 0);
  PutWord(expected, 4, 0xFFFFFFFD);
  EXPECT_EQ(Hex(root.ReadRecord("0S").value()), Hex(expected));
  EXPECT_EQ(a.out, "");
  EXPECT_EQ(a.zrcamctldSignals, std::vector<int>{10});
}

TEST(DayNightIrCamera, FullFileSystemShowsAsAFailedWrite) {
  DeviceRoot& root = DeviceRoot::Get();
  root.Reset();
  root.SetModule("0w");
  root.MountTmpfs("/opt/kfp/etc/ZrConf", "16k");
  root.FillUp("/opt/kfp/etc/ZrConf/filler");
  // No record yet: it is created, but its bytes find no room when flushed.
  const Answer a = root.Post("zrcamctlset.cgi", "Hue=1");
  EXPECT_EQ(a.out, ErrorPage("zrcamctlset.cgi", "ZrCamCtlWriteConfToFile is failed\n"));
  EXPECT_NE(a.err.find("fclose is failed [PATH:/opt/kfp/etc/ZrConf/ZrCamCtlConf0w.bin]\n"
                       "ZrCamCtlWriteConfToFile is failed\n"),
            std::string::npos)
      << a.err;
  EXPECT_EQ(a.zrcamctldSignals, std::vector<int>{});
  // A failed write may leave the file short; here it is empty.
  EXPECT_EQ(root.ReadRecord("0w").value().size(), 0u);
}

}  // namespace
}  // namespace device_test
