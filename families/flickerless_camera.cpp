// Flickerless cameras with a command key: a record of single bytes;
// a record that cannot be read is not rewritten. The last byte carries a
// one-shot command for the daemon; 255 means none.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

constexpr Field kFields[] = {
    U8("Contrast", 0),
    U8("Brightness", 1),
    U8("Sharpness", 2),
    U8("AgcGain", 3),
    U8("ColorSaturation", 4),
    U8("Mirror", 5),
    U8("DayNight", 6),
    U8("MaxExposureTime", 7),
    U8("BackLight", 8),
    U8("PowerFrequency", 9),
    U8("Flickerless", 10),
};

// A request without a command clears whatever command was stored; a
// pending command keeps the browser on its page.
constexpr Field kKey = U8("Key", 11, kCommand);

constexpr Block kLayout[] = {Fields(kFields), OneShot(kKey)};

}  // namespace

constexpr SettingsFamily kFlickerlessCamera = {
    .readPolicy = ReadPolicy::Abort,
    .writeFailure = {-1, false},
    .layout = CheckedLayout<12>(kLayout),
    .result = kUnlessPending,
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kFlickerlessCameraNotes = {"Flickerless camera"};
