// Cameras whose day/night switching thresholds are kept reversed:
// continue read.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

// The camera counts its thresholds down from 15.
constexpr int32_t kThresholdScale = 15;

constexpr Field kFields[] = {
    U8("MaxExposureTime", 0),
    U8("Gamma", 1),
    U8("NoiseFilter", 2),
    U8("Sharpness", 3),
    U8("Mirror", 4),
    // 8: not set here
    U8("D2nThreshold", 5, Reversed(kThresholdScale)),
    U8("N2dThreshold", 6, Reversed(kThresholdScale)),
    U8("DnMode", 7),
};

constexpr Block kLayout[] = {Fields(kFields)};

}  // namespace

constexpr SettingsFamily kReversedThresholdCamera = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-1, false},
    .layout = CheckedLayout<9>(kLayout),
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kReversedThresholdCameraNotes = {"Reversed-threshold camera"};
