// PTZ camera modules with wiper, heater and IR illuminator control:
// retry read. Preset, group, pattern and privacy editing is gated
// on their set ids; the group steps' local flags are checkboxes; every
// one-shot id is idle at 255. The camera title is copied only when posted,
// bounded to its field.
#include "families/ptz_blocks.h"
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

constexpr uint32_t kPrivacyLimit = 8;

constexpr Field kCamera[] = {
    // 0: not set here
    U8("FocusMode", 1),
    U16("FocusPosition", 2),
    U16("FocusNearLimit", 4),
    U8("AfMode", 6),
    U8("AfSensitivity", 7),
    U8("AfMovement", 8),
    U8("AfInterval", 9),
    U8("DZoomMode", 10),
    U8("WbMode", 11),
    U8("GainR", 12),
    U8("GainB", 13),
    U8("ExposureMode", 14),
    U8("Brightness", 15),
    U8("ShutterSpeed", 16),
    U8("SlowShutterMode", 17),
    U8("IrisMode", 18),
    U8("IrisF_No", 19),
    U8("GainPosition", 20),
    U8("GainLimit", 21),
    U8("ExposureCompMode", 22),
    U8("ExposureCompValue", 23),
    U8("AeResponse", 24),
    U8("BacklightComp", 25),
    U8("WdrMode", 26),
    U8("StabilizerMode", 27),
    U8("DayNightMode", 28),
    U8("DayNightDwell", 29),
    U8("ApertureGain", 30),
    U8("ColorGain", 31),
    U8("ColorHue", 32),
    U8("Gamma", 33),
    U8("NoiseReduction", 34),
    U8("Mirror", 35),
    U8("Flip", 36),
    U8("Freeze", 37),
    U8("Defog", 38),
    U8("CameraIdDispMode", 39),
    U8("PtzPositionDispMode", 40),
    U8("PresetNameDispMode", 41),
    U8("SeqStatusDispMode", 42),
    U8("CamTitleDispMode", 43),
    U8("CamTitleDispX", 44),
    U8("CamTitleDispY", 45),
    U8("CamTitleLength", 46),
    U8("CamTitleBlink", 47),
    U8("CamTitleColor", 48),
    Text("CamTitleString", 49, 16),  // never runs into CamCtlPage
    U8("CamCtlPage", 65),
    // 66..97: not set here
};

// One-shot ids: any of them other than 255 is a pending command. The home
// position keys and GrpClearId are not among them.
using Presets = PtzPresetBlock<98, kCommand>;
// 102..491: not set here

using Groups = PtzGroupBlock<492, kCommand>;
constexpr Field kGroupCommands[] = {
    U8("GrpClearId", 559, kAction), U8("GrpRunId", 560, kCommand), U8("GrpStopId", 561, kCommand),
    // 562..565: not set here
};

using Patterns = PtzPatternBlock<566, kCommand>;

constexpr Field kHomeAndAutoRun[] = {
    U8("SetHomePosition", 573, kAction),
    U8("GoToHomePosition", 574, kAction),
    U8("ClearHomePosition", 575, kAction),
    U8("AutoRunMode", 576),
    U8("AutoRunExecTime", 577),
    U8("AutoRunTimeUnit", 578),
    U8("AutoRunPresetNo", 579),
    U8("AutoRunGroupNo", 580),
    U8("AutoRunPatternNo", 581),
    U16("AutoRunTiltAngle", 582),
    U8("AutoRunTiltSpeed", 584),
    // 585..633: not set here
};

constexpr Field kPrivacyViewId = U8("PrivacyViewId", 634, kCommand);
constexpr Field kPrivacySetId = U8("PrivacySetId", 635);
constexpr Field kPrivacySlot[] = {
    U8("PrivacyMode", 636),
    U8("PrivacyType", 637),
    U16("PrivacyWidth", 638),
    U16("PrivacyHeight", 640),
};

using AlarmInputs = PtzAlarmInputBlock<642>;
// Two alarm output settings of 4 bytes.
using AlarmOutputs = PtzAlarmOffBlock<674, 2>;
// 682: not set here
constexpr Field kAlarmClear = U8("AlmClear", 683, kAction);

constexpr Field kAuxiliaryDevices[] = {
    U8("WiperMode", 684),
    U8("WiperSpeed", 685),
    U8("IrIlluminatorId", 686),
    U8("AutoIrIlluminator", 687),
    U8("ManualIrIlluminatorMode", 688),
    // 689: not set here
    U16("ManualIrIlluminatorTsData", 690),
    U16("ManualIrIlluminatorBlData", 692),
    U16("ManualIrIlluminatorAgData", 694),
    U8("AutoFanMode", 696),
    U8("ManualFanData", 697),
    U8("AutoHeaterMode", 698),
    U8("ManualHeaterData", 699),
    U8("AutoGlassHeaterMode", 700),
    U8("ManualGlassHeaterData", 701),
    U16("CamIfTemperature", 702),
    U16("MotionTemperature", 704),
    U8("SetIrType", 706),
    U8("SetIrModel", 707),
    U8("SetIrBaudrate", 708),
    U8("SetIrProtocol", 709),
    U8("SetExt4xxSystemId", 710),
    U8("SetExt4xxBaudrate", 711),
    U8("SetExt4xxStopBit", 712),
    U8("SetExt4xxParity", 713),
    U8("SetExt4xxDuplex", 714),
    U8("SetExt4xxProtocol", 715),
    // 716..717: not set here
};

// The blocks each set id opens.
constexpr Block kPresetEdit[] = {Fields(Presets::kSetMode)};
constexpr Block kGroupEdit[] = {Fields(Groups::kSetEnable), Steps(Groups::kSteps)};
constexpr Block kPatternEdit[] = {Fields(Patterns::kSetMode)};
constexpr Block kPrivacyEdit[] = {Fields(kPrivacySlot)};

constexpr Block kLayout[] = {
    Fields(kCamera),
    Fields(Presets::kView),
    Gate(Presets::kSetId, Presets::kPresets, kPresetEdit),
    Fields(Presets::kClear),
    Fields(Groups::kView),
    Gate(Groups::kSetId, Groups::kGroups, kGroupEdit),
    Fields(kGroupCommands),
    Fields(Patterns::kActions),
    Gate(Patterns::kSetId, Patterns::kPatterns, kPatternEdit),
    Fields(kHomeAndAutoRun),
    Fields(kPrivacyViewId),
    Gate(kPrivacySetId, kPrivacyLimit, kPrivacyEdit),
    Steps(AlarmInputs::kArrays),
    Steps(AlarmOutputs::kArrays),
    Fields(kAlarmClear),
    Fields(kAuxiliaryDevices),
};

}  // namespace

constexpr SettingsFamily kPtzWiperHeaterModule = {
    .readPolicy = ReadPolicy::Retry,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<718>(kLayout),
    .result = kUnlessPending,
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kPtzWiperHeaterModuleNotes = {"PTZ wiper and heater module"};
