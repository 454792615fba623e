// Zoom camera modules: 108-byte record, retry read, the OSD language text
// and the command bytes that decide the answer.
#include "tests/device/family_frame.h"

namespace device_test {
namespace {

const FamilyProfile kZoomCameraModule = {
    .family = "ZoomCameraModule",
    .codes = {"0J", "0F", "06", "07", "1E", "1F", "1f", "1S", "1Q", "1R", "1U", "1u",
              "19", "1s", "1v", "0s", "1W", "2F", "2J", "2S", "2U", "2s", "2u"},
    .recordSize = 108,
    .readPolicy = ReadFailure::Retry,
    .handler = ZoomCameraModuleSettings,
    .writeFailureResult = -2,
    .quietBytes = {{50, 0}, {66, 0}},  // LensInitCmd, OsdKey
};
INSTANTIATE_TEST_SUITE_P(Zoom, FamilyFrame, ::testing::Values(kZoomCameraModule), PrintFamily);

Bytes Quiet() { return QuietRecord(kZoomCameraModule); }

TEST(ZoomCameraModule, PostedKeysLandAtTheirFieldsTruncatedToTheirWidths) {
  DeviceRoot::Get().Reset();
  const Outcome o = PostToModule(
      "1W", Quiet(),
      "AwbMode=1&WbGainR=40&FocusPosition=0x1234&FocusNearLimit=-1&NoiseReduction2D=0x1FF"
      "&NoiseReduction3D=300&MillerFlip=300&Defog_2=7&DayNightGap_2=8&DayNightThreshold_2=9"
      "&AutumnSunsetMinute=59&VideoOutMode=&AfMode=" + std::string(200, '1') + "&RetReDir=/r");
  Bytes expected = Quiet();
  expected[14] = 1;
  expected[15] = 40;
  expected[6] = 0x34, expected[7] = 0x12;
  expected[8] = 0xFF, expected[9] = 0xFF;
  expected[46] = 0xFF, expected[47] = 0x00;  // only the low 8 bits, high byte 0
  expected[48] = 44, expected[49] = 0x00;
  expected[30] = 44;
  expected[45] = 7;
  expected[79] = 8;
  expected[80] = 9;
  expected[101] = 59;
  // Empty and over-long values count as not posted: offsets 4 and 11 stay.
  EXPECT_EQ(Hex(o.record), Hex(expected));
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
  EXPECT_EQ(o.answer.err, "[SendSignalToZrCamCtlD] Send sig = [10] to zrcamctld. [OK]\n");
}

TEST(ZoomCameraModule, OsdLangIsAThreeByteTextPaddedWithNul) {
  DeviceRoot::Get().Reset();
  Bytes expected = Quiet();
  Outcome o = PostToModule("0J", Quiet(), "OsdLang=EN");
  expected[81] = 'E', expected[82] = 'N', expected[83] = 0;
  EXPECT_EQ(Hex(o.record), Hex(expected));

  o = PostToModule("0J", Quiet(), "OsdLang=ENGL");
  expected[81] = 'E', expected[82] = 'N', expected[83] = 'G';  // no terminator; 84 keeps its value
  EXPECT_EQ(Hex(o.record), Hex(expected));

  o = PostToModule("0J", Quiet(), "OsdLang=");  // empty: not posted
  EXPECT_EQ(Hex(o.record), Hex(Quiet()));
}

TEST(ZoomCameraModule, PendingLensInitOrOsdKeyAnswers204) {
  DeviceRoot::Get().Reset();
  struct Case {
    std::string form;
    uint8_t storedLensInit, storedOsdKey;
    bool returnPage;
  };
  const Case cases[] = {
      {"", 0, 0, true},           {"", 1, 0, false},          {"", 0, 1, false},
      {"", 1, 1, false},          {"", 0, 255, false},        {"LensInitCmd=0", 1, 0, true},
      {"OsdKey=256", 0, 1, true},  // 256 is stored as 0
      {"LensInitCmd=1", 0, 0, false},
  };
  for (const Case& c : cases) {
    Bytes record = Quiet();
    record[50] = c.storedLensInit;
    record[66] = c.storedOsdKey;
    const Outcome o = PostToModule("0J", record, c.form);
    EXPECT_EQ(o.answer.out, c.returnPage ? "" : kAnswer204) << c.form << int(c.storedLensInit);
    EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
  }
}

TEST(ZoomCameraModule, ShortRecordIsAFailedReadAndIsNotRewritten) {
  DeviceRoot& root = DeviceRoot::Get();
  root.Reset();
  Bytes shortRecord = Quiet();
  shortRecord.resize(98);
  root.WriteRecord("0J", shortRecord);
  const Answer a = root.Post("zrcamctlset.cgi", "AwbMode=3");
  const std::string shortRead = "fread is failed [sizeToRead:108 sizeToReaded:98]\n";
  EXPECT_EQ(a.err, shortRead + "ZrCamCtlReadConfFromFile is failed. Retry.\n" + shortRead +
                       "ZrCamCtlReadConfFromFile is failed. Retry\n" + shortRead +
                       "ZrCamCtlReadConfFromFile is failed. Retry\n"
                       "ZrCamCtlReadConfFromFile is finally failed\n");
  EXPECT_EQ(a.out, ErrorPage("zrcamctlset.cgi", ""));
  EXPECT_EQ(a.zrcamctldSignals, std::vector<int>{});
  EXPECT_EQ(Hex(root.ReadRecord("0J").value()), Hex(shortRecord));
}

}  // namespace
}  // namespace device_test
