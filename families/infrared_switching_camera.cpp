// Infrared-switching cameras: a record of 32-bit
// words, continue read; a failed write flushes the file systems and
// returns -1.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

// In offset order, which is also the lookup order.
constexpr Field kFields[] = {
    U32("AeEnable", 0),
    U32("OpenThreshold", 4),
    U32("CloseThreshold", 8),
    U32("OpenDelay", 12),
    U32("CloseDelay", 16),
    U32("Threshold1x", 20),
    U32("Threshold2x", 24),
    U32("Threshold3x", 28),
    // 32..47: not set here
    U32("IrLedMode", 48),
    U32("DcIrisEnable", 52),
    U32("AwbEnable", 56),
    U32("WbMethod", 60),
    U32("WbMode", 64),
    U32("RGain", 68),
    U32("GGain", 72),
    U32("BGain", 76),
    U32("DGain", 80),
    U32("Hue", 84),
    U32("Saturation", 88),
    U32("Brightness", 92),
    U32("Contrast", 96),
    U32("Sharpness", 100),
    U32("WdrStrength", 104),
    U32("ChromaNoiseStrength", 108),
    U32("MctfStrength", 112),
};

constexpr Block kLayout[] = {Fields(kFields)};

}  // namespace

constexpr SettingsFamily kInfraredSwitchingCamera = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-1, true},
    .layout = CheckedLayout<116>(kLayout),
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kInfraredSwitchingCameraNotes = {"Infrared-switching camera"};
