// Key and mains-frequency modules: "KeyValue" and "PowerFrequency" in the
// first two bytes. The 3-byte modules keep a third byte the daemon owns;
// the two-byte modules have the same keys, order and answer with no third
// byte, so both handlers share one merge and one result.
#include "handlers/settings_frame.h"
#include "handlers/settings_handlers.h"

namespace {

// Looked up in this order; KeyValue lies after PowerFrequency on file.
constexpr Field kFields[] = {
    U8("KeyValue", 1),
    U8("PowerFrequency", 0),
};

constexpr uint32_t kKeyValue = 1;

void Merge(const FormValue& form, const RecordView& record) { MergeFields(form, record, kFields); }

int Result(const RecordView& record) { return KeyValueResult(record, kKeyValue); }

constexpr SettingsFamily kKeyPowerFrequencyModule = {
    .recordSize = 3,
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-2, false},
    .merge = Merge,
    .result = Result,
};

constexpr SettingsFamily kTwoByteKeyPowerFrequencyModule = {
    .recordSize = 2,
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-2, false},
    .merge = Merge,
    .result = Result,
};

}  // namespace

int KeyPowerFrequencyModuleSettings(char* errorBuffer, const char* recordPath) {
  return RunSettingsFrame<kKeyPowerFrequencyModule>(errorBuffer, recordPath);
}

int TwoByteKeyPowerFrequencyModuleSettings(char* errorBuffer, const char* recordPath) {
  return RunSettingsFrame<kTwoByteKeyPowerFrequencyModule>(errorBuffer, recordPath);
}
