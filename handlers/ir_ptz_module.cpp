// IR PTZ camera modules: 764-byte record, retry read. Scan and tour editing
// is gated on their set numbers (255 = nothing being edited), the tour is
// 32 steps in four parallel arrays, and a pending one-shot action keeps the
// browser on its page.
#include "handlers/ptz_step_arrays.h"
#include "handlers/settings_frame.h"
#include "handlers/settings_handlers.h"

namespace {

constexpr uint32_t kRecordSize = 764;
constexpr uint32_t kNone = 255;  // idle action id, and "no set being edited"

// Not set here, kept as read: 0..3, 33, 50, 52..69, 78..81,
// 88..599 (the daemon's own), 734..753, 762..763.

// In lookup order (the offsets are not in order).
constexpr Field kFields[] = {
    U8("IrMode", 4),
    U8("IrDwellTime", 15),
    U16("IrZoomMag", 6, LowByte),  // halfwords on file that only ever get 8 bits
    U16("IrExtLedPower", 12, LowByte),
    U16("IrFarLedPower", 10, LowByte),
    U16("IrNearLedPower", 8, LowByte),
    U8("IrLedControl", 5),
    U8("IrThreshold", 14),
    U8("DayNight", 16),
    U8("DNThr", 17),
    U8("DNInterVal", 18),
    U8("FocusMode", 19),
    U8("DigitalZoom", 20),
    U8("Blc", 21),
    U8("Wdr", 22),
    U8("WdrLevel", 23),
    U8("AeMode", 24),
    U8("AeLevel", 25),
    U8("AgcMode", 26),
    U8("SlowShutter", 27),
    U8("SlowShutLevel", 28),
    U8("ShutterPosition", 29),
    U8("Iris", 30),
    U8("IrisPosition", 31),
    U8("WbMode", 32),
    U16("ChromaLevel", 34),
    U16("RGain", 36),
    U16("BGain", 38),
    U8("ZoomMagDisp", 40),
    U8("ImageFlip", 41),
    U8("ImageMirror", 42),
    U8("Dnr", 43),
    U8("ZoomSpeed", 44),
    U8("KeepActionCode", 45),
    U8("KeepActionNum", 46),
    U8("KeepActionFreeTime", 47),
    U8("PowerOnActionCode", 48),
    U8("PowerOnActionNum", 49),
    U8("PrivacyViewId", 70),
    U8("PrivacyCtrlId", 71),
    U8("PrivacyAdjust", 72),
    U8("PrivacySetId", 73),
    U8("PrivacySetMode", 74),
    U8("PrivacyMaskSetId", 75),
    U8("PrivacySearchId", 76),
    U8("PrivacyAllDisplay", 77),
    U8("PatternViewId", 82),
    U8("PatternStartId", 83),
    U8("PatternEndId", 84),
    U8("PatternRunId", 85),
    U8("PatternSetId", 86),
    U8("PatternSetMode", 87),
    U8("ScanViewId", 754),
    U8("ScanRunId", 758),
};

constexpr uint32_t kScanSetId = 757;
constexpr Field kScanSlot[] = {
    U8("ScanStartPreset", 755),
    U8("ScanEndPreset", 756),
    U8("ScanSetMode", 759),
    U8("ScanSetSpeed", 760),
    U8("ScanSetDwell", 761),
};

constexpr Field kTourActions[] = {
    U8("TourViewId", 600),
    U8("TourRunId", 602),
};
constexpr uint32_t kTourSetId = 601;
// One tour of 32 steps, looked up in this order per step.
constexpr IndexedField kTourSteps[] = {
    {"TourSetPresetId%d", 0, 32, 604, 1, FieldType::U8, nullptr},
    {"TourSetSpeed%d", 0, 32, 668, 1, FieldType::U8, nullptr},
    {"TourSetDwell%d", 0, 32, 636, 1, FieldType::U8, nullptr},
    {"TourSetEnable%d", 0, 32, 700, 1, FieldType::U8, nullptr},
};

constexpr Field kTail[] = {
    U8("TourAllClear", 603),
    U8("AlarmFuncType", 732),
    U8("AlarmFuncId", 733),
    U8("CamCtlPage", 51),
};

static_assert(FitsIn(kFields, kRecordSize) && FitsIn(kScanSlot, kRecordSize) &&
              FitsIn(kTourActions, kRecordSize) && FitsIn(kTourSteps, kRecordSize) &&
              FitsIn(kTail, kRecordSize));

// One-shot actions: any of these bytes other than 255 is a pending command.
constexpr uint32_t kActionIds[] = {
    70, 71,          // privacy view, control
    76, 77,          // privacy search, all display
    75,              // privacy mask set
    600, 602,        // tour view, run
    754, 758,        // scan view, run
    82, 83, 84, 85,  // pattern view, start, end, run
};

void Merge(const FormValue& form, const RecordView& record) {
  MergeFields(form, record, kFields);
  if (SetIdGateOpen(form, record, "ScanSetId", kScanSetId, kNone)) MergeFields(form, record, kScanSlot);
  MergeFields(form, record, kTourActions);
  if (SetIdGateOpen(form, record, "TourSetId", kTourSetId, kNone)) MergeIndexedFieldsByStep(form, record, kTourSteps);
  MergeFields(form, record, kTail);
}

int Result(const RecordView& record) {
  return OneShotsIdle(record, kActionIds) ? 1 : 0;
}

constexpr SettingsFamily kIrPtzModule = {
    .recordSize = kRecordSize,
    .readPolicy = ReadPolicy::Retry,
    .writeFailure = {-2, false},
    .merge = Merge,
    .result = Result,
};

}  // namespace

int IrPtzModuleSettings(char* errorBuffer, const char* recordPath) {
  return RunSettingsFrame<kIrPtzModule>(errorBuffer, recordPath);
}
