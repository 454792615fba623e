// PTZ dome modules with the preset file: continue read
// with the " in Cgi" report. Scans, privacy masks, patterns, presets,
// tours, areas, alarms and groups are edited one set at a time behind
// their set numbers; preset labels and the preset-set bitmap live in
// "PtzConf.bin", whose other bytes belong to the daemon and are carried
// through. The main title is written only by a plain settings save: one
// that opened no edit slot and left no action pending.
#include "device/device_paths.h"
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

constexpr ReadPolicy kReadPolicy = ReadPolicy::ContinueInCgi;
constexpr WriteFailure kWriteFailure = {-2, false};

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
    U8("SpeedByZoom", 59),
    U8("ResponseTxd", 60),
    // 61..62: not set here
    U8("ExpAgcMode", 63),
    U8("AutoSlowShutter", 64),
    U8("DssLevel", 65),
    // 66..321: not set here
};

// ---- Editing groups -----------------------------------------------------------

// One kind of editable object: its action ids (and commands), then its set
// number; only a set number below the kind's count opens the edit slot: the
// slot fields, the steps (index by index, each step's keys in turn) and the
// label. An action id below the count, or a command other than 255, asks
// the camera to act now.
constexpr uint32_t kScans = 8;
constexpr uint32_t kPrivacyMasks = 8;
constexpr uint32_t kPatterns = 4;
constexpr uint32_t kPresets = 256;
constexpr uint32_t kTours = 8;
constexpr uint32_t kAreas = 16;
constexpr uint32_t kAlarms = 8;
constexpr uint32_t kGroups = 6;

constexpr Field kScanActions[] = {
    U8("ScanViewId", 1192, IdBelow(kScans)),
    U8("ScanStartId", 1193, IdBelow(kScans)),
    U8("ScanEndId", 1194, IdBelow(kScans)),
    U8("ScanRunId", 1196, IdBelow(kScans)),
};
constexpr Field kScanSetId = U8("ScanSetId", 1195);
constexpr Field kScanSlot[] = {
    U8("ScanSetMode", 1197),
    U8("ScanSetSpeed", 1198),
    U8("ScanSetDwelling", 1199),
    U8("ScanSetFocusMode", 1200),
};
constexpr Field kScanLabel = Text("ScanSetLabel", 1201, 12);
// 1213..1284: not set here

constexpr Field kPrivacyActions[] = {
    U8("PrivacyViewId", 1307, IdBelow(kPrivacyMasks)),
    U8("PrivacyIris", 1310, kCommand),
};
constexpr Field kPrivacySetId = U8("PrivacySetId", 1308);
constexpr Field kPrivacySlot = U8("PrivacySetMode", 1309);
// 1311..1590: not set here

constexpr Field kPatternActions[] = {
    U8("PatternViewId", 1285, IdBelow(kPatterns)),
    U8("PatternStartId", 1286, IdBelow(kPatterns)),
    U8("PatternEndId", 1287, IdBelow(kPatterns)),
    U8("PatternRunId", 1289, IdBelow(kPatterns)),
};
constexpr Field kPatternSetId = U8("PatternSetId", 1288);
constexpr Field kPatternSlot = U8("PatternSetMode", 1290);
constexpr Field kPatternLabel = Text("PatternSetLabel", 1291, 12);
// 1303..1306: not set here

// Presets: the slot is in the main record and in the preset file (below).
constexpr Field kPresetViewId = U16("PresetViewId", 322, IdBelow(kPresets));
constexpr Field kPresetSetId = U16("PresetSetId", 324);
constexpr Field kPresetSetFocus = U8("PresetSetFocus", 326);
// 327..951: not set here

constexpr Field kTourActions[] = {
    U8("TourViewId", 952, IdBelow(kTours)),
    U8("TourRunId", 954, IdBelow(kTours)),
};
constexpr Field kTourSetId = U8("TourSetId", 953);
constexpr Field kTourSlot = U8("TourSetMode", 955);
constexpr IndexedField kTourSteps[] = {
    Indexed("TourSetSpeed%d", 0, 15, 956, 1, FieldType::U8),
    Indexed("TourSetDwell%d", 0, 15, 971, 1, FieldType::U8),
    Indexed("TourSetPresetFuncId%d", 0, 15, 986, 2, FieldType::U16),
};
constexpr Field kTourLabel = Text("TourSetLabel", 1016, 12);
// 1028..1191: not set here

constexpr Field kAreaActions[] = {
    U8("AreaViewId", 1591, IdBelow(kAreas)),
    U8("AreaStartId", 1593, IdBelow(kAreas)),
    U8("AreaEndId", 1594, IdBelow(kAreas)),
};
constexpr Field kAreaSetId = U8("AreaSetId", 1592);
constexpr Field kAreaSlot = U8("AreaSetMode", 1595);
constexpr Field kAreaLabel = Text("AreaSetLabel", 1596, 12);
// 1608..1771: not set here

constexpr Field kAlarmViewId = U8("AlarmViewId", 1772, IdBelow(kAlarms));
constexpr Field kAlarmSetId = U8("AlarmSetId", 1773);
constexpr Field kAlarmSlot[] = {
    U8("AlarmSetMode", 1774),
    // 1775: not set here
    U16("AlarmSetPresetId", 1776),
};
constexpr Field kAlarmLabel = Text("AlarmSetLabel", 1778, 12);
// 1790..1793: not set here

constexpr Field kGroupViewId = U8("GroupViewId", 1942, IdBelow(kGroups));
constexpr Field kGroupSetId = U8("GroupSetId", 1943);
constexpr Field kGroupSlot = U8("GroupSetMode", 1944);
constexpr IndexedField kGroupSteps = Indexed("GroupSetListId%d", 0, 6, 1945, 1, FieldType::U8);
constexpr Field kGroupLabel = Text("GroupSetLabel", 1951, 12);
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

// Written only by a plain settings save: one that opened no edit slot.
constexpr Field kMainTitle = Text("MainTitle", 37, 16);

// ---- The preset file ---------------------------------------------------------------

// Preset n (1 to 255) has its flag (bit n - 1 of eight words from 16404) and
// its label (64 bytes at 20 + 64 * (n - 1)) in the preset file; preset 0 has
// neither. The file's other bytes belong to the daemon and are carried
// through.
constexpr SlotOptions kPresetsFromOne = {.first = 1};
constexpr SlotTable kPresetFlags =
    Slots("PresetSetMode", 16404, kPresets - 1, 0, FieldType::Bit, 0, kPresetsFromOne);
constexpr SlotTable kPresetLabels = Slots(
    "PresetSetLabel", 20, kPresets - 1, 64, FieldType::Text, 64, {.first = 1, .clearWidth = 64});
constexpr Block kPresetFileLayout[] = {
    Slot(kPresetFlags, kPresetSetId),
    Slot(kPresetLabels, kPresetSetId),
};
constexpr SideFile kPresetFile = {
    .path = device::kPtzPresetFile,
    .readPolicy = kReadPolicy,
    .writeFailure = kWriteFailure,
    .layout = CheckedLayout<262760, kLargestSideFile>(kPresetFileLayout),
};
// The largest file a family edits beside its record.
static_assert(kPresetFile.layout.size == kLargestSideFile);

// ---- The layout ---------------------------------------------------------------------

// The blocks each set number opens. A label is cleared when it is absent or
// posted empty.
constexpr Block kScanEdit[] = {Fields(kScanSlot), ClearedText(kScanLabel)};
constexpr Block kPrivacyEdit[] = {Fields(kPrivacySlot)};
constexpr Block kPatternEdit[] = {Fields(kPatternSlot), ClearedText(kPatternLabel)};
constexpr Block kPresetEdit[] = {Fields(kPresetSetFocus), Side(kPresetFile)};
constexpr Block kTourEdit[] = {Fields(kTourSlot), Steps(kTourSteps), ClearedText(kTourLabel)};
constexpr Block kAreaEdit[] = {Fields(kAreaSlot), ClearedText(kAreaLabel)};
constexpr Block kAlarmEdit[] = {Fields(kAlarmSlot), ClearedText(kAlarmLabel)};
constexpr Block kGroupEdit[] = {Fields(kGroupSlot), Steps(kGroupSteps), ClearedText(kGroupLabel)};
constexpr Block kMainTitleSave[] = {ClearedText(kMainTitle)};

constexpr Block kLayout[] = {
    Fields(kSettings),
    Fields(kScanActions),
    Gate(kScanSetId, kScans, kScanEdit),
    Fields(kPrivacyActions),
    Gate(kPrivacySetId, kPrivacyMasks, kPrivacyEdit),
    Fields(kPatternActions),
    Gate(kPatternSetId, kPatterns, kPatternEdit),
    Fields(kPresetViewId),
    Gate(kPresetSetId, kPresets, kPresetEdit),
    Fields(kTourActions),
    Gate(kTourSetId, kTours, kTourEdit),
    Fields(kAreaActions),
    Gate(kAreaSetId, kAreas, kAreaEdit),
    Fields(kAlarmViewId),
    Gate(kAlarmSetId, kAlarms, kAlarmEdit),
    Fields(kGroupViewId),
    Gate(kGroupSetId, kGroups, kGroupEdit),
    Fields(kParkingAndIllumination),
    PlainSave(kMainTitleSave),
};

}  // namespace

constexpr SettingsFamily kPtzDomePresetFileModule = {
    .readPolicy = kReadPolicy,
    .writeFailure = kWriteFailure,
    .layout = CheckedLayout<1968>(kLayout),
    .result = kUnlessPending,
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kPtzDomePresetFileModuleNotes = {"PTZ dome with the preset file"};
