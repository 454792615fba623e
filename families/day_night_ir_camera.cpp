// Day/night IR cameras: 128-byte record of mostly 32-bit words, continue read.
#include "families/day_night_ir_layout.h"
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

constexpr Block kLayout[] = {Fields(kDayNightIrFields)};

}  // namespace

constexpr SettingsFamily kDayNightIrCamera = {
    .recordSize = kDayNightIrRecordSize,
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-1, false},
    .layout = CheckedLayout<kDayNightIrRecordSize>(kLayout),
};

// The key reference's notes (the inspector's alone): the family's name.
const char kDayNightIrCameraNotes[] = "Day/night IR camera";
