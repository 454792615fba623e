// Wide-dynamic-range ISP cameras: one-byte settings at offsets 0..90 in
// key order, continue read. The nine processing stages share one set of
// seven parameters, so their keys are built from the stage and parameter
// names rather than listed.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

// Exposure and gain for the long ("Lp") and short ("Sp") exposures.
constexpr Field kExposure[] = {
    U8("AecEnable", 0),
    U8("AgcEnable", 1),
    U8("AecWdrMode", 2),
    U8("AecFrameRate", 3),
    U8("AecTargetLp", 4),
    U8("AecTargetSp", 5),
    U8("AgcMaxGainLp", 6),
    U8("AgcMaxGainSp", 7),
};

// 8..70: nine stages of seven bytes, key = stage name + parameter name:
// the stages, then their parameters from the stage's first byte.
constexpr Field kStages[] = {
    Prefix("WdrLevel", 8),
    Prefix("Nlc", 15),
    Prefix("Plc", 22),
    Prefix("Dpc", 29),
    Prefix("Nr", 36),
    Prefix("Shap", 43),
    Prefix("Contrast", 50),
    Prefix("Bright", 57),
    Prefix("Color", 64),
    U8("Mode", 0),
    U8("Ref", 1),
    U8("Start", 2),
    U8("End", 3),
    U8("Sv", 4),
    U8("Ev", 5),
    U8("Init", 6),
};
constexpr int kStageCount = 9;

// Per-colour saturation and hue, then the output settings.
constexpr Field kColourAndOutput[] = {
    U8("ColorSatMag", 71),
    U8("ColorSatRed", 72),
    U8("ColorSatYel", 73),
    U8("ColorSatGre", 74),
    U8("ColorSatCya", 75),
    U8("ColorSatBlu", 76),
    U8("ColorHueMag", 77),
    U8("ColorHueRed", 78),
    U8("ColorHueYel", 79),
    U8("ColorHueGre", 80),
    U8("ColorHueCya", 81),
    U8("ColorHueBlu", 82),
    U8("BlcTarget", 83),
    U8("LpRatio", 84),
    U8("SpRatio", 85),
    U8("MirrorFlip", 86),
    U8("DebugMode", 87),
    U8("GammaLevel", 88),
    U8("FlickerEn", 89),
    U8("PowerFrq", 90),
};

constexpr Block kLayout[] = {
    Fields(kExposure), Product(kStages, kStageCount), Fields(kColourAndOutput)};

}  // namespace

constexpr SettingsFamily kWdrIspCamera = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<91>(kLayout),
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kWdrIspCameraNotes = {"WDR ISP camera"};
