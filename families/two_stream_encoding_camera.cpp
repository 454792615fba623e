// Two-stream encoding camera modules: continue read,
// encoder and OSD settings per stream with a 20-byte OSD text each.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

// In offset order, which is also the lookup order.
constexpr Field kFields[] = {
    // 0..3: not set here
    U32("PowerFrequency", 4),
    U8("CamCtlPage", 8),
    // 9..11: not set here
    U32("Brightness", 12),
    U32("Contrast", 16),
    U32("Sharpness", 20),
    U32("Saturation", 24),
    U8("BackLightCompensation", 28),
    U8("BackLightLevel", 29),
    U8("ImageSensorMode", 30),
    U8("HistogramEnable", 31),
    U8("WhitebalanceMode", 32),
    U8("NDShutterMode", 33),
    // 34..35: not set here
    U32("DeNoise", 36),
    U32("Exposure", 40),
    U8("DynamicRangeMode", 44),
    U8("DynamicRangeWDRLevel", 45),
    U8("DynamicRangeDefogLevel", 46),
    // 47: not set here
    U32("SNFLevel", 48),
    U32("TNFLevel", 52),
    U8("ExposureMode", 56),
    U8("CaptureMaxShutterTime", 57),
    U8("CaptureMinShutterTime", 58),
    U8("CaptureMaxGain", 59),
    U8("AperatureMaxST", 60),  // the web page spells these four so
    U8("AperatureMinST", 61),
    U8("AperatureMaxGain", 62),
    U8("AperatureMaxIris", 63),
    U8("AperatureMinIris", 64),
    U8("QualityMaxGain", 65),
    U8("ManualShutterTime", 66),
    U8("ManualGain", 67),
    U8("Mirror", 68),
    // Encoder parameters of both streams first ...
    U8("S1_ForceIFrame", 69),
    U8("S1_QPInitValue", 70),
    U8("S1_QPMinValue", 71),
    U8("S1_QPMaxValue", 72),
    U8("S1_EncoderPreset", 73),
    U8("S1_PacketSize", 74),
    U8("S2_ForceIFrame", 75),
    U8("S2_QPInitValue", 76),
    U8("S2_QPMinValue", 77),
    U8("S2_QPMaxValue", 78),
    U8("S2_EncoderPreset", 79),
    U8("S2_PacketSize", 80),
    // 81..82: not set here
    // ... then a 27-byte OSD block per stream, its text in the middle.
    U8("S1_OSDDateEnable", 83),
    U8("S1_OSDTimeEnable", 84),
    U8("S1_OSDLogoEnable", 85),
    U8("S1_OSDLogoPosition", 86),
    U8("S1_OSDTextEnable", 87),
    Text("S1_OSDTextString", 88, 20),
    U8("S1_OSDTextPosition", 108),
    U8("S1_OSDDetailInfoEnable", 109),
    U8("S2_OSDDateEnable", 110),
    U8("S2_OSDTimeEnable", 111),
    U8("S2_OSDLogoEnable", 112),
    U8("S2_OSDLogoPosition", 113),
    U8("S2_OSDTextEnable", 114),
    Text("S2_OSDTextString", 115, 20),
    U8("S2_OSDTextPosition", 135),
    U8("S2_OSDDetailInfoEnable", 136),
    U8("ZF_ZoomSpeed", 137),
    U8("ZF_FocusSpeed", 138),
    U8("ZF_FocusType", 139),
    U8("ZF_AFDurationTime", 140),
    U8("ZF_AFThreshold", 141),
    U8("FD_Enable", 142),
    // 143: not set here
    U32("FD_Region_X", 144),
    U32("FD_Region_Y", 148),
    U32("FD_Region_W", 152),
    U32("FD_Region_H", 156),
    U8("FD_ConfidenceLevel", 160),
    U8("FD_Direction", 161),
    U8("PM_Enable", 162),
    U8("PM_Option", 163),
    // 164..251: not set here
};

constexpr Block kLayout[] = {Fields(kFields)};

}  // namespace

constexpr SettingsFamily kTwoStreamEncodingCamera = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-1, false},
    .layout = CheckedLayout<252>(kLayout),
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kTwoStreamEncodingCameraNotes = {"Two-stream encoding camera"};
