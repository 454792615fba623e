// Single-key camera modules: a record whose one setting is "KeyValue";
// the browser always stays on its page.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

constexpr Field kFields[] = {
    U8("KeyValue", 0),
    // 1..3: not set here
};

constexpr Block kLayout[] = {Fields(kFields)};

}  // namespace

constexpr SettingsFamily kSingleKeyModule = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<4>(kLayout),
    .result = kBareAnswer,
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kSingleKeyModuleNotes = {"Single-key module"};
