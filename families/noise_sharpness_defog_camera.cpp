// Noise-reduction, sharpness and defog cameras: a record of words,
// halfwords and bytes, continue read; a failed write flushes the file
// systems before it is reported.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

constexpr Field kFields[] = {
    U32("WdrMode", 0),
    U32("DisEnable", 4),
    U32("NrEnable", 8),
    U32("NrType", 12),
    U8("NrManualThreshold", 16),
    U8("NrManualThresholdLong", 17),
    U8("NrAutoThreshold", 18),
    // 19: not set here
    U16("RGain", 20),
    U16("GGain", 22),
    U16("BGain", 24),
    // 26..27: not set here
    U32("SharpnessEnable", 28),
    U32("SharpnessType", 32),
    U8("ManualSharpnessD", 36),
    U8("ManualSharpnessUd", 37),
    U8("ManualSharpnessRgb", 38),
    U8("AutoSharpnessD", 39),
    U8("AutoSharpnessUd", 40),
    U8("AutoSharpnessRgb", 41),
    U8("SharpnessLutCore", 42),
    U8("SharpnessLutStrength", 43),
    U8("SharpnessLutMagnitude", 44),
    // 45..47: not set here
    U32("DefogEnable", 48),
    U8("DefogHorizontal", 52),
    U8("DefogVertical", 53),
    // 54..55: not set here
    U32("DefogType", 56),
    U8("DefogManualStrength", 60),
    U8("DefogAutoStrength", 61),
    // 62..63: not set here
};

constexpr Block kLayout[] = {Fields(kFields)};

}  // namespace

constexpr SettingsFamily kNoiseSharpnessDefogCamera = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-1, true},
    .layout = CheckedLayout<64>(kLayout),
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kNoiseSharpnessDefogCameraNotes = {"Noise, sharpness and defog camera"};
