// Thermal imaging modules: a record of 16- and 32-bit fields, continue
// read; the AGC preset word is an unsigned decimal, and a pending reset or
// save command keeps the browser on its page.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

constexpr Field kFieldsBeforeAgcPresets[] = {
    // 0..3: not set here
    U16("VideoStandard", 4),
    U16("TestPattern", 6),
    U16("DynamicDde", 8),
    U16("PolarityPalette", 10),
    U16("Orientation", 12),
    U16("ZoomMode", 14),
    U32("PanPosition", 16),
    U32("TiltPosition", 20),
    U16("SpotMeterMode", 24),
    U16("IsoTherm", 26),
    U16("IsoThresLower", 28),
    U16("IsoThresMiddle", 30),
    U16("IsoThresUpper", 32),
    U16("FfcWarnTime", 34),
    U16("ResetCamera", 36, kRequestFlag),  // a pending reset or save answers 204
    U16("SaveCamera", 38, kRequestFlag),
    U16("Algorithm", 40),
    // 42..43: not set here
};

// A plain decimal with no hexadecimal prefix.
constexpr Field kAgcPresets = U32("AgcPresets", 44, kUnsigned);

constexpr Field kFieldsAfterAgcPresets[] = {
    U16("Contrast", 48), U16("Brightness", 50), U16("BrightBias", 52),
    // 54..55: not set here
};

constexpr Block kLayout[] = {
    Fields(kFieldsBeforeAgcPresets), Fields(kAgcPresets), Fields(kFieldsAfterAgcPresets)};

}  // namespace

constexpr SettingsFamily kThermalImagingModule = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<56>(kLayout),
    .result = kUnlessPending,
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kThermalImagingModuleNotes = {"Thermal imaging module"};
