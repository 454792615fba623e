// Basic image modules: a record of single bytes and one 32-bit
// brightness word, continue read, always the return page.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

constexpr Field kFields[] = {
    U8("PowerFreq", 0),
    // 1..3: not set here
    U32("Brightness", 4),
    U8("Contrast", 8),
    U8("Sharpness", 9),
    U8("Mirror", 10),
    U8("AutoGainControl", 11),
    U8("NoiseReduction", 12),
    U8("Shutter", 13),
    U8("DayNight", 14),
    // 15: not set here
};

constexpr Block kLayout[] = {Fields(kFields)};

}  // namespace

constexpr SettingsFamily kBasicImageModule = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<16>(kLayout),
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kBasicImageModuleNotes = {"Basic image module"};
