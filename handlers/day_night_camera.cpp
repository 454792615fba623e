// Day/night camera module 3A: 140-byte record of mostly 32-bit words,
// continue read, the AgcGain clamp, and a block of exposure-weighting,
// noise-filter, lens-correction and dynamic-range bytes at the end.
#include "handlers/settings_frame.h"
#include "handlers/settings_handlers.h"

namespace {

// In offset order, which is also the lookup order.
constexpr Field kFields[] = {
    U32("PowerFrequency", 0),
    U32("Hue", 4),
    U32("Saturation", 8),
    U32("Brightness", 12),
    U32("Contrast", 16),
    U32("Sharpness", 20),
    U8("DayNightMode", 24),
    U8("TdnDwellTime", 25),
    // 26..27: not set here
    U32("DayNightDetect", 28),
    U32("D2nThreshold", 32),
    U32("N2dThreshold", 36),
    U32("VerticalFlip", 40),
    U32("HorizontalFlip", 44),
    U32("Blc", 48),
    U32("Wdr", 52),
    U32("ManualShutter", 56),
    U32("ShutterSpeed", 60),
    U32("WhiteBalance", 64),
    U32("RGain", 68),
    U32("GGain", 72),
    U32("BGain", 76),
    U32("LensType", 80),
    U32("VideoOut", 84),
    U8("VOutSrcChan", 88),
    U8("VOutSkipCount", 89),
    // 90..91: not set here
    U32("XyRatio", 92),
    U32("AgcGain", 96, AtLeastOne),  // no gain below 1; no upper limit
    U32("TargetExposure", 100),
    U32("NoiseFilter", 104),
    U8("SensUpLevel", 108),
    U8("IrLedBrightness", 109),
    // 110..127: not set here
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

void Merge(const FormValue& form, const RecordView& record) { MergeFields(form, record, kFields); }

constexpr SettingsFamily kDayNightCamera = {
    .recordSize = 140,
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-1, false},
    .merge = Merge,
    .result = nullptr,
};

}  // namespace

int DayNightCameraSettings(char* errorBuffer, const char* recordPath) {
  return RunSettingsFrame<kDayNightCamera>(errorBuffer, recordPath);
}
