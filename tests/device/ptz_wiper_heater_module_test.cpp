// PTZ camera modules with wiper, heater and IR illuminator control: 718-byte
// record, retry read, gates at their limits, local-flag checkboxes, the
// bounded title and the one-shot answer on 255.
#include "tests/device/family_frame.h"
#include "tests/device/keyed_layout.h"

namespace device_test {
namespace {

const std::vector<size_t> kOneShots = {634, 98, 100, 566, 567, 568, 569, 570, 492, 560, 561};

std::vector<std::pair<size_t, uint8_t>> QuietBytes() {
  auto bytes = AllAt(kOneShots, 255);
  bytes.push_back({493, 6});  // no group being edited: the local flags stay
  return bytes;
}

const FamilyProfile kPtzWiperHeaterModule = {
    .family = "PtzWiperHeaterModule",
    .codes = {"18"},
    .recordSize = 718,
    .readPolicy = ReadFailure::Retry,
    .handler = PtzWiperHeaterModuleSettings,
    .writeFailureResult = -2,
    .quietBytes = QuietBytes(),
};
INSTANTIATE_TEST_SUITE_P(PtzWiperHeater, FamilyFrame, ::testing::Values(kPtzWiperHeaterModule), PrintFamily);

Bytes Quiet() { return QuietRecord(kPtzWiperHeaterModule); }

const std::vector<KeyAt> kKeys = Join({
    Run(1, {"FocusMode"}),
    Run(2, {"FocusPosition", "FocusNearLimit"}, 2),
    Run(6, {"AfMode", "AfSensitivity", "AfMovement", "AfInterval", "DZoomMode", "WbMode", "GainR", "GainB",
            "ExposureMode", "Brightness", "ShutterSpeed", "SlowShutterMode", "IrisMode", "IrisF_No",
            "GainPosition", "GainLimit", "ExposureCompMode", "ExposureCompValue", "AeResponse",
            "BacklightComp", "WdrMode", "StabilizerMode", "DayNightMode", "DayNightDwell", "ApertureGain",
            "ColorGain", "ColorHue", "Gamma", "NoiseReduction", "Mirror", "Flip", "Freeze", "Defog",
            "CameraIdDispMode", "PtzPositionDispMode", "PresetNameDispMode", "SeqStatusDispMode",
            "CamTitleDispMode", "CamTitleDispX", "CamTitleDispY", "CamTitleLength", "CamTitleBlink",
            "CamTitleColor"}),
    Run(65, {"CamCtlPage"}),
    Run(98, {"PresetViewId"}),
    Run(100, {"PresetClearId", "PresetSetMode"}),
    Run(492, {"GrpViewId"}),
    Run(494, {"GrpSetEnable"}),
    Indexed("GrpSetPrsId", 0, 16, 511, 1),
    Indexed("GrpSetSpeed", 0, 16, 527, 1),
    Indexed("GrpSetDwell", 0, 16, 543, 1),
    Run(559, {"GrpClearId", "GrpRunId", "GrpStopId"}),
    Run(566, {"PatternViewId", "PatternStartId", "PatternEndId", "PatternRunId", "PatternStopId"}),
    Run(572, {"PatternSetMode", "SetHomePosition", "GoToHomePosition", "ClearHomePosition", "AutoRunMode",
              "AutoRunExecTime", "AutoRunTimeUnit", "AutoRunPresetNo", "AutoRunGroupNo", "AutoRunPatternNo"}),
    Run(582, {"AutoRunTiltAngle"}, 2),
    Run(584, {"AutoRunTiltSpeed"}),
    Run(634, {"PrivacyViewId"}),
    Run(636, {"PrivacyMode", "PrivacyType"}),
    Run(638, {"PrivacyWidth", "PrivacyHeight"}, 2),
    Indexed("AlmType", 0, 4, 642, 8),
    Indexed("AlmPrior", 0, 4, 643, 8),
    Indexed("AlmSeqMode", 0, 4, 644, 8),
    Indexed("AlmSeqData", 0, 4, 645, 8),
    Indexed("AlmAPanSpd", 0, 4, 646, 8),
    Indexed("AlmAPanTilt", 0, 4, 648, 8, 2),
    Indexed("AlmInputCh", 0, 2, 674, 4),
    Indexed("AlmOffMode", 0, 2, 675, 4),
    Indexed("AlmOffTime", 0, 2, 676, 4),
    Indexed("AlmTimeUnit", 0, 2, 677, 4),
    Run(683, {"AlmClear", "WiperMode", "WiperSpeed", "IrIlluminatorId", "AutoIrIlluminator",
              "ManualIrIlluminatorMode"}),
    Run(690, {"ManualIrIlluminatorTsData", "ManualIrIlluminatorBlData", "ManualIrIlluminatorAgData"}, 2),
    Run(696, {"AutoFanMode", "ManualFanData", "AutoHeaterMode", "ManualHeaterData", "AutoGlassHeaterMode",
              "ManualGlassHeaterData"}),
    Run(702, {"CamIfTemperature", "MotionTemperature"}, 2),
    Run(706, {"SetIrType", "SetIrModel", "SetIrBaudrate", "SetIrProtocol", "SetExt4xxSystemId",
              "SetExt4xxBaudrate", "SetExt4xxStopBit", "SetExt4xxParity", "SetExt4xxDuplex",
              "SetExt4xxProtocol"}),
});
const std::vector<KeyAt> kGates = {
    {"PresetSetId", 99, 1}, {"GrpSetId", 493, 1}, {"PatternSetId", 571, 1}, {"PrivacySetId", 635, 1}};

TEST(PtzWiperHeaterModule, EveryKeyLandsAtItsFieldAndUnkeyedBytesStay) {
  DeviceRoot::Get().Reset();
  const Bytes quiet = Quiet();
  Bytes expected = quiet;
  std::string form = "PresetSetId=31&GrpSetId=5&PatternSetId=3&PrivacySetId=7&CamTitleString=Pier%207"
                     "&GrpSetLocalEn0=on&GrpSetLocalEn15=1";
  expected[99] = 31, expected[493] = 5, expected[571] = 3, expected[635] = 7;
  const std::string title = "Pier 7";
  std::copy(title.begin(), title.end(), expected.begin() + 49);
  expected[49 + title.size()] = 0;
  for (size_t i = 495; i < 511; ++i) expected[i] = 0;
  expected[495] = 1, expected[510] = 1;
  PostEach(kKeys, form, expected, 0);
  const std::vector<KeyAt> all =
      Join({kKeys, kGates, {{"CamTitleString", 49, 16}}, Indexed("GrpSetLocalEn", 0, 16, 495, 1)});
  // 0, 66..97, 102..491, 562..565, 585..633, 647 + 8k, 682, 689, 716..717
  EXPECT_EQ(Uncovered(718, all).size(), 1u + 32 + 390 + 4 + 49 + 4 + 1 + 1 + 2);
  const Outcome o = PostToModule("18", quiet, form);
  EXPECT_EQ(Hex(o.record), Hex(expected));
  bool pending = false;
  for (size_t offset : kOneShots) pending = pending || expected[offset] != 255;
  EXPECT_EQ(o.answer.out, pending ? kAnswer204 : "");
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
}

TEST(PtzWiperHeaterModule, TitleIsCopiedOnlyWhenPostedAndNeverPastItsField) {
  DeviceRoot::Get().Reset();
  Bytes stored = Quiet();
  for (size_t i = 49; i < 65; ++i) stored[i] = 'x';
  const std::string kept(16, 'x');
  struct Case {
    std::string form;
    std::string title;
  };
  const Case cases[] = {
      {"CamTitleString=ABCDEFGHIJKLMNOPQRST", std::string("ABCDEFGHIJKLMNO") + '\0'},
      {"CamTitleString=AB", std::string("AB\0xxxxxxxxxxxxx", 16)},
      {"WbMode=2", kept},
      {"CamTitleString=", kept},
      {"CamTitleString=" + std::string(200, 'L'), kept},
  };
  for (const Case& c : cases) {
    const Outcome o = PostToModule("18", stored, c.form);
    EXPECT_EQ(std::string(o.record.begin() + 49, o.record.begin() + 65), c.title) << c.form;
    EXPECT_EQ(o.record[65], stored[65]) << c.form;  // CamCtlPage
  }
}

TEST(PtzWiperHeaterModule, LocalFlagsFollowTheCheckboxesWhileAGroupIsEdited) {
  DeviceRoot::Get().Reset();
  const Bytes quiet = Quiet();
  Outcome o = PostToModule("18", quiet, "GrpSetId=1&GrpSetLocalEn4=on&GrpSetLocalEn16=on&GrpSetDwell16=9");
  Bytes expected = quiet;
  expected[493] = 1;
  for (size_t i = 495; i < 511; ++i) expected[i] = 0;
  expected[499] = 1;
  EXPECT_EQ(Hex(o.record), Hex(expected));

  o = PostToModule("18", quiet, "GrpSetId=6&GrpSetLocalEn4=on");
  expected = quiet;
  expected[493] = 6;
  EXPECT_EQ(Hex(o.record), Hex(expected));
}

TEST(PtzWiperHeaterModule, EditSlotsOnlyBelowTheirKindsLimit) {
  DeviceRoot::Get().Reset();
  const auto ClearLocalFlags = [](Bytes& b) { std::fill(b.begin() + 495, b.begin() + 511, 0); };
  const GateCase gates[] = {{"PresetSetId", 99, 32, {"PresetSetMode", 101, 1}},
                            {"GrpSetId", 493, 6, {"GrpSetDwell15", 558, 1}, ClearLocalFlags},
                            {"PatternSetId", 571, 4, {"PatternSetMode", 572, 1}},
                            {"PrivacySetId", 635, 8, {"PrivacyHeight", 640, 2}}};
  for (const GateCase& g : gates) ExpectGate("18", Quiet(), g);
}

TEST(PtzWiperHeaterModule, OneShotIdOtherThan255Answers204) {
  DeviceRoot::Get().Reset();
  for (size_t offset : kOneShots) {
    Bytes stored = Quiet();
    stored[offset] = 254;
    EXPECT_EQ(PostToModule("18", stored, "").answer.out, kAnswer204) << offset;
  }
  EXPECT_EQ(PostToModule("18", Quiet(), "PresetViewId=3").answer.out, kAnswer204);
  EXPECT_EQ(PostToModule("18", Quiet(), "PresetViewId=255").answer.out, "");
  // The home position commands and the group clear take no part.
  EXPECT_EQ(PostToModule("18", Quiet(),
                         "SetHomePosition=1&GoToHomePosition=1&ClearHomePosition=1&GrpClearId=1")
                .answer.out,
            "");
}

TEST(PtzWiperHeaterModule, AlarmEntriesTwoOutputSettingsAndHalfwords) {
  DeviceRoot::Get().Reset();
  const Bytes quiet = Quiet();
  const Outcome o = PostToModule(
      "18", quiet,
      "AlmInputCh1=2&AlmInputCh2=9&AlmTimeUnit1=3&AlmType0=4&AlmAPanTilt3=-1&AlmType4=9"
      "&ManualIrIlluminatorBlData=1000&MotionTemperature=0x12345&FocusPosition=513");
  Bytes expected = quiet;
  expected[678] = 2, expected[681] = 3, expected[642] = 4;
  PutLE(expected, 672, 2, 0xFFFF);
  PutLE(expected, 692, 2, 1000);
  PutLE(expected, 704, 2, 0x2345);
  PutLE(expected, 2, 2, 513);
  EXPECT_EQ(Hex(o.record), Hex(expected));
}

}  // namespace
}  // namespace device_test
