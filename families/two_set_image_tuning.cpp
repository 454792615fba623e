// Image-signal-processor tuning modules: 153-byte record of single bytes,
// continue read. Two parallel 64-byte parameter sets, told apart by their
// key prefix, are followed by 25 single parameters. The keys of a set are
// built from its prefix, the parameter and, for a curve, the curve point.
#include <stdio.h>

#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

constexpr uint32_t kSetSize = 64;

// The day ("W_") set is looked up first but lies second in the file; the
// daemon reads the night ("N_") set first.
struct ParameterSet {
  const char* prefix;
  uint32_t offset;
};
constexpr ParameterSet kSets[] = {
    {"W_", 64},
    {"N_", 0},
};

// Bytes 0..7 of a set.
constexpr const char* kSetScalars[] = {
    "TargetLp", "TargetSp", "ColorSatMag", "ColorSatRed",
    "ColorSatYel", "ColorSatGre", "ColorSatCya", "ColorSatBlu",
};

// Bytes 8..63 of a set: eight curves of seven points each.
constexpr const char* kCurves[] = {
    "Brightness", "Contrast", "Sharpness", "Dnr", "ColorGainCb", "ColorGainCr", "GainNeg", "GainPos",
};
constexpr const char* kCurvePoints[] = {
    "Value", "BrightStart", "BrightEnd", "DarkStart", "DarkEnd", "BrightValue", "DarkValue",
};
constexpr uint32_t kCurvesOffset = 8;
constexpr uint32_t kCurveSize = sizeof kCurvePoints / sizeof kCurvePoints[0];

static_assert(sizeof kSetScalars / sizeof kSetScalars[0] == kCurvesOffset);
static_assert(kCurvesOffset + (sizeof kCurves / sizeof kCurves[0]) * kCurveSize == kSetSize);

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

// Longest key: prefix, "ColorGainCb", "BrightValue".
constexpr size_t kKeySize = 40;

void MergeSetByte(const FormValue& form, const RecordView& record, uint32_t offset, const char* prefix,
                  const char* name, const char* point) {
  char key[kKeySize];
  snprintf(key, sizeof key, "%s%s%s", prefix, name, point);
  MergeField(form, record, U8(key, offset));
}

// The two sets, keys built from their names.
void MergeSets(const FormValue& form, const RecordView& record) {
  for (const ParameterSet& set : kSets) {
    uint32_t offset = set.offset;
    for (const char* name : kSetScalars) MergeSetByte(form, record, offset++, set.prefix, name, "");
    for (const char* curve : kCurves) {
      for (const char* point : kCurvePoints) MergeSetByte(form, record, offset++, set.prefix, curve, point);
    }
  }
}

static_assert(2 * kSetSize + sizeof kSingles / sizeof kSingles[0] == 153);

constexpr Block kLayout[] = {Own(MergeSets), Fields(kSingles)};

}  // namespace

constexpr SettingsFamily kTwoSetImageTuning = {
    .recordSize = 153,
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<153>(kLayout),
};
