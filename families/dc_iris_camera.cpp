// DC-iris cameras: a record with a 16-bit shutter speed and 16-bit
// manual white balance gains, continue read.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

constexpr Field kFields[] = {
    U8("IrisLensType", 0),
    U8("Brightness", 1),
    U8("DcIrisLevel", 2),
    U8("DcIrisSpeed", 3),
    U8("MaxAgcGain", 4),
    U8("SlowShutterEnable", 5),
    U8("MaxSlowFrame", 6),
    U8("ManualShutterEnable", 7),
    U16("ManualShutterSpeed", 8),
    U8("PowerFrequency", 10),
    U8("BacklightEnable", 11),
    U8("BacklightMode", 12),
    U8("DayNightEnable", 13),
    U8("Night2DayThreshold", 14),
    U8("Day2NightThreshold", 15),
    U8("AwbMode", 16),
    // 17: not set here
    U16("ManualRGain", 18),
    U16("ManualBGain", 20),
    U8("hMirror", 22),
    U8("vMirror", 23),
};

constexpr Block kLayout[] = {Fields(kFields)};

}  // namespace

constexpr SettingsFamily kDcIrisCamera = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<24>(kLayout),
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kDcIrisCameraNotes = {"DC-iris camera"};
