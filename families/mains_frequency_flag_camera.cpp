// Exposure and picture cameras that keep their mains-frequency choice also
// as two flag bytes: a record of single bytes, continue read.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

constexpr uint32_t kFrequencyOn = 1;   // 1 for a non-zero frequency choice
constexpr uint32_t kFrequencyOff = 2;  // 1 for the choice 0

// The key spellings are the web pages' own.
constexpr Field kExposerFrequency = U8("ExposerFrequency", 8);  // see SetFrequencyFlags
constexpr Field kFields[] = {
    U8("KeyValue", 0, kRequestFlag),  // a plain byte here: it locks nothing
    // 1..2: the frequency flags, set with "ExposerFrequency"
    U8("LensMode", 3),
    U8("ExposerShutter", 4),
    U8("ExposerShutterSpeed", 5),
    U8("ExposerAgc", 6),
    U8("ExposerDss", 7),
    kExposerFrequency,
    U8("ExposerDoorMode", 9),
    U8("AwbMode", 10),
    U8("AwbManualPreset", 11),
    U8("AwbManualKelvin", 12),
    U8("AwbManual_R_Gain", 13),
    U8("AwbManual_B_Gain", 14),
    U8("PictureBritness", 15),
    U8("PictureColorGain", 16),
    U8("PictureAce", 17),
    U8("PictureSharpness", 18),
    U8("PictureMirror", 19),
    U8("PictureFlip", 20),
    U8("PictureStill", 21),
    U8("PictureShading", 22),
    U8("Picture_D_Zoom", 23),
    U8("Picture_HL_Mask", 24),
    U8("Picture_HL_MaskLevel", 25),
    U8("Picture_HL_MaskColor", 26),
    U8("WbdWdrBlcDnrMode", 27),
    U8("WbdWdrWeight", 28),
    U8("WbdBlcOsd", 29),
    U8("WbdBlcPosX", 30),
    U8("WbdBlcPosY", 31),
    U8("WbdBlcSizeX", 32),
    U8("WbdBlcSizeY", 33),
    U8("WbdDnr", 34),
    U8("DayNightMode", 35),
    U8("DayNightAutoAgcThrs", 36),
    U8("DayNightAutoMargine", 37),
    U8("DayNightAutoDealy", 38),
    U8("DayNightExtDealy", 39),
    U8("FdLvdsDelay", 40),
};

// A posted frequency (the rule's row) sets the flags by the stored
// (truncated) byte.
void SetFrequencyFlags(const OwnContext& context) {
  const RecordView& record = context.record;
  FormValue value;
  if (!context.form.Lookup(context.row->key, value)) return;
  const bool on = record.GetU8(context.row->offset) != 0;
  record.PutU8(kFrequencyOn, on ? 1 : 0);
  record.PutU8(kFrequencyOff, on ? 0 : 1);
}

constexpr Block kLayout[] = {Fields(kFields), Own(kExposerFrequency, SetFrequencyFlags)};

}  // namespace

constexpr SettingsFamily kMainsFrequencyFlagCamera = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<41>(kLayout),
    .result = kUnlessPending,
};

// The key reference's notes (the inspector's alone): the family's name and
// what its own rule does.
const KeyReferenceNotes kMainsFrequencyFlagCameraNotes = {"Mains-frequency flag camera",
    {"when posted, it also sets byte 1 (1 when the stored choice is not 0) and byte 2 (1 when it "
     "is 0)"}};
