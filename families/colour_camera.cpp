// Simple colour cameras: a record of five
// halfwords, continue read.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

constexpr Field kFields[] = {
    U16("CamHue", 0),
    U16("CamSaturation", 2),
    U16("CamBrightness", 4),
    U16("CamContrast", 6),
    U16("CameraDefault", 8, kAction),  // the daemon restores its defaults on it
};

constexpr Block kLayout[] = {Fields(kFields)};

}  // namespace

constexpr SettingsFamily kColourCamera = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<10>(kLayout),
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kColourCameraNotes = {"Colour camera"};
