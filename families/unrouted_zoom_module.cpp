// Zoom camera module with focus, white balance, exposure and picture
// settings: continue read. No module code routes to it; it
// is complete so that a table row can.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

constexpr Field kFields[] = {
    // 0..1: not set here
    U8("FocusMode", 2),
    U8("AwbMode", 3),
    U8("AwbRGain", 4),
    U8("AwbBGain", 5),
    U8("ExpMode", 6),
    U8("ExpSlowShutter", 7),
    U8("ExpeIris", 8),
    U8("ExpShutter", 9),
    U8("ExpBrightness", 10),
    U8("ExpDayNight", 11),
    U8("ExpWdrMode", 12),
    U8("ExpWdrValue", 13),
    U8("ImgSharpness", 14),
    U8("MaxDigitalZoom", 15),
    U8("PwrFrequency", 16),
    U8("Chroma", 17),
    U8("DnrLevel", 18),
    U8("FlipMode", 19),
    U8("Gamma", 20),
};

constexpr Block kLayout[] = {Fields(kFields)};

}  // namespace

constexpr SettingsFamily kUnroutedZoomModule = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<21>(kLayout),
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kUnroutedZoomModuleNotes = {"Zoom module without a module code"};
