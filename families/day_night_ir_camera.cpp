// Day/night IR cameras: a record of mostly 32-bit words, continue read.
#include "families/day_night_ir_layout.h"
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

constexpr Block kLayout[] = {Fields(kDayNightIrFields)};

}  // namespace

constexpr SettingsFamily kDayNightIrCamera = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-1, false},
    .layout = CheckedLayout<128>(kLayout),
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kDayNightIrCameraNotes = {"Day/night IR camera"};
