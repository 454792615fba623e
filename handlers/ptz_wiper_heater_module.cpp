// PTZ camera modules with wiper, heater and IR illuminator control: 718-byte
// record, retry read. Preset, group, pattern and privacy editing is gated
// on their set ids; the group steps' local flags are checkboxes; every
// one-shot id is idle at 255. The camera title is copied only when posted,
// bounded to its field.
#include "handlers/ptz_step_arrays.h"
#include "handlers/settings_frame.h"
#include "handlers/settings_handlers.h"

namespace {

constexpr uint32_t kRecordSize = 718;

constexpr uint32_t kPresetLimit = 32;
constexpr uint32_t kGroupLimit = 6;
constexpr uint32_t kPatternLimit = 4;
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

constexpr Field kPresetViewId = U8("PresetViewId", 98);
constexpr uint32_t kPresetSetId = 99;
constexpr Field kPresetSetMode = U8("PresetSetMode", 101);
constexpr Field kPresetClearId = U8("PresetClearId", 100);
// 102..491: not set here

constexpr Field kGroupViewId = U8("GrpViewId", 492);
constexpr uint32_t kGroupSetId = 493;
constexpr Field kGroupSetEnable = U8("GrpSetEnable", 494);
// Parallel arrays of 16 steps, looked up in this order per step, then the
// step's local flag.
constexpr IndexedField kGroupSteps[] = {
    {"GrpSetPrsId%d", 0, 16, 511, 1, FieldType::U8, nullptr},
    {"GrpSetSpeed%d", 0, 16, 527, 1, FieldType::U8, nullptr},
    {"GrpSetDwell%d", 0, 16, 543, 1, FieldType::U8, nullptr},
};
constexpr IndexedField kGroupLocalFlag = {"GrpSetLocalEn%d", 0, 16, 495, 1, FieldType::U8, nullptr};
constexpr Field kGroupCommands[] = {
    U8("GrpClearId", 559),
    U8("GrpRunId", 560),
    U8("GrpStopId", 561),
    // 562..565: not set here
};

constexpr Field kPatternActions[] = {
    U8("PatternViewId", 566),
    U8("PatternStartId", 567),
    U8("PatternEndId", 568),
    U8("PatternRunId", 569),
    U8("PatternStopId", 570),
};
constexpr uint32_t kPatternSetId = 571;
constexpr Field kPatternSetMode = U8("PatternSetMode", 572);

constexpr Field kHomeAndAutoRun[] = {
    U8("SetHomePosition", 573),
    U8("GoToHomePosition", 574),
    U8("ClearHomePosition", 575),
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

constexpr Field kPrivacyViewId = U8("PrivacyViewId", 634);
constexpr uint32_t kPrivacySetId = 635;
constexpr Field kPrivacySlot[] = {
    U8("PrivacyMode", 636),
    U8("PrivacyType", 637),
    U16("PrivacyWidth", 638),
    U16("PrivacyHeight", 640),
};

constexpr AlarmInputArrays kAlarmInputs = AlarmInputsAt(642);
// Two alarm output settings of 4 bytes.
constexpr AlarmOffArrays kAlarmOutputs = AlarmOffAt(674, 2);
// 682: not set here
constexpr Field kAlarmClear = U8("AlmClear", 683);

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

static_assert(FitsIn(kCamera, kRecordSize) && FitsIn(kGroupSteps, kRecordSize) &&
              FitsIn(kGroupCommands, kRecordSize) && FitsIn(kPatternActions, kRecordSize) &&
              FitsIn(kHomeAndAutoRun, kRecordSize) && FitsIn(kPrivacySlot, kRecordSize) &&
              FitsIn(kAlarmInputs.arrays, kRecordSize) && FitsIn(kAlarmOutputs.arrays, kRecordSize) &&
              FitsIn(kAuxiliaryDevices, kRecordSize));

// One-shot ids: any of them other than 255 is a pending command. The home
// position keys and GrpClearId are not among them.
constexpr uint32_t kOneShots[] = {
    634,                      // privacy view
    98, 100,                  // preset view, clear
    566, 567, 568, 569, 570,  // pattern view, start, end, run, stop
    492, 560, 561,            // group view, run, stop
};

void Merge(const FormValue& form, const RecordView& record) {
  MergeFields(form, record, kCamera);

  MergeField(form, record, kPresetViewId);
  if (SetIdGateOpen(form, record, "PresetSetId", kPresetSetId, kPresetLimit))
    MergeField(form, record, kPresetSetMode);
  MergeField(form, record, kPresetClearId);

  MergeField(form, record, kGroupViewId);
  if (SetIdGateOpen(form, record, "GrpSetId", kGroupSetId, kGroupLimit)) {
    MergeField(form, record, kGroupSetEnable);
    MergeGroupSteps(form, record, kGroupSteps, kGroupLocalFlag);
  }
  MergeFields(form, record, kGroupCommands);

  MergeFields(form, record, kPatternActions);
  if (SetIdGateOpen(form, record, "PatternSetId", kPatternSetId, kPatternLimit))
    MergeField(form, record, kPatternSetMode);

  MergeFields(form, record, kHomeAndAutoRun);

  MergeField(form, record, kPrivacyViewId);
  if (SetIdGateOpen(form, record, "PrivacySetId", kPrivacySetId, kPrivacyLimit))
    MergeFields(form, record, kPrivacySlot);

  MergeIndexedFieldsByStep(form, record, kAlarmInputs.arrays);
  MergeIndexedFieldsByStep(form, record, kAlarmOutputs.arrays);
  MergeField(form, record, kAlarmClear);

  MergeFields(form, record, kAuxiliaryDevices);
}

int Result(const RecordView& record) {
  return OneShotsIdle(record, kOneShots) ? 1 : 0;
}

constexpr SettingsFamily kPtzWiperHeaterModule = {
    .recordSize = kRecordSize,
    .readPolicy = ReadPolicy::Retry,
    .writeFailure = {-2, false},
    .merge = Merge,
    .result = Result,
};

}  // namespace

int PtzWiperHeaterModuleSettings(char* errorBuffer, const char* recordPath) {
  return RunSettingsFrame<kPtzWiperHeaterModule>(errorBuffer, recordPath);
}
