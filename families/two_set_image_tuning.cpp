// Image-signal-processor tuning modules: a record of single bytes,
// continue read. Two parallel 64-byte parameter sets, told apart by their
// key prefix, are followed by 25 single parameters. The keys of a set are
// its prefix and the parameter (for a curve, the curve and the point).
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

// The two sets, keys "<prefix><parameter>", then the parameters from the
// set's first byte. The daemon reads the night ("N_") set first.
constexpr Field kSets[] = {
    Prefix("N_", 0),
    Prefix("W_", 64),
    // bytes 0..7 of a set
    U8("TargetLp", 0),
    U8("TargetSp", 1),
    U8("ColorSatMag", 2),
    U8("ColorSatRed", 3),
    U8("ColorSatYel", 4),
    U8("ColorSatGre", 5),
    U8("ColorSatCya", 6),
    U8("ColorSatBlu", 7),
    // bytes 8..63: eight curves of seven points each
    U8("BrightnessValue", 8),
    U8("BrightnessBrightStart", 9),
    U8("BrightnessBrightEnd", 10),
    U8("BrightnessDarkStart", 11),
    U8("BrightnessDarkEnd", 12),
    U8("BrightnessBrightValue", 13),
    U8("BrightnessDarkValue", 14),
    U8("ContrastValue", 15),
    U8("ContrastBrightStart", 16),
    U8("ContrastBrightEnd", 17),
    U8("ContrastDarkStart", 18),
    U8("ContrastDarkEnd", 19),
    U8("ContrastBrightValue", 20),
    U8("ContrastDarkValue", 21),
    U8("SharpnessValue", 22),
    U8("SharpnessBrightStart", 23),
    U8("SharpnessBrightEnd", 24),
    U8("SharpnessDarkStart", 25),
    U8("SharpnessDarkEnd", 26),
    U8("SharpnessBrightValue", 27),
    U8("SharpnessDarkValue", 28),
    U8("DnrValue", 29),
    U8("DnrBrightStart", 30),
    U8("DnrBrightEnd", 31),
    U8("DnrDarkStart", 32),
    U8("DnrDarkEnd", 33),
    U8("DnrBrightValue", 34),
    U8("DnrDarkValue", 35),
    U8("ColorGainCbValue", 36),
    U8("ColorGainCbBrightStart", 37),
    U8("ColorGainCbBrightEnd", 38),
    U8("ColorGainCbDarkStart", 39),
    U8("ColorGainCbDarkEnd", 40),
    U8("ColorGainCbBrightValue", 41),
    U8("ColorGainCbDarkValue", 42),
    U8("ColorGainCrValue", 43),
    U8("ColorGainCrBrightStart", 44),
    U8("ColorGainCrBrightEnd", 45),
    U8("ColorGainCrDarkStart", 46),
    U8("ColorGainCrDarkEnd", 47),
    U8("ColorGainCrBrightValue", 48),
    U8("ColorGainCrDarkValue", 49),
    U8("GainNegValue", 50),
    U8("GainNegBrightStart", 51),
    U8("GainNegBrightEnd", 52),
    U8("GainNegDarkStart", 53),
    U8("GainNegDarkEnd", 54),
    U8("GainNegBrightValue", 55),
    U8("GainNegDarkValue", 56),
    U8("GainPosValue", 57),
    U8("GainPosBrightStart", 58),
    U8("GainPosBrightEnd", 59),
    U8("GainPosDarkStart", 60),
    U8("GainPosDarkEnd", 61),
    U8("GainPosBrightValue", 62),
    U8("GainPosDarkValue", 63),
};
constexpr int kSetCount = 2;

// Bytes 128..152, after the two sets.
constexpr Field kSingles[] = {
    U8("AecMode", 128),
    U8("AgcMaxAGainLpHigh", 129),
    U8("AgcMaxAGainSpHigh", 130),
    U8("AgcMaxDGainLpHigh", 131),
    U8("AgcMaxDGainSpHigh", 132),
    U8("WbOffsetRLp", 133),
    U8("WbOffsetBLp", 134),
    U8("WbOffsetRSp", 135),
    U8("WbOffsetBSp", 136),
    U8("ModeMirrorFlip", 137),
    U8("ModeSensorInfo", 138),
    U8("OsdValueDayNightMode", 139),
    U8("OsdValueAutoDayNight", 140),
    U8("OsdValueAutoNightDay", 141),
    U8("OsdValueAutoDwellTime", 142),
    U8("OsdValueCdsDayNight", 143),
    U8("OsdValueCdsNightDay", 144),
    U8("OsdValueCdsDwellTime", 145),
    U8("OsdValueCdsInputLevel", 146),
    U8("AecEnableLp", 147),
    U8("AecEnableSp", 148),
    U8("AgcEnableLp", 149),
    U8("AgcEnableSp", 150),
    U8("DNControl", 151),
    U8("ModeShutterSpeed", 152),
};

constexpr Block kLayout[] = {Product(kSets, kSetCount), Fields(kSingles)};

}  // namespace

constexpr SettingsFamily kTwoSetImageTuning = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<153>(kLayout),
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kTwoSetImageTuningNotes = {"Two-set image tuning"};
