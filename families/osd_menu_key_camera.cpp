// Cameras driven through their own OSD menu: a
// record of single bytes, continue read; a pressed menu key keeps the
// browser on its page.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

// In offset order, which is also the lookup order.
constexpr Field kFields[] = {
    U8("Lens", 0),
    U8("AfMode", 1),
    U8("Scanning", 2),
    U8("SyncTdn", 3),
    U8("Brightness", 4),
    U8("Shutter", 5),
    U8("ShtMode", 6),
    U8("ShutSpd", 7),
    U8("DcMode", 8),
    U8("Dss", 9),
    U8("Agc", 10),
    U8("BackLight", 11),
    U8("HlMaskThrs", 12),
    U8("HlMaskColor", 13),
    U8("BlcPosX", 14),
    U8("BlcPosY", 15),
    U8("BlcSizX", 16),
    U8("BlcSizY", 17),
    U8("WdrWeight", 18),
    U8("Tdn", 19),
    U8("LedOn", 20),
    U8("LedSatCtrl", 21),
    U8("TdnThrs", 22),
    U8("TdnMarg", 23),
    U8("TdnDly", 24),
    U8("TdnSw", 25),
    U8("TdnDnThres", 26),
    U8("TdnNdThres", 27),
    U8("Awb", 28),
    U8("AwbPreset", 29),
    U8("AwbMnl", 30),
    U8("Rgain", 31),
    U8("Bgain", 32),
    U8("Saturation", 33),
    U8("Adnr", 34),
    U8("Sharpness", 35),
    U8("Gamma", 36),
    U8("Mirror", 37),
    U8("Flip", 38),
    U8("Dzoom", 39),
    U8("Ace", 40),
    U8("Defog", 41),
    U8("DefogMode", 42),
    U8("DefogLevel", 43),
    U8("Shading", 44),
    U8("ShdWeight", 45),
    U8("Masking", 46),
    U8("CamID", 47),
    U8("Baudrate", 48),
    U8("OutScl", 49),
    U8("OutSclUser", 50),
    U8("OutFromat", 51),  // the web page spells it so
    U8("OutFps", 52),
    U8("SysFreq", 53),
    U8("Cvbs", 54),
    U8("ExSdi", 55),
    U8("CBar", 56),
    U8("LanguageSel", 57),
    U8("CamTitle", 58),  // a number here, not a text
    U8("CamCtlPage", 59),
    // 60: not set here
    U8("OsdEnter", 61, kCommand),  // menu keys: the return page only when none is pending
    U8("OsdUp", 62, kCommand),
    U8("OsdDown", 63, kCommand),
    U8("OsdLeft", 64, kCommand),
    U8("OsdRight", 65, kCommand),
    U8("Dcko", 66),
    U8("Itu", 67),
    U8("DckInv", 68),
};

constexpr Block kLayout[] = {Fields(kFields)};

}  // namespace

constexpr SettingsFamily kOsdMenuKeyCamera = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<69>(kLayout),
    .result = kUnlessPending,
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kOsdMenuKeyCameraNotes = {"OSD menu key camera"};
