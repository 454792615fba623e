// PTZ dome cameras: retry read. Image and view settings,
// then privacy masks, scans, patterns, presets and tours: each kind has
// view/start/end/run ids and one edit slot, taken only while the kind's
// set id names an object. The slot is never indexed by the set id; the
// daemon applies it.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

// A view, start, end or run id that names an object (below its kind's
// limit) means the dome is busy with it: 204 keeps the browser on its page.
constexpr uint32_t kPrivacyMasks = 8;
constexpr uint32_t kScans = 16;
constexpr uint32_t kPatterns = 8;
constexpr uint32_t kPresets = 32;
constexpr uint32_t kTours = 8;

constexpr Field kImageAndView[] = {
    U8("VideoOutMode", 0),
    U8("CameraViewMode", 1),
    U8("FocusMode", 2),
    U8("FocusSensitivity", 3),
    U8("FocusLimit", 4),
    U8("WhiteBalanceMode", 5),
    U8("WhiteBalanceRGain", 6),
    U8("WhiteBalanceBGain", 7),
    U8("ExposureMode", 8),
    U8("ExposureSlowShutter", 9),
    U8("ExposureIris", 10),
    U8("ExposureGain", 11),
    U8("ExposureBrightness", 12),
    U8("ExposureShutter", 13),
    U8("ExposureDayNightMode", 14),
    U8("ExposureBrightOffset", 15),
    U8("ExposureBackLight", 16),
    U8("ExposureWdrMode", 17),
    U8("ExposureWdrValue", 18),
    U8("Sharpness", 19),
    U8("MaxDigitalZoom", 20),
    U8("ViewAngleFlip", 21),
    U8("ViewAngleTiltLimit", 22),
    U8("AutoCalibration", 23),
    U8("InstallationEnv", 24),
    U8("PresetFreeze", 25),
    U8("PtzSpeed", 26),
    // 27..43: not set here
    U8("PrivacyViewId", 44, IdBelow(kPrivacyMasks)),
};

constexpr Field kPrivacySetId = U8("PrivacySetId", 45);
constexpr Field kPrivacySlot[] = {
    U8("PrivacyMode", 46),
    U8("PrivacyTrigger", 47),
    U16("PrivacyX0", 48),
    U16("PrivacyY0", 50),
    U16("PrivacyX1", 52),
    U16("PrivacyY1", 54),
    U16("PrivacyX2", 56),
    U16("PrivacyY2", 58),
    U16("PrivacyX3", 60),
    U16("PrivacyY3", 62),
    U16("PrivacyW", 64),
    U16("PrivacyH", 66),
    // 68..147: not set here
};

constexpr Field kScanIds[] = {
    U8("ScanViewId", 148, IdBelow(kScans)),
    U8("ScanStartId", 149, IdBelow(kScans)),
    U8("ScanEndId", 150, IdBelow(kScans)),
    U8("ScanRunId", 151, IdBelow(kScans)),
};
constexpr Field kScanSetId = U8("ScanSetId", 152);
constexpr Field kScanSlot[] = {
    U8("ScanSetMode", 153),
    U8("ScanSetSpeed", 154),
    U8("ScanSetDir", 155),
    U8("ScanSetSwap", 156),
    U8("ScanSetDwell", 157),
    // 158..165: not set here
};

constexpr Field kPatternIds[] = {
    U8("PatternViewId", 166, IdBelow(kPatterns)),
    U8("PatternStartId", 167, IdBelow(kPatterns)),
    U8("PatternEndId", 168, IdBelow(kPatterns)),
    U8("PatternRunId", 169, IdBelow(kPatterns)),
};
constexpr Field kPatternSetId = U8("PatternSetId", 170);
constexpr Field kPatternSlot[] = {
    U8("PatternSetMode", 171),
    // 172..203: not set here
};

constexpr Field kPresetIds[] = {
    U8("PresetViewId", 204, IdBelow(kPresets)),
};
constexpr Field kPresetSetId = U8("PresetSetId", 205);
constexpr Field kPresetSlot[] = {
    U8("PresetSetMode", 206),
    // 207..470: not set here
};

constexpr Field kTourIds[] = {
    U8("TourViewId", 471, IdBelow(kTours)),
    U8("TourRunId", 472, IdBelow(kTours)),
};
constexpr Field kTourSetId = U8("TourSetId", 473);
constexpr Field kTourSlot[] = {
    U8("TourSetMode", 474),
};
// Eight steps of the tour being edited.
constexpr IndexedField kTourSteps[] = {
    Indexed("TourSetFncType%d", 0, 8, 475, 1, FieldType::U8),
    Indexed("TourSetFncId%d", 0, 8, 483, 1, FieldType::U8),
    Indexed("TourSetSpeed%d", 0, 8, 491, 1, FieldType::U8),
    Indexed("TourSetDwell%d", 0, 8, 499, 1, FieldType::U8),
    // 507: not set here
};

// The blocks each set id opens.
constexpr Block kPrivacyEdit[] = {Fields(kPrivacySlot)};
constexpr Block kScanEdit[] = {Fields(kScanSlot)};
constexpr Block kPatternEdit[] = {Fields(kPatternSlot)};
constexpr Block kPresetEdit[] = {Fields(kPresetSlot)};
constexpr Block kTourEdit[] = {Fields(kTourSlot), Steps(kTourSteps)};

constexpr Block kLayout[] = {
    Fields(kImageAndView),
    Gate(kPrivacySetId, kPrivacyMasks, kPrivacyEdit),
    Fields(kScanIds),
    Gate(kScanSetId, kScans, kScanEdit),
    Fields(kPatternIds),
    Gate(kPatternSetId, kPatterns, kPatternEdit),
    Fields(kPresetIds),
    Gate(kPresetSetId, kPresets, kPresetEdit),
    Fields(kTourIds),
    Gate(kTourSetId, kTours, kTourEdit),
};

}  // namespace

constexpr SettingsFamily kPtzDomeCamera = {
    .readPolicy = ReadPolicy::Retry,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<508>(kLayout),
    .result = kUnlessPending,
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kPtzDomeCameraNotes = {"PTZ dome camera"};
