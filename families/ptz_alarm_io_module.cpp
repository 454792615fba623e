// PTZ camera modules with alarm I/O and timed calibration:
// retry read. The 8-step tour, the alarm functions and the 16-step group are
// edited only while their set numbers are below 255; a pending action id
// keeps the browser on its page.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

constexpr Field kFields[] = {
    // 0..3: not set here
    U8("VideoOutMode", 4),
    U8("AutoFocus", 5),
    U8("FocusPosition", 6),
    U8("FocusNearLimit", 7),
    U8("AfSensitivity", 8),
    U8("AfMode", 9),
    U8("AfInterval", 10),
    U8("AfMovement", 11),
    U8("AwbMode", 12),
    U8("WbGainR", 13),
    U8("WbGainB", 14),
    U8("ExposureMode", 15),
    U8("SlowShutter", 16),
    U8("ShutterPosition", 17),
    U8("IrisPosition", 18),
    U8("GainPosition", 19),
    U8("GainLimit", 20),
    U8("BrightPosition", 21),
    U8("ExpComp", 22),
    U8("ExpCompLevel", 23),
    U8("LightCompMode", 24),
    U8("AeResponse", 25),
    U8("Wdr", 26),
    U8("Aperture", 27),
    U8("NoiseReduction", 28),
    U8("MillerFlip", 29),
    U8("InfraredMode", 30),
    U8("AutoDayNight", 31),
    U8("DayToNight", 32),
    U8("NightToDay", 33),
    U8("ColorGain", 34),
    U8("ColorHue", 35),
    U8("DigitalZoom", 36),
    U8("OsdEnable", 37),
    U8("CamReset", 38, kAction),
    // 39: not set here
    U8("CameraDefault", 40, kAction),
    // 41..56: not set here
    U8("ScanViewId", 57, kCommand),
    U8("ScanStartId", 58, kCommand),
    U8("ScanEndId", 59, kCommand),
    U8("ScanSetId", 60),
    U8("ScanSetMode", 61),
    U8("ScanSetSpeed", 62),
    // 63..70: not set here
    U8("PatternViewId", 71, kCommand),
    U8("PatternStartId", 72, kCommand),
    U8("PatternEndId", 73, kCommand),
    U8("PatternSetId", 74),
    U8("PatternSetMode", 75),
    // 76..83: not set here
    U8("PrivacyViewId", 84, kCommand),
    U8("PrivacyStartId", 85, kCommand),
    U8("PrivacyEndId", 86, kCommand),
    U8("PrivacySetId", 87),
    U8("PrivacySetMode", 88),
    // 89..184: not set here
};

constexpr Field kTourViewId = U8("TourViewId", 185, kCommand);
constexpr Field kTourSetId = U8("TourSetId", 186);  // 255: no set being edited
// Parallel arrays, one element per tour step.
constexpr IndexedField kTourSteps[] = {
    Indexed("TourSetFuncType%d", 0, 8, 187, 1, FieldType::U8),
    Indexed("TourSetFuncId%d", 0, 8, 195, 1, FieldType::U8),
    Indexed("TourSetDwell%d", 0, 8, 203, 1, FieldType::U8),
};

// Interleaved pairs, one pair per alarm input.
constexpr IndexedField kAlarmFunctions[] = {
    Indexed("AlarmFuncType%d", 0, 4, 211, 2, FieldType::U8),
    Indexed("AlarmFuncId%d", 0, 4, 212, 2, FieldType::U8),
};
constexpr Field kAlarmSetId = U8("AlarmSetId", 219);

constexpr Field kPrivacyLook[] = {
    U8("PrivacyColor", 220),
    U8("PrivacyPattern", 221),
};
constexpr IndexedField kAlarmInputs[] = {
    Indexed("AlarmEnable%d", 0, 4, 222, 2, FieldType::U8),
    Indexed("AlarmPolarity%d", 0, 4, 223, 2, FieldType::U8),
};

constexpr Field kOutputsCalibrationPowerOn[] = {
    U8("AlarmOut1Op", 230),
    U8("AlarmOut2Op", 231),
    U8("AlarmOutDwell", 232),
    U8("CalibrationMode", 233),
    U8("CalibrationHour", 234),
    U8("CalibrationMin", 235),
    U8("CalibrationNow", 236, kAction),
    U8("PowerOnWorkMode", 237),
    U8("PowerOnWorkFuncId", 238),
    // 239..430: not set here
};

constexpr Field kGroupViewId = U8("GroupViewId", 431, kCommand);
constexpr Field kGroupSetId = U8("GroupSetId", 432);
// Parallel arrays, one element per group step.
constexpr IndexedField kGroupSteps[] = {
    Indexed("GroupSetEnable%d", 0, 16, 433, 1, FieldType::U8),
    Indexed("GroupSetPresetId%d", 0, 16, 449, 1, FieldType::U8),
    Indexed("GroupSetDwell%d", 0, 16, 465, 1, FieldType::U8),
    // 481..483: not set here
};

// The blocks each set id opens.
constexpr Block kTourEdit[] = {Steps(kTourSteps)};
constexpr Block kAlarmEdit[] = {Steps(kAlarmFunctions)};
constexpr Block kGroupEdit[] = {Steps(kGroupSteps)};

constexpr Block kLayout[] = {
    Fields(kFields),
    Fields(kTourViewId),
    Gate(kTourSetId, kIdle, kTourEdit),
    Gate(kAlarmSetId, kIdle, kAlarmEdit),
    Fields(kPrivacyLook),
    Steps(kAlarmInputs),
    Fields(kOutputsCalibrationPowerOn),
    Fields(kGroupViewId),
    Gate(kGroupSetId, kIdle, kGroupEdit),
};

}  // namespace

constexpr SettingsFamily kPtzAlarmIoModule = {
    .readPolicy = ReadPolicy::Retry,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<484>(kLayout),
    .result = kUnlessPending,
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kPtzAlarmIoModuleNotes = {"PTZ alarm I/O module"};
