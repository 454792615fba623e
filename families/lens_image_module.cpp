// Lens and image processing modules: a record of bytes and
// halfwords, three-attempt read, the KeyValue answer.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

constexpr Field kFields[] = {
    U8("LensType", 0),
    U8("ShutSpd", 1),
    U8("AgcMax", 2),
    U8("SensUp", 3),
    U8("BlcType", 4),
    U8("HlcAreaSel", 5),
    U8("HlcAe", 6),
    U8("HlcMask", 7),
    U16("HlcAreaX", 8),
    U16("HlcAreaY", 10),
    U16("HlcAreaW", 12),
    U16("HlcAreaH", 14),
    U8("HlcMaskThr", 16),
    U8("HlcMaskColor", 17),
    U8("WdrMode", 18),
    U8("DefogMode", 19),
    U8("DayNightMode", 20),
    U8("DnAutoDelay", 21),
    U8("DnAutoAgc", 22),
    U8("NdAutoAgc", 23),
    U8("DnAutoCds", 24),
    U8("NdAutoCds", 25),
    U8("AwbMode", 26),
    U8("AwbRGain", 27),
    U8("AwbBGain", 28),
    U8("Dnr2D", 29),
    U8("Dnr3D", 30),
    U8("SmartNr", 31),
    U8("Bpc", 32),
    U8("Bpd", 33),
    U8("Bpt", 34),
    U8("PmGlobalEn", 35),
    U8("PmAreaSel", 36),
    U8("PmLocalEn", 37),
    U16("PmAreaAX", 38),
    U16("PmAreaAY", 40),
    U16("PmAreaBX", 42),
    U16("PmAreaBY", 44),
    U16("PmAreaCX", 46),
    U16("PmAreaCY", 48),
    U16("PmAreaDX", 50),
    U16("PmAreaDY", 52),
    U8("PmColor", 54),
    U8("PmTrans", 55),
    U8("Lsc", 56),
    U8("Flip", 57),
    U8("DZoomMode", 58),
    U8("DZoomRatio", 59),
    U16("DZoomPTX", 60),
    U16("DZoomPTY", 62),
    U8("PipMode", 64),
    // 65: not set here
    U16("PipPosX", 66),
    U16("PipPosY", 68),
    U8("Hrm", 70),
    U8("Sharpness", 71),
    U8("Contrast", 72),
    U8("Brightness", 73),
    U8("Hue", 74),
    U8("KeyValue", 75, kRequestFlag),
};

constexpr Block kLayout[] = {Fields(kFields)};

}  // namespace

constexpr SettingsFamily kLensImageModule = {
    .readPolicy = ReadPolicy::Retry,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<76>(kLayout),
    .result = kUnlessPending,
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kLensImageModuleNotes = {"Lens and image module"};
