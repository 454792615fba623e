// Environment-mode cameras: 6-byte record, continue read.
#include "handlers/settings_frame.h"
#include "handlers/settings_handlers.h"

namespace {

constexpr Field kFields[] = {
    U8("PowerFrequency", 0),
    U8("Contrast", 1),
    U8("Brightness", 2),
    U8("Mirror", 3),
    // 4: not set here
    U8("Environment", 5),
};

void Merge(const FormValue& form, const RecordView& record) { MergeFields(form, record, kFields); }

constexpr SettingsFamily kEnvironmentModeCamera = {
    .recordSize = 6,
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-1, false},
    .merge = Merge,
    .result = nullptr,
};

}  // namespace

int EnvironmentModeCameraSettings(char* errorBuffer, const char* recordPath) {
  return RunSettingsFrame<kEnvironmentModeCamera>(errorBuffer, recordPath);
}
