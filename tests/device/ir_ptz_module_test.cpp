// IR PTZ camera modules: 764-byte record, retry read, the scan and tour
// gates on 255, the 32-step tour and the one-shot action result.
#include "tests/device/family_frame.h"
#include "tests/device/keyed_layout.h"

namespace device_test {
namespace {

const std::vector<size_t> kActionIds = {70, 71, 75, 76, 77, 82, 83, 84, 85, 600, 602, 754, 758};

const FamilyProfile kIrPtzModule = {
    .family = "IrPtzModule",
    .codes = {"1I", "1i", "1J", "1j", "2i", "2j"},
    .recordSize = 764,
    .readPolicy = ReadFailure::Retry,
    .handler = IrPtzModuleSettings,
    .writeFailureResult = -2,
    .quietBytes = AllAt(kActionIds, 255),
};
INSTANTIATE_TEST_SUITE_P(IrPtz, FamilyFrame, ::testing::Values(kIrPtzModule), PrintFamily);

Bytes Quiet() { return QuietRecord(kIrPtzModule); }

const std::vector<KeyAt> kPlainKeys = {
    {"IrMode", 4, 1},          {"IrLedControl", 5, 1},     {"IrThreshold", 14, 1},
    {"IrDwellTime", 15, 1},    {"DayNight", 16, 1},        {"DNThr", 17, 1},
    {"DNInterVal", 18, 1},     {"FocusMode", 19, 1},       {"DigitalZoom", 20, 1},
    {"Blc", 21, 1},            {"Wdr", 22, 1},             {"WdrLevel", 23, 1},
    {"AeMode", 24, 1},         {"AeLevel", 25, 1},         {"AgcMode", 26, 1},
    {"SlowShutter", 27, 1},    {"SlowShutLevel", 28, 1},   {"ShutterPosition", 29, 1},
    {"Iris", 30, 1},           {"IrisPosition", 31, 1},    {"WbMode", 32, 1},
    {"ChromaLevel", 34, 2},    {"RGain", 36, 2},           {"BGain", 38, 2},
    {"ZoomMagDisp", 40, 1},    {"ImageFlip", 41, 1},       {"ImageMirror", 42, 1},
    {"Dnr", 43, 1},            {"ZoomSpeed", 44, 1},       {"KeepActionCode", 45, 1},
    {"KeepActionNum", 46, 1},  {"KeepActionFreeTime", 47, 1}, {"PowerOnActionCode", 48, 1},
    {"PowerOnActionNum", 49, 1}, {"CamCtlPage", 51, 1},    {"PrivacyViewId", 70, 1},
    {"PrivacyCtrlId", 71, 1},  {"PrivacyAdjust", 72, 1},   {"PrivacySetId", 73, 1},
    {"PrivacySetMode", 74, 1}, {"PrivacyMaskSetId", 75, 1}, {"PrivacySearchId", 76, 1},
    {"PrivacyAllDisplay", 77, 1}, {"PatternViewId", 82, 1}, {"PatternStartId", 83, 1},
    {"PatternEndId", 84, 1},   {"PatternRunId", 85, 1},    {"PatternSetId", 86, 1},
    {"PatternSetMode", 87, 1}, {"TourViewId", 600, 1},     {"TourRunId", 602, 1},
    {"TourAllClear", 603, 1},  {"AlarmFuncType", 732, 1},  {"AlarmFuncId", 733, 1},
    {"ScanViewId", 754, 1},    {"ScanStartPreset", 755, 1}, {"ScanEndPreset", 756, 1},
    {"ScanRunId", 758, 1},     {"ScanSetMode", 759, 1},    {"ScanSetSpeed", 760, 1},
    {"ScanSetDwell", 761, 1},
};
// Halfwords of which only the low byte is ever stored.
const std::vector<KeyAt> kLowByteKeys = {
    {"IrZoomMag", 6, 2}, {"IrNearLedPower", 8, 2}, {"IrFarLedPower", 10, 2}, {"IrExtLedPower", 12, 2}};
const std::vector<KeyAt> kTourKeys = Join({Indexed("TourSetPresetId", 0, 32, 604, 1),
                                           Indexed("TourSetDwell", 0, 32, 636, 1),
                                           Indexed("TourSetSpeed", 0, 32, 668, 1),
                                           Indexed("TourSetEnable", 0, 32, 700, 1)});

TEST(IrPtzModule, EveryKeyLandsAtItsFieldAndUnkeyedBytesStay) {
  DeviceRoot::Get().Reset();
  const Bytes quiet = Quiet();
  Bytes expected = quiet;
  std::string form = "ScanSetId=7&TourSetId=3";
  expected[757] = 7, expected[601] = 3;
  PostEach(kPlainKeys, form, expected, 0);
  PostEach(kTourKeys, form, expected, 11);
  for (size_t i = 0; i < kLowByteKeys.size(); ++i) {
    form += "&" + kLowByteKeys[i].key + "=" + std::to_string(0x1FF00 + 0x21 + i);
    PutLE(expected, kLowByteKeys[i].offset, 2, 0x21 + static_cast<uint32_t>(i));
  }
  // Every keyed byte and nothing else: the unkeyed ranges stay as read.
  const std::vector<KeyAt> all = Join({kPlainKeys, kLowByteKeys, kTourKeys,
                                       {{"ScanSetId", 757, 1}, {"TourSetId", 601, 1}}});
  EXPECT_EQ(Uncovered(764, all).size(), 4u + 1 + 1 + 18 + 4 + 512 + 20 + 2);
  const Outcome o = PostToModule("1J", quiet, form);
  EXPECT_EQ(Hex(o.record), Hex(expected));
  EXPECT_EQ(o.answer.out, kAnswer204);  // the posted action ids are not 255
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
}

TEST(IrPtzModule, MixedSaveStoresHalfwordsAndTourStepsAndShowsTheReturnPage) {
  DeviceRoot::Get().Reset();
  const Bytes quiet = Quiet();
  const Outcome o = PostToModule(
      "2j", quiet,
      "IrZoomMag=300&RGain=0x1234&ChromaLevel=-1&WbMode=258&TourSetId=0&TourSetPresetId0=5"
      "&TourSetEnable31=1&TourSetEnable32=9&TourSetPresetId32=9&ScanSetId=254&ScanSetDwell=6"
      "&ScanRunId=255&RetReDir=/r");
  Bytes expected = quiet;
  expected[6] = 0x2C, expected[7] = 0x00;
  expected[36] = 0x34, expected[37] = 0x12;
  expected[34] = 0xFF, expected[35] = 0xFF;
  expected[32] = 2;
  expected[601] = 0;
  expected[604] = 5;
  expected[731] = 1;  // one past the last step is never looked up: 732 stays
  expected[757] = 254;
  expected[761] = 6;
  expected[758] = 255;
  EXPECT_EQ(Hex(o.record), Hex(expected));
  EXPECT_NE(o.answer.out.find("location.href=\"/r\""), std::string::npos) << o.answer.out;
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
}

TEST(IrPtzModule, ScanAndTourEditingOnlyWhileTheirSetNumberIsNot255) {
  DeviceRoot::Get().Reset();
  const GateCase gates[] = {{"ScanSetId", 757, 255, {"ScanStartPreset", 755, 1}},
                            {"ScanSetId", 757, 255, {"ScanSetDwell", 761, 1}},
                            {"TourSetId", 601, 255, {"TourSetPresetId0", 604, 1}},
                            {"TourSetId", 601, 255, {"TourSetEnable31", 731, 1}}};
  for (const GateCase& g : gates) ExpectGate("1i", Quiet(), g);
}

TEST(IrPtzModule, AnyPendingActionIdAnswers204) {
  DeviceRoot::Get().Reset();
  for (size_t offset : kActionIds) {
    Bytes stored = Quiet();
    stored[offset] = 254;
    EXPECT_EQ(PostToModule("1I", stored, "").answer.out, kAnswer204) << offset;
  }
  // Posted over an idle record, and posted back to idle.
  EXPECT_EQ(PostToModule("1I", Quiet(), "ScanRunId=2").answer.out, kAnswer204);
  Bytes pending = Quiet();
  pending[600] = 4;
  EXPECT_EQ(PostToModule("1I", pending, "TourViewId=255").answer.out, "");
  // Bytes that are not action ids take no part.
  Bytes other = Quiet();
  other[73] = 0, other[86] = 0, other[601] = 0, other[757] = 0, other[603] = 0;
  EXPECT_EQ(PostToModule("1I", other, "").answer.out, "");
}

}  // namespace
}  // namespace device_test
