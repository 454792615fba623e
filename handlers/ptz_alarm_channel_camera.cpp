// PTZ cameras with four alarm channels and a relay: 440-byte record of
// bytes, continue read. Privacy masks, presets and preset groups each have
// a view id and one edit slot, taken only while the kind's set id names an
// object; the slot is never indexed by the set id.
#include "handlers/settings_frame.h"
#include "handlers/settings_handlers.h"

namespace {

constexpr uint32_t kDirectLensInit = 34;
constexpr uint32_t kPrivacyViewId = 57;

constexpr Field kCameraAndHome[] = {
    U8("WbMode", 0),
    U8("WbGainR", 1),
    U8("WbGainB", 2),
    U8("Brightness", 3),
    U8("Sharpness", 4),
    // 5: not set here
    U8("ShutterSpeed", 6),
    U8("AgcMode", 7),
    U8("HvFlip", 8),
    U8("WdrEn", 9),
    U8("WdrLevel", 10),
    U8("BlcMode", 11),
    U8("BlcBoxEn", 12),
    U8("BlcAreaTop", 13),
    U8("BlcAreaBottom", 14),
    U8("BlcAreaLeft", 15),
    U8("BlcAreaRight", 16),
    U8("BlcHlcLevel", 17),
    U8("HlcTone", 18),
    U8("DnrMode", 19),
    U8("DssLevel", 20),
    U8("Stabilize", 21),
    U8("FocusMode", 22),
    U8("ZoomMaxLimit", 23),
    U8("ZoomMagDiplay", 24),
    U8("DayNightMode", 25),
    U8("DayNightDur", 26),
    U8("VideoOutMode", 27),
    U8("CameraID", 28),
    U8("StausID", 29),
    U8("AutoTiltMove", 30),
    U8("ManualPtSpeed", 31),
    U8("AutoRefreshEn", 32),
    U8("AutoRefreshDur", 33),
    U8("DirectLensInit", kDirectLensInit),
    U8("DirectPreset", 35),
    U8("HomeFuncEn", 36),
    U8("HomePresetId", 37),
    U8("ResumeTimeEn", 38),
};

// Channel i's enable and preset; each key has its own byte, so taking the
// arrays one after the other stores what channel-by-channel would.
constexpr IndexedField kAlarmChannels[] = {
    {"ArmChEn%d", 0, 4, 39, 1, FieldType::U8, nullptr},
    {"ArmChPreset%d", 0, 4, 43, 1, FieldType::U8, nullptr},
};

constexpr Field kRelayAndPrivacyView[] = {
    U8("ArmChRelayEn", 47),
    U8("ArmChRelayType", 48),
    // 49..56: not set here
    U8("PrivacyViewId", kPrivacyViewId),
};
constexpr uint32_t kPrivacySetId = 58;
constexpr uint32_t kPrivacyMasks = 8;
constexpr Field kPrivacySlot = U8("PrivacySetMode", 59);
// 60..91: not set here

constexpr Field kPresetView = U8("PresetViewId", 92);
constexpr uint32_t kPresetSetId = 93;
constexpr uint32_t kPresets = 32;
constexpr Field kPresetSlot = U8("PresetSetMode", 94);
// 95: not set here

constexpr uint32_t kTraceStart = 96;
constexpr uint32_t kTraceRun = 99;
constexpr uint32_t kTraceStop = 100;
constexpr uint32_t kGroupViewId = 397;
constexpr Field kTraceAndGroupView[] = {
    U8("TraceStart", kTraceStart),
    U8("TraceEndSet", 97),
    U8("TraceSetMode", 98),
    U8("TraceRun", kTraceRun),
    U8("TraceStop", kTraceStop),
    // 101..396: not set here
    U8("GroupViewId", kGroupViewId),
};
constexpr uint32_t kGroupSetId = 398;
constexpr uint32_t kGroups = 8;
constexpr Field kGroupSlot = U8("GroupSetEnable", 399);
// Twelve presets of the group being edited, as for the alarm channels.
constexpr IndexedField kGroupSteps[] = {
    {"GroupSetPrsId%d", 0, 12, 400, 1, FieldType::U8, nullptr},
    {"GroupSetSpeed%d", 0, 12, 412, 1, FieldType::U8, nullptr},
    {"GroupSetDwell%d", 0, 12, 424, 1, FieldType::U8, nullptr},
};

constexpr uint32_t kGroupRunId = 436;
constexpr uint32_t kGroupStopId = 437;
constexpr uint32_t kDehumidification = 439;
constexpr Field kGroupRunAndDehumidifier[] = {
    U8("GroupRunId", kGroupRunId),
    U8("GroupStopId", kGroupStopId),
    // 438: not set here
    U8("Dehumidifcation", kDehumidification),
};

constexpr uint32_t kRecordSize = 440;
static_assert(kGroupSteps[2].offset + kGroupSteps[2].count == kGroupRunId);
static_assert(kDehumidification == kRecordSize - 1);

void Merge(const FormValue& form, const RecordView& record) {
  MergeFields(form, record, kCameraAndHome);
  for (const IndexedField& channel : kAlarmChannels) MergeIndexedField(form, record, channel);

  MergeFields(form, record, kRelayAndPrivacyView);
  if (SetIdGateOpen(form, record, "PrivacySetId", kPrivacySetId, kPrivacyMasks)) {
    MergeField(form, record, kPrivacySlot);
  }

  MergeField(form, record, kPresetView);
  if (SetIdGateOpen(form, record, "PresetSetId", kPresetSetId, kPresets)) MergeField(form, record, kPresetSlot);

  MergeFields(form, record, kTraceAndGroupView);
  if (SetIdGateOpen(form, record, "GroupSetId", kGroupSetId, kGroups)) {
    MergeField(form, record, kGroupSlot);
    for (const IndexedField& steps : kGroupSteps) MergeIndexedField(form, record, steps);
  }

  MergeFields(form, record, kGroupRunAndDehumidifier);
}

// The return page only when all ten hold: no lens initialisation or
// dehumidification pending, no privacy mask, preset or group in view or
// run or stopped, and the three trace bytes not 0 (a test for non-zero,
// unlike the range tests of the ids).
int Result(const RecordView& record) {
  const bool idle = record.GetU8(kDirectLensInit) == 0 && record.GetU8(kDehumidification) == 0 &&
                    record.GetU8(kPrivacyViewId) >= kPrivacyMasks &&
                    record.GetU8(kPresetView.offset) >= kPresets && record.GetU8(kTraceStart) != 0 &&
                    record.GetU8(kTraceRun) != 0 && record.GetU8(kTraceStop) != 0 &&
                    record.GetU8(kGroupViewId) >= kGroups && record.GetU8(kGroupRunId) >= kGroups &&
                    record.GetU8(kGroupStopId) >= kGroups;
  return idle ? 1 : 0;
}

constexpr SettingsFamily kPtzAlarmChannelCamera = {
    .recordSize = kRecordSize,
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-2, false},
    .merge = Merge,
    .result = Result,
};

}  // namespace

int PtzAlarmChannelCameraSettings(char* errorBuffer, const char* recordPath) {
  return RunSettingsFrame<kPtzAlarmChannelCamera>(errorBuffer, recordPath);
}
