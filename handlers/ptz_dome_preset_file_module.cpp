// PTZ dome modules with the preset file: 1968-byte record, continue read
// with the " in Cgi" report. Scans, privacy masks, patterns, presets,
// tours, areas, alarms and groups are edited one set at a time behind
// their set numbers; preset labels and the preset-set bitmap live in
// "PtzConf.bin", whose other bytes belong to the daemon and are carried
// through. The main title is written only by a plain settings save.
#include <string.h>

#include "cgi/device_paths.h"
#include "handlers/settings_frame.h"
#include "handlers/settings_handlers.h"

namespace {

constexpr uint32_t kRecordSize = 1968;
constexpr ReadPolicy kReadPolicy = ReadPolicy::ContinueInCgi;
constexpr WriteFailure kWriteFailure = {-2, false};

// Looked up first, in this order.
constexpr Field kSettings[] = {
    // 0..3: not set here
    U8("DigitalZoom", 4),
    U8("ZoomSpeed", 5),
    U8("ZoomDisplay", 6),
    U8("FocusMode", 7),
    U8("FocusSpeed", 8),
    U8("FocusNearLimit", 9),
    U8("AfMode", 10),
    U8("WhiteBMode", 11),
    U8("WhiteBRGain", 12),
    U8("WhiteBBGain", 13),
    U8("ExposureMode", 14),
    U8("ExpCompPosition", 15),
    U8("AutoSlowShut", 16),
    U8("ExpShutSpd", 17),
    U8("ExpIrisLevel", 18),
    U8("ExpWdrMode", 19),
    U8("ExpWdrLevel", 20),
    U8("ExpDaynNight", 21),
    U8("AceMode", 22),
    U8("ApertureGain", 23),
    U8("DnrLevel", 24),
    U8("BackLight", 25),
    U8("Flickerless", 26),
    U8("Defog", 27),
    U8("PresetFreeze", 28),
    U8("Stabilizer", 29),
    U8("HeaterOnTemp", 30),
    U8("HeaterOffTemp", 31),
    U8("HeaterOnTime", 32),
    U8("FanOnTemp", 33),
    U8("FanOffTemp", 34),
    U8("HeaterStatus", 35),
    U8("PowerUpAction", 36),
    // 37..52: MainTitle, plain saves only (below)
    U8("PositionDisplay", 53),
    U8("AutoFlip", 54),
    U8("TiltLimitAngle", 55),
    U8("WiperStatus", 56),
    U8("PresetLabelDisp", 57),
    U8("PowerFrequency", 58),
    U8("ExpAgcMode", 63),
    U8("AutoSlowShutter", 64),
    U8("DssLevel", 65),
    U8("SpeedByZoom", 59),
    U8("ResponseTxd", 60),
    // 61..62 and 66..321: not set here
};

// ---- Editing groups -----------------------------------------------------------

template <typename T>
struct List {
  const T* items;
  size_t count;
};
template <typename T, size_t N>
constexpr List<T> Of(const T (&items)[N]) {
  return {items, N};
}

// One kind of editable object. Its action ids and commands are looked up
// first, then its set number; only a set number below `sets` opens the edit
// slot: the slot fields, the steps (index by index, each step's keys in
// turn) and the label. An action id below `sets`, or a command other than
// 255, asks the camera to act now.
struct EditGroup {
  List<Field> actions;
  List<Field> commands;
  Field setId;
  uint32_t sets;
  List<Field> slot;
  List<IndexedField> steps;
  Field label;  // key null: no label
};

constexpr Field kNoLabel = {};

// Presets: the slot is in the preset file and the main record (below).
constexpr Field kPresetActions[] = {
    U16("PresetViewId", 322),
};
constexpr EditGroup kPreset = {
    .actions = Of(kPresetActions),
    .commands = {},
    .setId = U16("PresetSetId", 324),
    .sets = 256,
    .slot = {},
    .steps = {},
    .label = kNoLabel,
};
constexpr Field kPresetSetFocus = U8("PresetSetFocus", 326);
// 327..951: not set here

constexpr Field kTourActions[] = {
    U8("TourViewId", 952),
    U8("TourRunId", 954),
};
constexpr Field kTourSlot[] = {
    U8("TourSetMode", 955),
};
constexpr IndexedField kTourSteps[] = {
    {"TourSetSpeed%d", 0, 15, 956, 1, FieldType::U8, nullptr},
    {"TourSetDwell%d", 0, 15, 971, 1, FieldType::U8, nullptr},
    {"TourSetPresetFuncId%d", 0, 15, 986, 2, FieldType::U16, nullptr},
};
constexpr EditGroup kTour = {
    .actions = Of(kTourActions),
    .commands = {},
    .setId = U8("TourSetId", 953),
    .sets = 8,
    .slot = Of(kTourSlot),
    .steps = Of(kTourSteps),
    .label = Text("TourSetLabel", 1016, 12),
};
// 1028..1191: not set here

constexpr Field kScanActions[] = {
    U8("ScanViewId", 1192),
    U8("ScanStartId", 1193),
    U8("ScanEndId", 1194),
    U8("ScanRunId", 1196),
};
constexpr Field kScanSlot[] = {
    U8("ScanSetMode", 1197),
    U8("ScanSetSpeed", 1198),
    U8("ScanSetDwelling", 1199),
    U8("ScanSetFocusMode", 1200),
};
constexpr EditGroup kScan = {
    .actions = Of(kScanActions),
    .commands = {},
    .setId = U8("ScanSetId", 1195),
    .sets = 8,
    .slot = Of(kScanSlot),
    .steps = {},
    .label = Text("ScanSetLabel", 1201, 12),
};
// 1213..1284: not set here

constexpr Field kPatternActions[] = {
    U8("PatternViewId", 1285),
    U8("PatternStartId", 1286),
    U8("PatternEndId", 1287),
    U8("PatternRunId", 1289),
};
constexpr Field kPatternSlot[] = {
    U8("PatternSetMode", 1290),
};
constexpr EditGroup kPattern = {
    .actions = Of(kPatternActions),
    .commands = {},
    .setId = U8("PatternSetId", 1288),
    .sets = 4,
    .slot = Of(kPatternSlot),
    .steps = {},
    .label = Text("PatternSetLabel", 1291, 12),
};
// 1303..1306: not set here

constexpr Field kPrivacyActions[] = {
    U8("PrivacyViewId", 1307),
};
constexpr Field kPrivacyCommands[] = {
    U8("PrivacyIris", 1310),
};
constexpr Field kPrivacySlot[] = {
    U8("PrivacySetMode", 1309),
};
constexpr EditGroup kPrivacy = {
    .actions = Of(kPrivacyActions),
    .commands = Of(kPrivacyCommands),
    .setId = U8("PrivacySetId", 1308),
    .sets = 8,
    .slot = Of(kPrivacySlot),
    .steps = {},
    .label = kNoLabel,
};
// 1311..1590: not set here

constexpr Field kAreaActions[] = {
    U8("AreaViewId", 1591),
    U8("AreaStartId", 1593),
    U8("AreaEndId", 1594),
};
constexpr Field kAreaSlot[] = {
    U8("AreaSetMode", 1595),
};
constexpr EditGroup kArea = {
    .actions = Of(kAreaActions),
    .commands = {},
    .setId = U8("AreaSetId", 1592),
    .sets = 16,
    .slot = Of(kAreaSlot),
    .steps = {},
    .label = Text("AreaSetLabel", 1596, 12),
};
// 1608..1771: not set here

constexpr Field kAlarmActions[] = {
    U8("AlarmViewId", 1772),
};
constexpr Field kAlarmSlot[] = {
    U8("AlarmSetMode", 1774),
    // 1775: not set here
    U16("AlarmSetPresetId", 1776),
};
constexpr EditGroup kAlarm = {
    .actions = Of(kAlarmActions),
    .commands = {},
    .setId = U8("AlarmSetId", 1773),
    .sets = 8,
    .slot = Of(kAlarmSlot),
    .steps = {},
    .label = Text("AlarmSetLabel", 1778, 12),
};
// 1790..1793: not set here

constexpr Field kGroupActions[] = {
    U8("GroupViewId", 1942),
};
constexpr Field kGroupSlot[] = {
    U8("GroupSetMode", 1944),
};
constexpr IndexedField kGroupSteps[] = {
    {"GroupSetListId%d", 0, 6, 1945, 1, FieldType::U8, nullptr},
};
constexpr EditGroup kGroup = {
    .actions = Of(kGroupActions),
    .commands = {},
    .setId = U8("GroupSetId", 1943),
    .sets = 6,
    .slot = Of(kGroupSlot),
    .steps = Of(kGroupSteps),
    .label = Text("GroupSetLabel", 1951, 12),
};
// 1963..1966: not set here

// Looked up after the editing groups.
constexpr Field kParkingAndIllumination[] = {
    U8("ParkTime", 1794),
    U8("ParkFunction", 1795),
    U16("ParkNumber", 1796),
    U8("ParkMode", 1798),
    U8("ParkSet", 1799),
    U8("ExtIrSyncMode", 1800),
    U8("ExtIrIlluminate", 1801),
    U8("ExtIrChangeLux", 1802),
    U8("ExtIrOffset", 1803),
    // 1804..1941: not set here
    U8("CamCtlPage", 1967),
};

constexpr Field kMainTitle = Text("MainTitle", 37, 16);

// ---- The preset file ---------------------------------------------------------------

constexpr uint32_t kPresetFileSize = 262760;
constexpr uint32_t kPresetLabels = 20;  // 64-byte slots, preset n at 20 + 64 * (n - 1)
constexpr uint32_t kPresetLabelSize = 64;
constexpr uint32_t kPresetSetBitmap = 16404;  // eight words, preset n is bit n - 1
static_assert(kPresetLabels + kPresetLabelSize * 255 <= kPresetSetBitmap);
static_assert(kPresetSetBitmap + 8 * 4 <= kPresetFileSize);

// One request per process: the file's image lives here rather than on the stack.
uint8_t gPresetFile[kPresetFileSize];

// ---- Rules ---------------------------------------------------------------------

uint32_t Stored(const RecordView& record, const Field& field) {
  return field.type == FieldType::U16 ? record.GetU16(field.offset) : record.GetU8(field.offset);
}

// A label is cleared when it is absent or posted empty.
void MergeLabel(const FormValue& form, const RecordView& record, const Field& label) {
  MergeField(form, record, label);
  if (form.Empty()) memset(record.bytes + label.offset, 0, label.textSize);
}

// Merges the group's action ids, commands and set number; true when the
// slot is open.
bool OpenGroup(const FormValue& form, const RecordView& record, const EditGroup& group) {
  MergeFields(form, record, group.actions.items, group.actions.count);
  MergeFields(form, record, group.commands.items, group.commands.count);
  MergeField(form, record, group.setId);
  return Stored(record, group.setId) < group.sets;
}

void MergeSlot(const FormValue& form, const RecordView& record, const EditGroup& group) {
  MergeFields(form, record, group.slot.items, group.slot.count);
  const int steps = group.steps.count ? group.steps.items[0].count : 0;
  for (int i = 0; i < steps; ++i) {
    for (size_t k = 0; k < group.steps.count; ++k) {
      const IndexedField& s = group.steps.items[k];
      MergeIndexedField(form, record,
                        {s.keyFormat, s.first + i, 1, s.offset + static_cast<uint32_t>(i) * s.stride, 0,
                         s.type, s.rule});
    }
  }
  if (group.label.key) MergeLabel(form, record, group.label);
}

// Preset n (0 to 255): its flag in the bitmap, its focus in the record and
// its label in the file. Preset 0 has neither flag nor label. 0, or the
// result to return at once when the preset file cannot be written.
int EditPreset(const FormValue& form, const RecordView& record, uint32_t n, char* errorBuffer) {
  const RecordView presets = {gPresetFile, kPresetFileSize};
  ReadRecord(kReadPolicy, presets, device::kPtzPresetFile, errorBuffer);
  if (form.Lookup("PresetSetMode") && n > 0) {
    const uint32_t word = kPresetSetBitmap + 4 * ((n - 1) / 32);
    const uint32_t bit = 1u << ((n - 1) % 32);
    const uint32_t flags = presets.GetU32(word);
    presets.PutU32(word, (form.Int() & 0xFFFF) != 0 ? flags | bit : flags & ~bit);
  }
  MergeField(form, record, kPresetSetFocus);
  if (n > 0) {
    const uint32_t slot = kPresetLabels + kPresetLabelSize * (n - 1);
    MergeLabel(form, presets, Text("PresetSetLabel", slot, kPresetLabelSize));
  }
  return WriteRecord(kWriteFailure, presets, device::kPtzPresetFile, errorBuffer);
}

// In the order they are merged.
constexpr const EditGroup* kGroups[] = {&kScan, &kPrivacy, &kPattern, &kPreset,
                                        &kTour, &kArea,    &kAlarm,   &kGroup};

bool ActionPending(const RecordView& record) {
  for (const EditGroup* group : kGroups) {
    for (size_t i = 0; i < group->actions.count; ++i) {
      if (Stored(record, group->actions.items[i]) < group->sets) return true;
    }
    for (size_t i = 0; i < group->commands.count; ++i) {
      if (Stored(record, group->commands.items[i]) != 0xFF) return true;
    }
  }
  return false;
}

}  // namespace

int PtzDomePresetFileModuleSettings(char* errorBuffer, const char* recordPath) {
  char value[kValueBufferSize] = {};
  const FormValue form = {value, kValueBufferSize};
  uint8_t bytes[kRecordSize];
  const RecordView record = {bytes, kRecordSize};

  ReadRecord(kReadPolicy, record, recordPath, errorBuffer);
  MergeFields(form, record, kSettings);

  // A group is edited whenever its slot is open, whatever was posted.
  bool edited = false;
  for (const EditGroup* group : kGroups) {
    if (!OpenGroup(form, record, *group)) continue;
    edited = true;
    if (group != &kPreset) {
      MergeSlot(form, record, *group);
    } else if (const int result = EditPreset(form, record, Stored(record, kPreset.setId), errorBuffer)) {
      return result;
    }
  }
  MergeFields(form, record, kParkingAndIllumination);

  if (const int result = WriteRecord(kWriteFailure, record, recordPath, errorBuffer)) return result;
  if (ActionPending(record)) return 0;
  if (edited) return 1;
  // A plain settings save: the main title too.
  MergeLabel(form, record, kMainTitle);
  if (const int result = WriteRecord(kWriteFailure, record, recordPath, errorBuffer)) return result;
  return 1;
}
