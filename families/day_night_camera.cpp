// Day/night camera modules with exposure weighting: a record of
// mostly 32-bit words, continue read, the AgcGain clamp, and a block of exposure-weighting,
// noise-filter, lens-correction and dynamic-range bytes at the end.
#include "families/day_night_ir_layout.h"
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

// After the day/night IR block (bytes 0..127), in offset order.
constexpr Field kTail[] = {
    // The web page posts these with their own capitalisation.
    U8("AEWtype", 128),
    U8("AEWswitch", 129),
    U8("expPriority", 130),
    U8("vnfEnable", 131),
    U8("vnfMode", 132),
    U8("vnfStrength", 133),
    U8("ldcEnable", 134),
    U8("histogram", 135),
    U8("dynRange", 136),
    U8("dynRangeStrength", 137),
    // 138..139: not set here
};

constexpr Block kLayout[] = {Fields(kDayNightIrFields), Fields(kTail)};

}  // namespace

constexpr SettingsFamily kDayNightCamera = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-1, false},
    .layout = CheckedLayout<140>(kLayout),
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kDayNightCameraNotes = {"Day/night camera"};
