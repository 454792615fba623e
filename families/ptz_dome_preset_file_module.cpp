// PTZ dome modules with the preset file: 1968-byte record, continue read
// with the " in Cgi" report. Scans, privacy masks, patterns, presets,
// tours, areas, alarms and groups are edited one set at a time behind
// their set numbers; preset labels and the preset-set bitmap live in
// "PtzConf.bin", whose other bytes belong to the daemon and are carried
// through. The main title is written only by a plain settings save.
#include "device/device_paths.h"
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

constexpr uint32_t kRecordSize = 1968;
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

// A label is cleared when it is absent or posted empty.
constexpr Block kLayout[] = {
    Fields(kSettings),
    Fields(kScanActions),
    Gate(kScanSetId, kScans, 2),
    Fields(kScanSlot),
    ClearedText(kScanLabel),
    Fields(kPrivacyActions),
    Gate(kPrivacySetId, kPrivacyMasks, 1),
    Fields(kPrivacySlot),
    Fields(kPatternActions),
    Gate(kPatternSetId, kPatterns, 2),
    Fields(kPatternSlot),
    ClearedText(kPatternLabel),
    Fields(kPresetViewId),
    Gate(kPresetSetId, kPresets, 1),
    Fields(kPresetSetFocus),  // and the preset file, see EditPresetFile
    Fields(kTourActions),
    Gate(kTourSetId, kTours, 3),
    Fields(kTourSlot),
    Steps(kTourSteps),
    ClearedText(kTourLabel),
    Fields(kAreaActions),
    Gate(kAreaSetId, kAreas, 2),
    Fields(kAreaSlot),
    ClearedText(kAreaLabel),
    Fields(kAlarmViewId),
    Gate(kAlarmSetId, kAlarms, 2),
    Fields(kAlarmSlot),
    ClearedText(kAlarmLabel),
    Fields(kGroupViewId),
    Gate(kGroupSetId, kGroups, 3),
    Fields(kGroupSlot),
    Steps(kGroupSteps),
    ClearedText(kGroupLabel),
    Fields(kParkingAndIllumination),
    ClearedText(kMainTitle),  // plain saves only
};
constexpr Layout kWholeLayout = CheckedLayout<kRecordSize>(kLayout);
constexpr uint8_t kPresetsEnd = 15;      // blocks up to the preset slot
constexpr uint8_t kMainTitleBlock = 34;  // the last block
static_assert(kLayout[kPresetsEnd - 1].fields == &kPresetSetFocus);
static_assert(kLayout[kMainTitleBlock].fields == &kMainTitle &&
              kMainTitleBlock + 1 == sizeof kLayout / sizeof kLayout[0]);

// Every set-id gate of the layout, to tell an edit from a plain save.
bool AnySlotOpen(const RecordView& record) {
  for (const Block& block : kLayout)
    if (block.op == Op::Gate && StoredValue(record, block.fields[0]) < block.limit) return true;
  return false;
}

// ---- The preset file ---------------------------------------------------------------

constexpr uint32_t kPresetFileSize = 262760;
constexpr uint32_t kPresetLabels = 20;  // 64-byte slots, preset n at 20 + 64 * (n - 1)
constexpr uint32_t kPresetLabelSize = 64;
constexpr uint32_t kPresetSetBitmap = 16404;  // eight words, preset n is bit n - 1
static_assert(kPresetLabels + kPresetLabelSize * 255 <= kPresetSetBitmap);
static_assert(kPresetSetBitmap + 8 * 4 <= kPresetFileSize);

// Preset n (0 to 255): its flag in the bitmap and its label in the file.
// Preset 0 has neither. 0, or the result to return at once when the preset
// file cannot be written.
int EditPresetFile(Request& request, const FormValue& form, uint32_t n) {
  // Static for its size (see Request): too large for the stack.
  static uint8_t image[kPresetFileSize];
  const RecordView presets = {image, kPresetFileSize};
  ReadRecord(request, kReadPolicy, presets, device::kPtzPresetFile);
  if (form.Lookup("PresetSetMode") && n > 0) {
    const uint32_t word = kPresetSetBitmap + 4 * ((n - 1) / 32);
    const uint32_t bit = 1u << ((n - 1) % 32);
    const uint32_t flags = presets.GetU32(word);
    presets.PutU32(word, (form.Int() & 0xFFFF) != 0 ? flags | bit : flags & ~bit);
  }
  if (n > 0) {
    const uint32_t slot = kPresetLabels + kPresetLabelSize * (n - 1);
    MergeClearedText(form, presets, Text("PresetSetLabel", slot, kPresetLabelSize));
  }
  return WriteRecord(request, kWriteFailure, presets, device::kPtzPresetFile);
}

// The frame with the preset file beside the record, and a second write for
// the main title of a plain save.
int RunFrame(Request& request, const SettingsFamily&, const char* recordPath) {
  char value[kValueBufferSize] = {};
  const FormValue form = {request.form, value, kValueBufferSize};
  uint8_t bytes[kRecordSize];
  const RecordView record = {bytes, kRecordSize};

  ReadRecord(request, kReadPolicy, record, recordPath);
  MergeLayout(request, form, record, kWholeLayout.Part(0, kPresetsEnd));
  const uint32_t preset = StoredValue(record, kPresetSetId);
  if (preset < kPresets) {
    if (const int result = EditPresetFile(request, form, preset)) return result;
  }
  MergeLayout(request, form, record, kWholeLayout.Part(kPresetsEnd, kMainTitleBlock - kPresetsEnd));

  if (const int result = WriteRecord(request, kWriteFailure, record, recordPath)) return result;
  if (LayoutPending(record, kWholeLayout)) return 0;
  if (AnySlotOpen(record)) return 1;
  MergeLayout(request, form, record, kWholeLayout.Part(kMainTitleBlock, 1));
  if (const int result = WriteRecord(request, kWriteFailure, record, recordPath)) return result;
  return 1;
}

}  // namespace

constexpr SettingsFamily kPtzDomePresetFileModule = {
    .recordSize = kRecordSize,
    .readPolicy = kReadPolicy,
    .writeFailure = kWriteFailure,
    .layout = kWholeLayout,
    .ownFrame = RunFrame,
};
