// Thermal cameras: a record with 16-bit brightness and contrast
// values, continue read.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

constexpr Field kFields[] = {
    U8("Color", 0),
    U8("Agc", 1),
    U16("Brightness", 2),
    U16("Contrast", 4),
    U16("DetailBrightness", 6),
    U16("DetailContrast", 8),
    U8("Invert", 10),
    U8("Mirror", 11),
    U8("Flip", 12),
    U8("Filter", 13),
    U8("Zoom", 14),
    U8("EContrast", 15),
    U8("Center", 16),
    U8("Indicator", 17),
    U8("Tv", 18),
    U8("Nuc", 19),
    // 20..21: not set here
};

constexpr Block kLayout[] = {Fields(kFields)};

}  // namespace

constexpr SettingsFamily kThermalCamera = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<22>(kLayout),
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kThermalCameraNotes = {"Thermal camera"};
