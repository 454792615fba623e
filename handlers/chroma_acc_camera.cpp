// Cameras with chroma saturation and automatic colour control: 32-byte
// record with signed 32-bit brightness, saturation and colour gains,
// continue read.
#include "handlers/settings_frame.h"
#include "handlers/settings_handlers.h"

namespace {

// In lookup order: the colour gains are looked up before "ImageReverse".
constexpr Field kFields[] = {
    U32("Brightness", 0),
    U32("ChromaSaturation", 4),
    U8("AccOnOff", 8),
    U8("AccIntensity", 9),
    U8("MaxAgcGain", 10),
    U8("LightCompensation", 11),
    U8("LightCompensationIntensity", 12),
    U8("DayNightOnOff", 13),
    U8("DayNightDelay", 14),
    U8("Sharpness", 15),
    U8("SlowShutter", 16),
    U8("FlckerlessMode", 17),
    U8("ManualShutterOnOff", 18),
    U8("ManualShutterSpeed", 19),
    U8("WbMode", 20),
    U32("rGain", 24),
    U32("bGain", 28),
    U8("ImageReverse", 21),
    // 22..23: not set here
};

void Merge(const FormValue& form, const RecordView& record) { MergeFields(form, record, kFields); }

constexpr SettingsFamily kChromaAccCamera = {
    .recordSize = 32,
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-1, false},
    .merge = Merge,
    .result = nullptr,
};

}  // namespace

int ChromaAccCameraSettings(char* errorBuffer, const char* recordPath) {
  return RunSettingsFrame<kChromaAccCamera>(errorBuffer, recordPath);
}
