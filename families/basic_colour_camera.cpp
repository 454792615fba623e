// Basic colour cameras: a record of single bytes; a record that
// cannot be read is not rewritten.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

constexpr Field kFields[] = {
    U8("SysMode", 0),
    U8("LensType", 1),
    U8("AutoGainRef", 2),
    U8("BackLight", 3),
    U8("DayNight", 4),
    U8("AcPowerFrequency", 5),
    U8("WhiteBalance", 6),
    U8("Gamma", 7),
    U8("Brightness", 8),
    U8("HSharpness", 9),
    U8("VSharpness", 10),
    U8("RHue", 11),
    U8("BHue", 12),
    U8("RSaturation", 13),
    U8("BSaturation", 14),
    U8("HMirror", 15),
    U8("VMirror", 16),
    U8("ManualShutterSpeed", 17),
    // 18..19: not set here
};

constexpr Block kLayout[] = {Fields(kFields)};

}  // namespace

constexpr SettingsFamily kBasicColourCamera = {
    .readPolicy = ReadPolicy::Abort,
    .writeFailure = {-3, false},
    .layout = CheckedLayout<20>(kLayout),
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kBasicColourCameraNotes = {"Basic colour camera"};
