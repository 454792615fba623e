// PTZ camera modules with zero-point calibration: a record of bytes,
// 256-byte form values, continue read. Scans, privacy masks, patterns and
// tours are edited one set at a time behind their set numbers; a pending
// action or zero-point command keeps the browser on its page.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

constexpr Field kImageFields[] = {
    // 0..3: not set here
    U8("CamModReboot", 4, kAction),
    U8("ImgSetHMirror", 5),
    U8("ImgSetFlip", 6),
    U8("AfSense", 7),
    U8("DZoom", 8),
    U8("WBalance", 9),
    U8("WBRedGain", 10),
    U8("WBBlueGain", 11),
    U8("Exposure", 12),
    U8("ExpIris", 13),
    U8("ExpShutter", 14),
    U8("ExpGain", 15),
    U8("Sharpness", 16),
    U8("BackLight", 17),
    U8("DaynNight", 18),
    U8("Wdr", 19),
    U8("Focus", 20),
    U8("Resolution", 21),
    U8("ImgSetAutoFlip", 22),
    U8("ImgSetOverTilt", 23),
    U8("PropPanTilt", 24),
    U8("HomeMode", 25),
    U8("HomeId", 26),
    // 27..94: not set here
    U8("Initial", 327),  // looked up with the image settings
};

// Action ids below their set count start an action on the camera; so does
// a zero-point command other than 255.
constexpr uint32_t kEightSets = 8;
constexpr uint32_t kPrivacySets = 24;

// Scans: 8 sets.
constexpr Field kScanActions[] = {
    U8("ScanViewId", 95, IdBelow(kEightSets)),
    U8("ScanStartId", 96, IdBelow(kEightSets)),
    U8("ScanEndId", 97, IdBelow(kEightSets)),
    U8("ScanRunId", 99, IdBelow(kEightSets)),
};
constexpr Field kScanSetId = U8("ScanSetId", 98);
constexpr Field kScanSlot[] = {
    U8("ScanSetMode", 100), U8("ScanSetDwell", 101), U8("ScanSetSpeed", 102),
    // 103..126: not set here
};

// Patterns: 8 sets; the run id is not gated.
constexpr Field kPatternActions[] = {
    U8("PatternViewId", 127, IdBelow(kEightSets)),
    U8("PatternStartId", 128, IdBelow(kEightSets)),
    U8("PatternEndId", 129, IdBelow(kEightSets)),
    U8("PatternRunId", 131, IdBelow(kEightSets)),
};
constexpr Field kPatternSetId = U8("PatternSetId", 130);
constexpr Field kPatternSlot = U8("PatternSetMode", 132);
// 133..276: not set here

// Tours: 8 tours of 8 steps; the run id is not gated.
constexpr Field kTourActions[] = {
    U8("TourViewId", 277, IdBelow(kEightSets)),
    U8("TourRunId", 279, IdBelow(kEightSets)),
};
constexpr Field kTourSetId = U8("TourSetId", 278);
constexpr Field kTourSetMode = U8("TourSetMode", 280);
constexpr IndexedField kTourSteps[] = {
    Indexed("TourSetFncType%d", 0, 8, 281, 1, FieldType::U8),
    Indexed("TourSetFncId%d", 0, 8, 289, 1, FieldType::U8),
};

// Privacy masks: 24 sets.
constexpr Field kPrivacyViewId = U8("PrivacyViewId", 297, IdBelow(kPrivacySets));
constexpr Field kPrivacySetId = U8("PrivacySetId", 298);
constexpr Field kPrivacySlot = U8("PrivacySetMode", 299);
// 300..323: not set here

// Zero-point (position calibration) commands.
constexpr Field kZeroPointFields[] = {
    U8("ZeroClear", 324, kCommand),
    U8("ZeroSet", 325, kCommand),
    U8("ZeroGet", 326, kCommand),
};

// The blocks each set id opens.
constexpr Block kScanEdit[] = {Fields(kScanSlot)};
constexpr Block kPrivacyEdit[] = {Fields(kPrivacySlot)};
constexpr Block kPatternEdit[] = {Fields(kPatternSlot)};
constexpr Block kTourEdit[] = {Fields(kTourSetMode), Steps(kTourSteps)};

constexpr Block kLayout[] = {
    Fields(kImageFields),
    Fields(kScanActions),
    Gate(kScanSetId, kEightSets, kScanEdit),
    Fields(kPrivacyViewId),
    Gate(kPrivacySetId, kPrivacySets, kPrivacyEdit),
    Fields(kPatternActions),
    Gate(kPatternSetId, kEightSets, kPatternEdit),
    Fields(kTourActions),
    Gate(kTourSetId, kEightSets, kTourEdit),
    Fields(kZeroPointFields),
};

}  // namespace

constexpr SettingsFamily kPtzModule1D = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<328>(kLayout),
    .result = kUnlessPending,
    .valueBufferSize = 256,
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kPtzModule1DNotes = {"PTZ module with zero-point calibration"};
