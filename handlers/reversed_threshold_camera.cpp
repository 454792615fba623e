// Cameras whose day/night switching thresholds are kept reversed: 9-byte
// record, continue read.
#include "handlers/settings_frame.h"
#include "handlers/settings_handlers.h"

namespace {

// The camera counts its thresholds down from 15.
constexpr int32_t kThresholdScale = 15;

// In lookup order: "Mirror" comes last although it lies before the thresholds.
constexpr Field kFields[] = {
    U8("MaxExposureTime", 0),
    U8("Gamma", 1),
    U8("NoiseFilter", 2),
    U8("Sharpness", 3),
    U8("D2nThreshold", 5, Reversed<kThresholdScale>),
    U8("N2dThreshold", 6, Reversed<kThresholdScale>),
    U8("DnMode", 7),
    U8("Mirror", 4),
    // 8: not set here
};

void Merge(const FormValue& form, const RecordView& record) { MergeFields(form, record, kFields); }

constexpr SettingsFamily kReversedThresholdCamera = {
    .recordSize = 9,
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-1, false},
    .merge = Merge,
    .result = nullptr,
};

}  // namespace

int ReversedThresholdCameraSettings(char* errorBuffer, const char* recordPath) {
  return RunSettingsFrame<kReversedThresholdCamera>(errorBuffer, recordPath);
}
