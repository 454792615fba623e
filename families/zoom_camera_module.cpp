// Autofocus zoom camera modules: retry read.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

// In offset order; every key has its own field, so the order of lookup
// does not change the result.
constexpr Field kFields[] = {
    // 0..3: not set here
    U8("VideoOutMode", 4),
    U8("AutoFocus", 5),
    U16("FocusPosition", 6),
    U16("FocusNearLimit", 8),
    U8("AfSensitivity", 10),
    U8("AfMode", 11),
    U8("AfInterval", 12),
    U8("AfMovement", 13),
    U8("AwbMode", 14),
    U8("WbGainR", 15),
    U8("WbGainB", 16),
    U8("ExposureMode", 17),
    U8("SlowShutter", 18),
    U8("ShutterPosition", 19),
    U8("IrisPosition", 20),
    U8("GainPosition", 21),
    U8("GainLimit", 22),
    U8("BrightPosition", 23),
    U8("ExpComp", 24),
    U8("LightCompMode", 25),
    U8("AeResponse", 26),
    U8("Wdr", 27),
    U8("Aperture", 28),
    U8("NoiseReduction", 29),
    U8("MillerFlip", 30),
    U8("InfraredMode", 31),
    U8("AutoDayNight", 32),
    U8("DayToNight", 33),
    U8("NightToDay", 34),
    U8("ColorGain", 35),
    U8("ColorHue", 36),
    U8("ZoomSpeed", 37),
    U8("DigitalZoom", 38),
    U8("OsdEnable", 39),
    U8("Defog", 40),
    U8("Hlc", 41),
    U8("Stabilizer", 42),
    U8("RegisterNo", 43),
    U8("RegisterValue", 44),
    U8("Defog_2", 45),
    U16("NoiseReduction2D", 46, kLowByte),  // halfwords that only ever get 8 bits
    U16("NoiseReduction3D", 48, kLowByte),
    U8("LensInitCmd", 50, kRequestFlag),  // pending (not 0): the bare answer
    U8("MaxDigitalZoom", 51),
    U8("DayNightMode", 52),
    U8("DayNightThreshold", 53),
    U8("DayNightGap", 54),
    U8("MaxAutoGain", 55),
    U8("Gamma", 56),
    U8("WdrWeight", 57),
    U8("DispZoom", 58),
    U8("DispFocus", 59),
    U8("LensType", 60),
    U8("DefogMode", 61),
    U8("DefogWeight", 62),
    U8("DisplayId", 63),
    U8("DisplayTitle", 64),
    U8("IrLedControl", 65),
    U8("OsdKey", 66, kRequestFlag),
    U8("IrLedMode", 67),
    U8("DispDZoom", 68),
    U8("ZoomOutStart", 69),
    U8("ZoomInStop", 70),
    U8("AutoZoomMode", 71),
    U8("AutoZoomIn", 72),
    U8("AutoZoomOut", 73),
    U8("AutoZoomDwell", 74),
    U8("FactoryReset", 75, kAction),
    U8("OrvoDualDo", 76),
    U8("BrightNight", 77),
    U8("ColorGainNight", 78),
    U8("DayNightGap_2", 79),
    U8("DayNightThreshold_2", 80),
    PaddedText("OsdLang", 81, 3),
    // 84: not set here
    U8("ScheduleDayNight", 85),
    U8("WinterSunriseHours", 86),
    U8("WinterSunriseMinute", 87),
    U8("WinterSunsetHours", 88),
    U8("WinterSunsetMinute", 89),
    U8("SpringSunriseHours", 90),
    U8("SpringSunriseMinute", 91),
    U8("SpringSunsetHours", 92),
    U8("SpringSunsetMinute", 93),
    U8("SummerSunriseHours", 94),
    U8("SummerSunriseMinute", 95),
    U8("SummerSunsetHours", 96),
    U8("SummerSunsetMinute", 97),
    U8("AutumnSunriseHours", 98),
    U8("AutumnSunriseMinute", 99),
    U8("AutumnSunsetHours", 100),
    U8("AutumnSunsetMinute", 101),
    // 102..107: not set here
};

constexpr Block kLayout[] = {Fields(kFields)};

}  // namespace

constexpr SettingsFamily kZoomCameraModule = {
    .readPolicy = ReadPolicy::Retry,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<108>(kLayout),
    .result = kUnlessPending,
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kZoomCameraModuleNotes = {"Zoom camera module"};
