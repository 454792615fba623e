// PTZ cameras with four alarm channels and a relay: a record of
// bytes, continue read. Privacy masks, presets and preset groups each have
// a view id and one edit slot, taken only while the kind's set id names an
// object; the slot is never indexed by the set id.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

// The return page only when all ten are idle: no lens initialisation or
// dehumidification pending, no privacy mask, preset or group in view or
// run or stopped, and the three trace bytes not 0.
constexpr uint32_t kPrivacyMasks = 8;
constexpr uint32_t kPresets = 32;
constexpr uint32_t kGroups = 8;

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
    U8("DirectLensInit", 34, kRequestFlag),
    U8("DirectPreset", 35),
    U8("HomeFuncEn", 36),
    U8("HomePresetId", 37),
    U8("ResumeTimeEn", 38),
};

// Channel i's enable and preset.
constexpr IndexedField kAlarmChannels[] = {
    Indexed("ArmChEn%d", 0, 4, 39, 1, FieldType::U8),
    Indexed("ArmChPreset%d", 0, 4, 43, 1, FieldType::U8),
};

constexpr Field kRelayAndPrivacyView[] = {
    U8("ArmChRelayEn", 47),
    U8("ArmChRelayType", 48),
    // 49..56: not set here
    U8("PrivacyViewId", 57, IdBelow(kPrivacyMasks)),
};
constexpr Field kPrivacySetId = U8("PrivacySetId", 58);
constexpr Field kPrivacySlot = U8("PrivacySetMode", 59);
// 60..91: not set here

constexpr Field kPresetView = U8("PresetViewId", 92, IdBelow(kPresets));
constexpr Field kPresetSetId = U8("PresetSetId", 93);
constexpr Field kPresetSlot = U8("PresetSetMode", 94);
// 95: not set here

// A trace byte of 0 is a pending trace command.
constexpr Field kTraceAndGroupView[] = {
    U8("TraceStart", 96, IdBelow(1)),
    U8("TraceEndSet", 97, kAction),
    U8("TraceSetMode", 98),
    U8("TraceRun", 99, IdBelow(1)),
    U8("TraceStop", 100, IdBelow(1)),
    // 101..396: not set here
    U8("GroupViewId", 397, IdBelow(kGroups)),
};
constexpr Field kGroupSetId = U8("GroupSetId", 398);
constexpr Field kGroupSlot = U8("GroupSetEnable", 399);
// Twelve presets of the group being edited.
constexpr IndexedField kGroupSteps[] = {
    Indexed("GroupSetPrsId%d", 0, 12, 400, 1, FieldType::U8),
    Indexed("GroupSetSpeed%d", 0, 12, 412, 1, FieldType::U8),
    Indexed("GroupSetDwell%d", 0, 12, 424, 1, FieldType::U8),
};

constexpr Field kGroupRunAndDehumidifier[] = {
    U8("GroupRunId", 436, IdBelow(kGroups)),
    U8("GroupStopId", 437, IdBelow(kGroups)),
    // 438: not set here
    U8("Dehumidifcation", 439, kRequestFlag),
};

// The blocks each set id opens.
constexpr Block kPrivacyEdit[] = {Fields(kPrivacySlot)};
constexpr Block kPresetEdit[] = {Fields(kPresetSlot)};
constexpr Block kGroupEdit[] = {Fields(kGroupSlot), Steps(kGroupSteps)};

constexpr Block kLayout[] = {
    Fields(kCameraAndHome),
    Steps(kAlarmChannels),
    Fields(kRelayAndPrivacyView),
    Gate(kPrivacySetId, kPrivacyMasks, kPrivacyEdit),
    Fields(kPresetView),
    Gate(kPresetSetId, kPresets, kPresetEdit),
    Fields(kTraceAndGroupView),
    Gate(kGroupSetId, kGroups, kGroupEdit),
    Fields(kGroupRunAndDehumidifier),
};

}  // namespace

constexpr SettingsFamily kPtzAlarmChannelCamera = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<440>(kLayout),
    .result = kUnlessPending,
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kPtzAlarmChannelCameraNotes = {"PTZ alarm-channel camera"};
