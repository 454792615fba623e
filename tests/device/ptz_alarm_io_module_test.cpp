// PTZ camera modules with alarm I/O and calibration: 484-byte record, retry
// read, the tour, alarm-function and group gates on 255, interleaved alarm
// pairs next to parallel step arrays, and the action-id answer.
#include "tests/device/family_frame.h"
#include "tests/device/keyed_layout.h"

namespace device_test {
namespace {

const std::vector<size_t> kActionIds = {57, 58, 59, 71, 72, 73, 84, 85, 86, 185, 431};

const FamilyProfile kPtzAlarmIoModule = {
    .family = "PtzAlarmIoModule",
    .codes = {"1K", "1k", "1l", "2K"},
    .recordSize = 484,
    .readPolicy = ReadFailure::Retry,
    .handler = PtzAlarmIoModuleSettings,
    .writeFailureResult = -2,
    .quietBytes = AllAt(kActionIds, 255),
};
INSTANTIATE_TEST_SUITE_P(PtzAlarmIo, FamilyFrame, ::testing::Values(kPtzAlarmIoModule), PrintFamily);

Bytes Quiet() { return QuietRecord(kPtzAlarmIoModule); }

const std::vector<KeyAt> kUngated = Join({
    Run(4, {"VideoOutMode", "AutoFocus", "FocusPosition", "FocusNearLimit", "AfSensitivity", "AfMode",
            "AfInterval", "AfMovement", "AwbMode", "WbGainR", "WbGainB", "ExposureMode", "SlowShutter",
            "ShutterPosition", "IrisPosition", "GainPosition", "GainLimit", "BrightPosition", "ExpComp",
            "ExpCompLevel", "LightCompMode", "AeResponse", "Wdr", "Aperture", "NoiseReduction", "MillerFlip",
            "InfraredMode", "AutoDayNight", "DayToNight", "NightToDay", "ColorGain", "ColorHue",
            "DigitalZoom", "OsdEnable", "CamReset"}),
    Run(40, {"CameraDefault"}),
    Run(57, {"ScanViewId", "ScanStartId", "ScanEndId", "ScanSetId", "ScanSetMode", "ScanSetSpeed"}),
    Run(71, {"PatternViewId", "PatternStartId", "PatternEndId", "PatternSetId", "PatternSetMode"}),
    Run(84, {"PrivacyViewId", "PrivacyStartId", "PrivacyEndId", "PrivacySetId", "PrivacySetMode"}),
    Run(185, {"TourViewId"}),
    Run(220, {"PrivacyColor", "PrivacyPattern"}),
    Indexed("AlarmEnable", 0, 4, 222, 2),
    Indexed("AlarmPolarity", 0, 4, 223, 2),
    Run(230, {"AlarmOut1Op", "AlarmOut2Op", "AlarmOutDwell", "CalibrationMode", "CalibrationHour",
              "CalibrationMin", "CalibrationNow", "PowerOnWorkMode", "PowerOnWorkFuncId"}),
    Run(431, {"GroupViewId"}),
});
const std::vector<KeyAt> kTourSteps = Join({Indexed("TourSetFuncType", 0, 8, 187, 1),
                                            Indexed("TourSetFuncId", 0, 8, 195, 1),
                                            Indexed("TourSetDwell", 0, 8, 203, 1)});
const std::vector<KeyAt> kAlarmFunctions =
    Join({Indexed("AlarmFuncType", 0, 4, 211, 2), Indexed("AlarmFuncId", 0, 4, 212, 2)});
const std::vector<KeyAt> kGroupSteps = Join({Indexed("GroupSetEnable", 0, 16, 433, 1),
                                             Indexed("GroupSetPresetId", 0, 16, 449, 1),
                                             Indexed("GroupSetDwell", 0, 16, 465, 1)});

TEST(PtzAlarmIoModule, EveryKeyLandsAtItsFieldAndUnkeyedBytesStay) {
  DeviceRoot::Get().Reset();
  const Bytes quiet = Quiet();
  Bytes expected = quiet;
  std::string form = "TourSetId=1&AlarmSetId=2&GroupSetId=3";
  expected[186] = 1, expected[219] = 2, expected[432] = 3;
  PostEach(kUngated, form, expected, 0);
  PostEach(kTourSteps, form, expected, 1);
  PostEach(kAlarmFunctions, form, expected, 2);
  PostEach(kGroupSteps, form, expected, 3);
  const std::vector<KeyAt> all = Join({kUngated, kTourSteps, kAlarmFunctions, kGroupSteps,
                                       {{"TourSetId", 186, 1}, {"AlarmSetId", 219, 1}, {"GroupSetId", 432, 1}}});
  // 0..3, 39, 41..56, 63..70, 76..83, 89..184, 239..430, 481..483
  EXPECT_EQ(Uncovered(484, all).size(), 4u + 1 + 16 + 8 + 8 + 96 + 192 + 3);
  const Outcome o = PostToModule("1k", quiet, form);
  EXPECT_EQ(Hex(o.record), Hex(expected));
  EXPECT_EQ(o.answer.out, kAnswer204);
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
}

TEST(PtzAlarmIoModule, StepsAtTheirFirstAndLastIndexAndNeverOnePast) {
  DeviceRoot::Get().Reset();
  const Bytes quiet = Quiet();
  const Outcome o = PostToModule(
      "2K", quiet,
      "TourSetId=0&TourSetFuncType0=1&TourSetDwell7=2&TourSetFuncType8=9&TourSetDwell8=9"
      "&AlarmSetId=254&AlarmFuncType0=3&AlarmFuncId3=4&AlarmFuncType4=9&AlarmFuncId4=9"
      "&AlarmEnable0=5&AlarmPolarity3=6&AlarmEnable4=9&AlarmPolarity4=9"
      "&GroupSetId=0&GroupSetEnable0=7&GroupSetDwell15=8&GroupSetDwell16=9&GroupSetEnable16=9"
      "&MillerFlip=300&CalibrationNow=-1&RetReDir=/r");
  Bytes expected = quiet;
  expected[186] = 0, expected[187] = 1, expected[210] = 2;
  expected[219] = 254, expected[211] = 3, expected[218] = 4;
  expected[222] = 5, expected[229] = 6;
  expected[432] = 0, expected[433] = 7, expected[480] = 8;
  expected[29] = 44, expected[236] = 0xFF;
  EXPECT_EQ(Hex(o.record), Hex(expected));
  EXPECT_NE(o.answer.out.find("location.href=\"/r\""), std::string::npos) << o.answer.out;
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
}

TEST(PtzAlarmIoModule, GatedStepsOnlyWhileTheSetNumberIsBelow255) {
  DeviceRoot::Get().Reset();
  const GateCase gates[] = {{"TourSetId", 186, 255, {"TourSetFuncId3", 198, 1}},
                            {"AlarmSetId", 219, 255, {"AlarmFuncId1", 214, 1}},
                            {"GroupSetId", 432, 255, {"GroupSetPresetId15", 464, 1}}};
  for (const GateCase& g : gates) ExpectGate("1K", Quiet(), g);
  // The alarm enables are never gated.
  Bytes stored = Quiet();
  stored[219] = 255;
  Bytes expected = stored;
  expected[224] = 4;
  EXPECT_EQ(Hex(PostToModule("1K", stored, "AlarmEnable1=4").record), Hex(expected));
}

TEST(PtzAlarmIoModule, AnyPendingActionIdOrTourViewAnswers204) {
  DeviceRoot::Get().Reset();
  for (size_t offset : kActionIds) {
    Bytes stored = Quiet();
    stored[offset] = 254;
    EXPECT_EQ(PostToModule("1l", stored, "").answer.out, kAnswer204) << offset;
  }
  EXPECT_EQ(PostToModule("1l", Quiet(), "TourViewId=3").answer.out, kAnswer204);
  Bytes pending = Quiet();
  pending[431] = 0;
  EXPECT_EQ(PostToModule("1l", pending, "GroupViewId=255").answer.out, "");
  // Set numbers and steps are no commands.
  Bytes other = Quiet();
  other[60] = 0, other[74] = 0, other[87] = 0, other[186] = 0, other[219] = 0, other[432] = 0;
  EXPECT_EQ(PostToModule("1l", other, "").answer.out, "");
}

}  // namespace
}  // namespace device_test
