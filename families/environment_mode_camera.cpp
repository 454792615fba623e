// Environment-mode cameras: continue read.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

constexpr Field kFields[] = {
    U8("PowerFrequency", 0),
    U8("Contrast", 1),
    U8("Brightness", 2),
    U8("Mirror", 3),
    // 4: not set here
    U8("Environment", 5),
};

constexpr Block kLayout[] = {Fields(kFields)};

}  // namespace

constexpr SettingsFamily kEnvironmentModeCamera = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-1, false},
    .layout = CheckedLayout<6>(kLayout),
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kEnvironmentModeCameraNotes = {"Environment-mode camera"};
