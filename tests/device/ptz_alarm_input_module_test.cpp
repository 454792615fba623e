// PTZ camera modules with alarm inputs and preset groups: 788-byte record,
// retry read, set-id gates at their kinds' limits, the camera title cut
// and cleared, the local-flag checkboxes and the one-shot answer.
#include "tests/device/family_frame.h"
#include "tests/device/keyed_layout.h"

namespace device_test {
namespace {

struct Limit {
  size_t offset;
  uint8_t idleFrom;
};
// One-shot ids and the value from which each is idle.
const std::vector<Limit> kOneShots = {{152, 8},  {153, 8},  {154, 8},  {210, 32}, {212, 32}, {254, 8},
                                      {255, 8},  {256, 8},  {267, 4},  {268, 4},  {269, 4},  {270, 4},
                                      {271, 4},  {664, 6},  {731, 6},  {732, 6}};

std::vector<std::pair<size_t, uint8_t>> QuietBytes() {
  std::vector<std::pair<size_t, uint8_t>> bytes;
  for (const Limit& l : kOneShots) bytes.push_back({l.offset, l.idleFrom});
  bytes.push_back({665, 6});  // no group being edited: the local flags stay
  for (size_t i = 64; i < 80; ++i) bytes.push_back({i, 0});  // an absent title clears the field
  return bytes;
}

const FamilyProfile kPtzAlarmInputModule = {
    .family = "PtzAlarmInputModule",
    .codes = {"08", "1n", "1p", "28"},
    .recordSize = 788,
    .readPolicy = ReadFailure::Retry,
    .handler = PtzAlarmInputModuleSettings,
    .writeFailureResult = -2,
    .quietBytes = QuietBytes(),
};
INSTANTIATE_TEST_SUITE_P(PtzAlarmInput, FamilyFrame, ::testing::Values(kPtzAlarmInputModule), PrintFamily);

Bytes Quiet() { return QuietRecord(kPtzAlarmInputModule); }

const std::vector<KeyAt> kKeys = Join({
    Run(0, {"WbMode", "GainR", "GainB", "Brightness", "ShutterMode", "ShutterSpeed", "SensUpMode",
            "SensUpLimit", "IrisMode", "IrisF_No", "AgcMode", "AgcVal", "Ssnr3Mode", "BlcMode", "BlcBoxDisp",
            "BlcLevel", "BlcLeft", "BlcRight", "BlcTop", "BlcBottom", "HlcLevel", "HlcMaskTone",
            "HlcMaskColor", "HlcLimit", "HlcLeft", "HlcRight", "HlcTop", "HlcBottom", "WdrLimit", "WdrLevel",
            "WdrAntiRoll", "WdrMode", "StabilizerMode", "DayNightMode", "DayNightDur", "DayNightDwell",
            "BWBurst", "ColorBurstLv", "SharpMode", "SharpLevel", "ColorLevel", "SsdrMode", "SsdrLevel",
            "HvReverse", "CamCtlPage", "FocusMode", "ZoomTrackMode", "ZoomTrackSpeed", "DZoomMode",
            "DZoomLimit", "LensInitMode", "LensInitDur", "VideoOutFormat", "CamIdDispMode", "CamIdDispX",
            "CamIdDispY", "PtzPosDispMode", "PtzPosDispX", "PtzPosDispY", "PresetNameDispMode",
            "SeqStatusDispMode", "CamTitleDispMode", "CamTitleDispX", "CamTitleDispY"}),
    Run(152, {"PrivacyViewId", "PrivacyStartId", "PrivacyEndId"}),
    Run(156, {"PrivacyMode"}),
    Run(158, {"PrivacyX0", "PrivacyY0", "PrivacyX1", "PrivacyY1", "PrivacyX2", "PrivacyY2", "PrivacyX3",
              "PrivacyY3", "PrivacyW", "PrivacyH"}, 2),
    Run(210, {"PresetViewId"}),
    Run(212, {"PresetClearId", "PresetSetMode"}),
    Run(254, {"ScanViewId", "ScanRunId", "ScanStopId"}),
    Run(258, {"ScanSetMode", "ScanSetSpeed", "ScanSetDwell", "ScanSetStartPreset", "ScanSetEndPreset"}),
    Run(267, {"PatternViewId", "PatternStartId", "PatternEndId", "PatternRunId", "PatternStopId"}),
    Run(273, {"PatternSetMode"}),
    Run(664, {"GrpViewId"}),
    Run(666, {"GrpSetEnable"}),
    Indexed("GrpSetPrsId", 0, 16, 683, 1),
    Indexed("GrpSetSpeed", 0, 16, 699, 1),
    Indexed("GrpSetDwell", 0, 16, 715, 1),
    Run(731, {"GrpRunId", "GrpStopId", "AutoRunMode", "AutoRunExecTime", "AutoRunTimeUnit", "AutoRunPresetNo",
              "AutoRunGroupNo", "AutoRunPatternNo"}),
    Run(740, {"AutoRunTiltAngle"}, 2),
    Run(742, {"AutoRunTiltSpeed"}),
    Indexed("AlmType", 0, 4, 744, 8),
    Indexed("AlmPrior", 0, 4, 745, 8),
    Indexed("AlmSeqMode", 0, 4, 746, 8),
    Indexed("AlmSeqData", 0, 4, 747, 8),
    Indexed("AlmAPanSpd", 0, 4, 748, 8),
    Indexed("AlmAPanTilt", 0, 4, 750, 8, 2),
    Run(776, {"AlmInputCh0", "AlmOffMode0", "AlmOffTime0", "AlmTimeUnit0"}),
    Run(785, {"AlmClear"}),
});
const std::vector<KeyAt> kGates = {
    {"PrivacySetId", 155, 1}, {"PresetSetId", 211, 1}, {"ScanSetId", 257, 1}, {"PatternSetId", 272, 1},
    {"GrpSetId", 665, 1}};

std::string Title(const Bytes& record) { return std::string(record.begin() + 64, record.begin() + 80); }

TEST(PtzAlarmInputModule, EveryKeyLandsAtItsFieldAndUnkeyedBytesStay) {
  DeviceRoot::Get().Reset();
  const Bytes quiet = Quiet();
  Bytes expected = quiet;
  std::string form = "PrivacySetId=7&PresetSetId=31&ScanSetId=7&PatternSetId=3&GrpSetId=5"
                     "&CamTitleString=Gate%20North&GrpSetLocalEn0=on&GrpSetLocalEn15=1";
  expected[155] = 7, expected[211] = 31, expected[257] = 7, expected[272] = 3, expected[665] = 5;
  const std::string title = "Gate North";
  std::copy(title.begin(), title.end(), expected.begin() + 64);
  expected[667] = 1, expected[682] = 1;
  for (size_t i = 668; i < 682; ++i) expected[i] = 0;  // flags not posted are cleared
  PostEach(kKeys, form, expected, 0);
  const std::vector<KeyAt> all =
      Join({kKeys, kGates, {{"CamTitleString", 64, 16}}, Indexed("GrpSetLocalEn", 0, 16, 667, 1)});
  // 80..151, 157, 178..209, 214..253, 263..266, 274..663, 739, 743, 749 + 8k, 780..784, 786..787
  EXPECT_EQ(Uncovered(788, all).size(), 72u + 1 + 32 + 40 + 4 + 390 + 1 + 1 + 4 + 5 + 2);
  const Outcome o = PostToModule("1p", quiet, form);
  EXPECT_EQ(Hex(o.record), Hex(expected));
  bool pending = false;
  for (const Limit& l : kOneShots) pending = pending || expected[l.offset] < l.idleFrom;
  EXPECT_EQ(o.answer.out, pending ? kAnswer204 : "");
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
}

TEST(PtzAlarmInputModule, TitleIsCutTo15CharactersAndClearedWhenNotPosted) {
  DeviceRoot::Get().Reset();
  Bytes stored = Quiet();
  for (size_t i = 64; i < 80; ++i) stored[i] = 'x';
  const std::string overLong = std::string(200, 'L');
  struct Case {
    std::string form;
    std::string title;  // the 16 bytes after the request
  };
  const Case cases[] = {
      {"CamTitleString=ABCDEFGHIJKLMNOPQRST", std::string("ABCDEFGHIJKLMNO") + '\0'},
      {"CamTitleString=ABCDEFGHIJKLMNO", std::string("ABCDEFGHIJKLMNO") + '\0'},
      {"CamTitleString=AB", std::string("AB\0xxxxxxxxxxxxx", 16)},  // the rest of the field stays
      {"WbMode=2", std::string(16, '\0')},
      {"CamTitleString=", std::string(16, '\0')},
      {"CamTitleString=" + overLong, std::string(16, 'x')},  // not posted, and the buffer is not empty
  };
  for (const Case& c : cases) {
    const Outcome o = PostToModule("08", stored, c.form);
    EXPECT_EQ(Title(o.record), c.title) << c.form;
  }
}

TEST(PtzAlarmInputModule, LocalFlagsAreSetWhenPostedAndClearedWhenNot) {
  DeviceRoot::Get().Reset();
  const Bytes quiet = Quiet();
  Outcome o = PostToModule("28", quiet, "GrpSetId=2&GrpSetPrsId3=17");
  Bytes expected = quiet;
  expected[665] = 2, expected[686] = 17;
  for (size_t i = 667; i < 683; ++i) expected[i] = 0;
  EXPECT_EQ(Hex(o.record), Hex(expected));

  // First and last step; empty counts as not posted; one past is never looked up.
  o = PostToModule("28", quiet,
                   "GrpSetId=0&GrpSetLocalEn0=0&GrpSetLocalEn15=on&GrpSetLocalEn7=&GrpSetLocalEn16=on"
                   "&GrpSetPrsId16=9&GrpSetDwell15=4");
  expected = quiet;
  expected[665] = 0;
  for (size_t i = 667; i < 683; ++i) expected[i] = 0;
  expected[667] = 1, expected[682] = 1, expected[730] = 4;
  EXPECT_EQ(Hex(o.record), Hex(expected));

  o = PostToModule("28", quiet, "GrpSetId=6&GrpSetPrsId3=17&GrpSetLocalEn0=on");
  expected = quiet;
  expected[665] = 6;
  EXPECT_EQ(Hex(o.record), Hex(expected));
}

TEST(PtzAlarmInputModule, EditSlotsOnlyBelowTheirKindsLimit) {
  DeviceRoot::Get().Reset();
  const auto ClearLocalFlags = [](Bytes& b) { std::fill(b.begin() + 667, b.begin() + 683, 0); };
  const GateCase gates[] = {{"PrivacySetId", 155, 8, {"PrivacyH", 176, 2}},
                            {"PresetSetId", 211, 32, {"PresetSetMode", 213, 1}},
                            {"ScanSetId", 257, 8, {"ScanSetEndPreset", 262, 1}},
                            {"PatternSetId", 272, 4, {"PatternSetMode", 273, 1}},
                            {"GrpSetId", 665, 6, {"GrpSetDwell15", 730, 1}, ClearLocalFlags}};
  for (const GateCase& g : gates) ExpectGate("1n", Quiet(), g);
}

TEST(PtzAlarmInputModule, OneShotIdBelowItsLimitAnswers204) {
  DeviceRoot::Get().Reset();
  for (const Limit& l : kOneShots) {
    Bytes stored = Quiet();
    stored[l.offset] = l.idleFrom - 1;
    EXPECT_EQ(PostToModule("1p", stored, "").answer.out, kAnswer204) << l.offset;
    stored[l.offset] = 255;
    EXPECT_EQ(PostToModule("1p", stored, "").answer.out, "") << l.offset;
  }
  EXPECT_EQ(PostToModule("1p", Quiet(), "PresetViewId=5").answer.out, kAnswer204);
  EXPECT_EQ(PostToModule("1p", Quiet(), "PresetViewId=32").answer.out, "");
}

TEST(PtzAlarmInputModule, AlarmEntriesAndTheSingleAlarmOffSetting) {
  DeviceRoot::Get().Reset();
  const Bytes quiet = Quiet();
  const Outcome o = PostToModule(
      "08", quiet,
      "AlmAPanTilt2=300&AlmType0=1&AlmAPanTilt3=-1&AlmType4=9&AlmAPanTilt4=9&AlmInputCh0=2&AlmInputCh1=9"
      "&AlmTimeUnit0=3&AlmOffMode1=9&AlmClear=4");
  Bytes expected = quiet;
  PutLE(expected, 766, 2, 300);
  expected[744] = 1;
  PutLE(expected, 774, 2, 0xFFFF);
  expected[776] = 2, expected[779] = 3, expected[785] = 4;
  EXPECT_EQ(Hex(o.record), Hex(expected));
}

}  // namespace
}  // namespace device_test
