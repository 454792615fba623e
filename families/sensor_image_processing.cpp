// Image sensors with their own processing: a record
// of 32-bit words, continue read; a failed write flushes the file systems
// and returns -1.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

constexpr Field kFields[] = {
    // 0..3: not set here
    U8("CamCtlPage", 4),  // 5..7, the rest of its word, not set here
    U32("Brightness", 8),
    U32("Contrast", 12),
    U32("Hue", 16),
    U32("Saturation", 20),
    U32("Sharpness", 24),
    U32("WdrMode", 28),
    U32("MrNrEn", 32),
    U32("TmNrEn", 36),
    U32("DrcStrength", 40),
    U32("DrcMode", 44),
    U32("SensorFps", 48),
    U32("SensorMirror", 52),
    U32("SensorFlip", 56),
    U32("AeEnable", 60),
    U32("AeMaxGain", 64),
    U32("AeIrisEnable", 68),
    U32("AeShutterMode", 72),
    U32("AeShutterConstExp", 76),
    U32("AeSlowShoot", 80),
    // 84..87: not set here
    U32("AwbSceneMode", 88),
    U32("AwbMode", 92),
    U32("DNControl", 96),
    U32("DNDwellingTime", 100),
    U32("DNThreshold", 104),
    U32("NDThreshold", 108),
    // 124..295: not set here
    U32("AwbRGain", 112),
    U32("AwbGGain", 116),
    U32("AwbBGain", 120),
};

constexpr Block kLayout[] = {Fields(kFields)};

}  // namespace

constexpr SettingsFamily kSensorImageProcessing = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-1, true},
    .layout = CheckedLayout<296>(kLayout),
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kSensorImageProcessingNotes = {"Sensor image processing"};
