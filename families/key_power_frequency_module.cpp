// Key and mains-frequency modules: "KeyValue" and "PowerFrequency" in the
// first two bytes. The longer modules keep a third byte the daemon owns;
// the two-byte modules have the same keys, order and answer with no third
// byte, so both families share one layout and one result rule.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

constexpr Field kFields[] = {
    U8("PowerFrequency", 0),
    U8("KeyValue", 1, kRequestFlag),  // 0: the return page; else the bare answer
};

constexpr Block kLayout[] = {Fields(kFields)};

}  // namespace

constexpr SettingsFamily kKeyPowerFrequencyModule = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<3>(kLayout),
    .result = kUnlessPending,
};

constexpr SettingsFamily kTwoByteKeyPowerFrequencyModule = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<2>(kLayout),
    .result = kUnlessPending,
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kKeyPowerFrequencyModuleNotes = {"Key and mains-frequency module"};
const KeyReferenceNotes kTwoByteKeyPowerFrequencyModuleNotes = {
    "Two-byte key and mains-frequency module"};
