// IR PTZ camera modules: retry read. Scan and tour editing
// is gated on their set numbers (255 = nothing being edited), the tour is
// 32 steps in four parallel arrays, and a pending one-shot action keeps the
// browser on its page.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

// Not set here, kept as read: 0..3, 33, 50, 52..69, 78..81,
// 88..599 (the daemon's own), 734..753, 762..763.

constexpr Field kFields[] = {
    U8("IrMode", 4),
    U8("IrLedControl", 5),
    U16("IrZoomMag", 6, kLowByte),  // halfwords on file that only ever get 8 bits
    U16("IrNearLedPower", 8, kLowByte),
    U16("IrFarLedPower", 10, kLowByte),
    U16("IrExtLedPower", 12, kLowByte),
    U8("IrThreshold", 14),
    U8("IrDwellTime", 15),
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
    U8("PrivacyViewId", 70, kCommand),
    U8("PrivacyCtrlId", 71, kCommand),
    U8("PrivacyAdjust", 72),
    U8("PrivacySetId", 73),
    U8("PrivacySetMode", 74),
    U8("PrivacyMaskSetId", 75, kCommand),
    U8("PrivacySearchId", 76, kCommand),
    U8("PrivacyAllDisplay", 77, kCommand),
    U8("PatternViewId", 82, kCommand),
    U8("PatternStartId", 83, kCommand),
    U8("PatternEndId", 84, kCommand),
    U8("PatternRunId", 85, kCommand),
    U8("PatternSetId", 86),
    U8("PatternSetMode", 87),
    U8("ScanViewId", 754, kCommand),
    U8("ScanRunId", 758, kCommand),
};

constexpr Field kScanSetId = U8("ScanSetId", 757);  // 255: no set being edited
constexpr Field kScanSlot[] = {
    U8("ScanStartPreset", 755),
    U8("ScanEndPreset", 756),
    U8("ScanSetMode", 759),
    U8("ScanSetSpeed", 760),
    U8("ScanSetDwell", 761),
};

constexpr Field kTourActions[] = {
    U8("TourViewId", 600, kCommand),
    U8("TourRunId", 602, kCommand),
};
constexpr Field kTourSetId = U8("TourSetId", 601);
// One tour of 32 steps, as parallel arrays.
constexpr IndexedField kTourSteps[] = {
    Indexed("TourSetPresetId%d", 0, 32, 604, 1, FieldType::U8),
    Indexed("TourSetDwell%d", 0, 32, 636, 1, FieldType::U8),
    Indexed("TourSetSpeed%d", 0, 32, 668, 1, FieldType::U8),
    Indexed("TourSetEnable%d", 0, 32, 700, 1, FieldType::U8),
};

constexpr Field kTail[] = {
    U8("CamCtlPage", 51),
    U8("TourAllClear", 603, kAction),
    U8("AlarmFuncType", 732),
    U8("AlarmFuncId", 733),
};

// The blocks each set id opens.
constexpr Block kScanEdit[] = {Fields(kScanSlot)};
constexpr Block kTourEdit[] = {Steps(kTourSteps)};

constexpr Block kLayout[] = {
    Fields(kFields),
    Gate(kScanSetId, kIdle, kScanEdit),
    Fields(kTourActions),
    Gate(kTourSetId, kIdle, kTourEdit),
    Fields(kTail),
};

}  // namespace

constexpr SettingsFamily kIrPtzModule = {
    .readPolicy = ReadPolicy::Retry,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<764>(kLayout),
    .result = kUnlessPending,
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kIrPtzModuleNotes = {"IR PTZ module"};
