// Does not build: "B" ends one byte past the 3-byte record.
#include "frame/settings_frame.h"

constexpr Field kRows[] = {U16("A", 0), U16("B", 2)};
constexpr Block kLayout[] = {Fields(kRows)};
constexpr SettingsFamily kFamily = {
    .recordSize = 3, .readPolicy = ReadPolicy::Continue, .writeFailure = {-2, false},
    .layout = CheckedLayout<3>(kLayout)};
const SettingsFamily* family = &kFamily;
