// Cameras with chroma saturation and automatic colour control: a
// record with signed word brightness, saturation and colour gains,
// continue read.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

constexpr Field kFields[] = {
    U32("Brightness", 0),
    U32("ChromaSaturation", 4),
    U8("AccOnOff", 8),
    U8("AccIntensity", 9),
    U8("MaxAgcGain", 10),
    U8("LightCompensation", 11),
    U8("LightCompensationIntensity", 12),
    U8("DayNightOnOff", 13),
    U8("DayNightDelay", 14),
    U8("Sharpness", 15),
    U8("SlowShutter", 16),
    U8("FlckerlessMode", 17),
    U8("ManualShutterOnOff", 18),
    U8("ManualShutterSpeed", 19),
    U8("WbMode", 20),
    U8("ImageReverse", 21),
    // 22..23: not set here
    U32("rGain", 24),
    U32("bGain", 28),
};

constexpr Block kLayout[] = {Fields(kFields)};

}  // namespace

constexpr SettingsFamily kChromaAccCamera = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-1, false},
    .layout = CheckedLayout<32>(kLayout),
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kChromaAccCameraNotes = {"Chroma and colour-control camera"};
