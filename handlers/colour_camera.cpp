// Simple colour cameras (modules 0N, 0n, 0P, 0p): 10-byte record of five
// halfwords, continue read.
#include "handlers/settings_frame.h"
#include "handlers/settings_handlers.h"

namespace {

constexpr Field kFields[] = {
    U16("CamHue", 0),
    U16("CamSaturation", 2),
    U16("CamBrightness", 4),
    U16("CamContrast", 6),
    U16("CameraDefault", 8),  // stored like the others; the daemon acts on it
};

void Merge(const FormValue& form, const RecordView& record) { MergeFields(form, record, kFields); }

constexpr SettingsFamily kColourCamera = {
    .recordSize = 10,
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-2, false},
    .merge = Merge,
    .result = nullptr,
};

}  // namespace

int ColourCameraSettings(char* errorBuffer, const char* recordPath) {
  return RunSettingsFrame<kColourCamera>(errorBuffer, recordPath);
}
