// Does not build: "B" lies on the second byte of "A".
#include "frame/settings_frame.h"

constexpr Field kRows[] = {U16("A", 0), U8("B", 1)};
constexpr Block kLayout[] = {Fields(kRows)};
constexpr SettingsFamily kFamily = {
    .recordSize = 3, .readPolicy = ReadPolicy::Continue, .writeFailure = {-2, false},
    .layout = CheckedLayout<3>(kLayout)};
const SettingsFamily* family = &kFamily;
