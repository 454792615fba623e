// Single-key camera modules: a 4-byte record whose one setting is "KeyValue";
// the browser always stays on its page.
#include "handlers/settings_frame.h"
#include "handlers/settings_handlers.h"

namespace {

constexpr Field kFields[] = {
    U8("KeyValue", 0),
    // 1..3: not set here
};

void Merge(const FormValue& form, const RecordView& record) { MergeFields(form, record, kFields); }

int Result(const RecordView&) { return 0; }

constexpr SettingsFamily kSingleKeyModule = {
    .recordSize = 4,
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-2, false},
    .merge = Merge,
    .result = Result,
};

}  // namespace

int SingleKeyModuleSettings(char* errorBuffer, const char* recordPath) {
  return RunSettingsFrame<kSingleKeyModule>(errorBuffer, recordPath);
}
