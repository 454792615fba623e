// PTZ camera modules with alarm inputs and preset groups: 788-byte record,
// retry read. Each editing group is gated on its set id; one-shot ids are
// idle at or above their kind's limit. The camera title is cut to 15
// characters and cleared when not posted; the group steps' local flags are
// checkboxes, set when posted and cleared when not.
#include <string.h>

#include "handlers/ptz_step_arrays.h"
#include "handlers/settings_frame.h"
#include "handlers/settings_handlers.h"

namespace {

constexpr uint32_t kRecordSize = 788;

// Kinds: their set-id gate and the limit at which their one-shot ids are idle.
constexpr uint32_t kPrivacyLimit = 8;
constexpr uint32_t kPresetLimit = 32;
constexpr uint32_t kScanLimit = 8;
constexpr uint32_t kPatternLimit = 4;
constexpr uint32_t kGroupLimit = 6;

constexpr Field kImage[] = {
    U8("WbMode", 0),
    U8("GainR", 1),
    U8("GainB", 2),
    U8("Brightness", 3),
    U8("ShutterMode", 4),
    U8("ShutterSpeed", 5),
    U8("SensUpMode", 6),
    U8("SensUpLimit", 7),
    U8("IrisMode", 8),
    U8("IrisF_No", 9),
    U8("AgcMode", 10),
    U8("AgcVal", 11),
    U8("Ssnr3Mode", 12),
    U8("BlcMode", 13),
    U8("BlcBoxDisp", 14),
    U8("BlcLevel", 15),
    U8("BlcLeft", 16),
    U8("BlcRight", 17),
    U8("BlcTop", 18),
    U8("BlcBottom", 19),
    U8("HlcLevel", 20),
    U8("HlcMaskTone", 21),
    U8("HlcMaskColor", 22),
    U8("HlcLimit", 23),
    U8("HlcLeft", 24),
    U8("HlcRight", 25),
    U8("HlcTop", 26),
    U8("HlcBottom", 27),
    U8("WdrLimit", 28),
    U8("WdrLevel", 29),
    U8("WdrAntiRoll", 30),
    U8("WdrMode", 31),
    U8("StabilizerMode", 32),
    U8("DayNightMode", 33),
    U8("DayNightDur", 34),
    U8("DayNightDwell", 35),
    U8("BWBurst", 36),
    U8("ColorBurstLv", 37),
    U8("SharpMode", 38),
    U8("SharpLevel", 39),
    U8("ColorLevel", 40),
    U8("SsdrMode", 41),
    U8("SsdrLevel", 42),
    U8("HvReverse", 43),
    U8("CamCtlPage", 44),
    U8("FocusMode", 45),
    U8("ZoomTrackMode", 46),
    U8("ZoomTrackSpeed", 47),
    U8("DZoomMode", 48),
    U8("DZoomLimit", 49),
    U8("LensInitMode", 50),
    U8("LensInitDur", 51),
    U8("VideoOutFormat", 52),
    U8("CamIdDispMode", 53),
    U8("CamIdDispX", 54),
    U8("CamIdDispY", 55),
    U8("PtzPosDispMode", 56),
    U8("PtzPosDispX", 57),
    U8("PtzPosDispY", 58),
    U8("PresetNameDispMode", 59),
    U8("SeqStatusDispMode", 60),
    U8("CamTitleDispMode", 61),
    U8("CamTitleDispX", 62),
    U8("CamTitleDispY", 63),
};

constexpr Field kCamTitle = Text("CamTitleString", 64, 16);
// 80..151: not set here

constexpr Field kAutoRun[] = {
    U8("AutoRunMode", 733),
    U8("AutoRunExecTime", 734),
    U8("AutoRunTimeUnit", 735),
    U8("AutoRunPresetNo", 736),
    U8("AutoRunGroupNo", 737),
    U8("AutoRunPatternNo", 738),
    // 739: not set here
    U16("AutoRunTiltAngle", 740),
    U8("AutoRunTiltSpeed", 742),
    // 743: not set here
};

constexpr Field kPrivacyViewId = U8("PrivacyViewId", 152);
constexpr uint32_t kPrivacySetId = 155;
constexpr Field kPrivacySlot[] = {
    U8("PrivacyMode", 156),
    // 157: not set here
    U16("PrivacyX0", 158),
    U16("PrivacyY0", 160),
    U16("PrivacyX1", 162),
    U16("PrivacyY1", 164),
    U16("PrivacyX2", 166),
    U16("PrivacyY2", 168),
    U16("PrivacyX3", 170),
    U16("PrivacyY3", 172),
    U16("PrivacyW", 174),
    U16("PrivacyH", 176),
    // 178..209: not set here
};
constexpr Field kPrivacyStartEnd[] = {
    U8("PrivacyStartId", 153),
    U8("PrivacyEndId", 154),
};

constexpr Field kPresetViewId = U8("PresetViewId", 210);
constexpr uint32_t kPresetSetId = 211;
constexpr Field kPresetSetMode = U8("PresetSetMode", 213);
constexpr Field kPresetClearId = U8("PresetClearId", 212);
// 214..253: not set here

constexpr Field kScanActions[] = {
    U8("ScanViewId", 254),
    U8("ScanRunId", 255),
    U8("ScanStopId", 256),
};
constexpr uint32_t kScanSetId = 257;
constexpr Field kScanSlot[] = {
    U8("ScanSetMode", 258),
    U8("ScanSetSpeed", 259),
    U8("ScanSetDwell", 260),
    U8("ScanSetStartPreset", 261),
    U8("ScanSetEndPreset", 262),
    // 263..266: not set here
};

constexpr Field kPatternActions[] = {
    U8("PatternViewId", 267),
    U8("PatternStartId", 268),
    U8("PatternEndId", 269),
    U8("PatternRunId", 270),
    U8("PatternStopId", 271),
};
constexpr uint32_t kPatternSetId = 272;
constexpr Field kPatternSetMode = U8("PatternSetMode", 273);
// 274..663: not set here

constexpr Field kGroupViewId = U8("GrpViewId", 664);
constexpr uint32_t kGroupSetId = 665;
constexpr Field kGroupSetEnable = U8("GrpSetEnable", 666);
// Parallel arrays of 16 steps, looked up in this order per step, then the
// step's local flag.
constexpr IndexedField kGroupSteps[] = {
    {"GrpSetPrsId%d", 0, 16, 683, 1, FieldType::U8, nullptr},
    {"GrpSetSpeed%d", 0, 16, 699, 1, FieldType::U8, nullptr},
    {"GrpSetDwell%d", 0, 16, 715, 1, FieldType::U8, nullptr},
};
constexpr IndexedField kGroupLocalFlag = {"GrpSetLocalEn%d", 0, 16, 667, 1, FieldType::U8, nullptr};
constexpr Field kGroupRunStop[] = {
    U8("GrpRunId", 731),
    U8("GrpStopId", 732),
};

constexpr AlarmInputArrays kAlarmInputs = AlarmInputsAt(744);
// The alarm-off setting exists once, as index 0.
constexpr AlarmOffArrays kAlarmOff = AlarmOffAt(776, 1);
// 780..784: not set here
constexpr Field kAlarmClear = U8("AlmClear", 785);
// 786..787: not set here

static_assert(FitsIn(kImage, kRecordSize) && FitsIn(kAutoRun, kRecordSize) &&
              FitsIn(kPrivacySlot, kRecordSize) && FitsIn(kScanSlot, kRecordSize) &&
              FitsIn(kGroupSteps, kRecordSize) && FitsIn(kAlarmInputs.arrays, kRecordSize) &&
              FitsIn(kAlarmOff.arrays, kRecordSize) && kAlarmClear.offset < kRecordSize);

// One-shot ids: a command is pending while one is below its kind's limit.
struct OneShot {
  uint32_t offset;
  uint32_t idleFrom;
};
constexpr OneShot kOneShots[] = {
    {152, kPrivacyLimit}, {153, kPrivacyLimit}, {154, kPrivacyLimit},            // privacy view, start, end
    {210, kPresetLimit},  {212, kPresetLimit},                                   // preset view, clear
    {254, kScanLimit},    {255, kScanLimit},    {256, kScanLimit},               // scan view, run, stop
    {267, kPatternLimit}, {268, kPatternLimit}, {269, kPatternLimit},            // pattern view, start, end,
    {270, kPatternLimit}, {271, kPatternLimit},                                  // run, stop
    {664, kGroupLimit},   {731, kGroupLimit},   {732, kGroupLimit},              // group view, run, stop
};

// The title is cut to the field; an absent or empty title clears it.
void MergeCamTitle(const FormValue& form, const RecordView& record) {
  MergeField(form, record, kCamTitle);
  if (form.Empty()) memset(record.bytes + kCamTitle.offset, 0, kCamTitle.textSize);
}

void Merge(const FormValue& form, const RecordView& record) {
  MergeFields(form, record, kImage);
  MergeCamTitle(form, record);
  MergeFields(form, record, kAutoRun);

  MergeField(form, record, kPrivacyViewId);
  if (SetIdGateOpen(form, record, "PrivacySetId", kPrivacySetId, kPrivacyLimit))
    MergeFields(form, record, kPrivacySlot);
  MergeFields(form, record, kPrivacyStartEnd);

  MergeField(form, record, kPresetViewId);
  if (SetIdGateOpen(form, record, "PresetSetId", kPresetSetId, kPresetLimit))
    MergeField(form, record, kPresetSetMode);
  MergeField(form, record, kPresetClearId);

  MergeFields(form, record, kScanActions);
  if (SetIdGateOpen(form, record, "ScanSetId", kScanSetId, kScanLimit)) MergeFields(form, record, kScanSlot);

  MergeFields(form, record, kPatternActions);
  if (SetIdGateOpen(form, record, "PatternSetId", kPatternSetId, kPatternLimit))
    MergeField(form, record, kPatternSetMode);

  MergeField(form, record, kGroupViewId);
  if (SetIdGateOpen(form, record, "GrpSetId", kGroupSetId, kGroupLimit)) {
    MergeField(form, record, kGroupSetEnable);
    MergeGroupSteps(form, record, kGroupSteps, kGroupLocalFlag);
  }
  MergeFields(form, record, kGroupRunStop);

  MergeIndexedFieldsByStep(form, record, kAlarmInputs.arrays);
  MergeIndexedFieldsByStep(form, record, kAlarmOff.arrays);
  MergeField(form, record, kAlarmClear);
}

int Result(const RecordView& record) {
  for (const OneShot& id : kOneShots)
    if (record.GetU8(id.offset) < id.idleFrom) return 0;
  return 1;
}

constexpr SettingsFamily kPtzAlarmInputModule = {
    .recordSize = kRecordSize,
    .readPolicy = ReadPolicy::Retry,
    .writeFailure = {-2, false},
    .merge = Merge,
    .result = Result,
};

}  // namespace

int PtzAlarmInputModuleSettings(char* errorBuffer, const char* recordPath) {
  return RunSettingsFrame<kPtzAlarmInputModule>(errorBuffer, recordPath);
}
