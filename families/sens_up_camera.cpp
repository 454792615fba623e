// Sens-up day/night cameras: a record of single bytes, continue read.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

constexpr Field kFields[] = {
    U8("LensType", 0),
    U8("Brightness", 1),
    U8("Shutter", 2),
    U8("Agc", 3),
    U8("SensUp", 4),
    U8("DayNight", 5),
    U8("DayToNightThreshold", 6),
    U8("DayToNightDelay", 7),
    U8("NightToDayThreshold", 8),
    U8("NightToDayDelay", 9),
    U8("Hmirror", 10),
    U8("Vmirror", 11),
    U8("SharpnessOnOff", 12),
    U8("SharpnessLevel", 13),
    U8("WdrBlc", 14),
    U8("ColorGain", 15),
};

constexpr Block kLayout[] = {Fields(kFields)};

}  // namespace

constexpr SettingsFamily kSensUpCamera = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-1, false},
    .layout = CheckedLayout<16>(kLayout),
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kSensUpCameraNotes = {"Sens-up camera"};
