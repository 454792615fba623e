// Day/night IR cameras: 128-byte record of mostly 32-bit words, continue read.
#include "handlers/day_night_ir_layout.h"
#include "handlers/settings_frame.h"
#include "handlers/settings_handlers.h"

namespace {

void Merge(const FormValue& form, const RecordView& record) { MergeFields(form, record, kDayNightIrFields); }

constexpr SettingsFamily kDayNightIrCamera = {
    .recordSize = kDayNightIrRecordSize,
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-1, false},
    .merge = Merge,
    .result = nullptr,
};

}  // namespace

int DayNightIrCameraSettings(char* errorBuffer, const char* recordPath) {
  return RunSettingsFrame<kDayNightIrCamera>(errorBuffer, recordPath);
}
