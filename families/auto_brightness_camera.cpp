// Auto-brightness colour cameras: a record of single bytes, continue read.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

constexpr Field kFields[] = {
    U8("LensType", 0),
    U8("AutoBrightness", 1),
    U8("BackLight", 2),
    U8("DayNight", 3),
    U8("AcPowerFrequency", 4),
    U8("WhiteBalance", 5),
    U8("DayNightChgTh", 6),
    U8("Gamma", 7),
    U8("Contrast", 8),
    U8("Sharpness", 9),
    U8("Hue", 10),
    U8("Saturation", 11),
    U8("Mirror", 12),
    U8("AutoBrightnessMax", 13),
    U8("AutoShutterMax", 14),
    // 15..16: not set here
};

constexpr Block kLayout[] = {Fields(kFields)};

}  // namespace

constexpr SettingsFamily kAutoBrightnessCamera = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<17>(kLayout),
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kAutoBrightnessCameraNotes = {"Auto-brightness camera"};
