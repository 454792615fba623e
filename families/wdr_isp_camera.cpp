// Wide-dynamic-range ISP cameras: 91 one-byte settings at offsets 0..90 in
// key order, continue read. The nine processing stages share one set of
// seven parameters, so their keys are built from the stage and parameter
// names rather than listed.
#include <stdio.h>

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

// 8..70: nine stages of seven bytes, key = stage name + parameter name.
constexpr uint32_t kFirstStage = 8;
constexpr const char* kStages[] = {"WdrLevel", "Nlc", "Plc", "Dpc", "Nr", "Shap", "Contrast", "Bright", "Color"};
constexpr const char* kStageParameters[] = {"Mode", "Ref", "Start", "End", "Sv", "Ev", "Init"};
constexpr uint32_t kStageSize = sizeof kStageParameters / sizeof kStageParameters[0];
constexpr uint32_t kStageCount = sizeof kStages / sizeof kStages[0];

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

constexpr uint32_t kRecordSize = 91;
static_assert(kExposure[7].offset + 1 == kFirstStage);
static_assert(kFirstStage + kStageCount * kStageSize == kColourAndOutput[0].offset);
static_assert(kColourAndOutput[19].offset + 1 == kRecordSize);

// The stages, keys built from their names.
void MergeStages(const FormValue& form, const RecordView& record) {
  uint32_t offset = kFirstStage;
  for (const char* stage : kStages) {
    for (const char* parameter : kStageParameters) {
      char key[32];
      snprintf(key, sizeof key, "%s%s", stage, parameter);
      MergeField(form, record, U8(key, offset++));
    }
  }
}

constexpr Block kLayout[] = {Fields(kExposure), Own(MergeStages), Fields(kColourAndOutput)};

}  // namespace

constexpr SettingsFamily kWdrIspCamera = {
    .recordSize = kRecordSize,
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<kRecordSize>(kLayout),
};
