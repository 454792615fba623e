// Image sensors with their own processing (modules 5A..5T): 296-byte record
// of 32-bit words, continue read; a failed write flushes the file systems
// and returns -1.
#include "handlers/settings_frame.h"
#include "handlers/settings_handlers.h"

namespace {

// In lookup order. The file order differs at the end: AwbSceneMode (88)
// comes before AwbMode (92), and the day/night words (96..108) lie between
// the white-balance modes and gains; the daemon reads that order.
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
    U32("AwbMode", 92),
    U32("AwbSceneMode", 88),
    U32("AwbRGain", 112),
    U32("AwbGGain", 116),
    U32("AwbBGain", 120),
    U32("DNControl", 96),
    U32("DNDwellingTime", 100),
    U32("DNThreshold", 104),
    U32("NDThreshold", 108),
    // 124..295: not set here
};

void Merge(const FormValue& form, const RecordView& record) { MergeFields(form, record, kFields); }

constexpr SettingsFamily kSensorImageProcessing = {
    .recordSize = 296,
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-1, true},
    .merge = Merge,
    .result = nullptr,
};

}  // namespace

int SensorImageProcessingSettings(char* errorBuffer, const char* recordPath) {
  return RunSettingsFrame<kSensorImageProcessing>(errorBuffer, recordPath);
}
