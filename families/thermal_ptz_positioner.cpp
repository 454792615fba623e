// Pan-tilt positioners carrying a thermal camera: retry
// read, 512-byte form values. Presets, preset run strings, scans, tours and
// groups have name tables whose slots are addressed by the id being edited;
// any pending one-shot command answers 204.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

// Picture and maintenance settings, merged first.
constexpr Field kPictureFields[] = {
    // 28650: not set here
    U8("AgcMode", 28651),
    U8("ColorMode", 28652),
    U8("Contrast", 28653),
    U8("Brightness", 28654),
    U8("AgcCenterPos", 28655),
    U8("AgcLevel", 28656),
    U8("LevelMode", 28657),
    U8("MideLevel", 28658),
    U8("SharpnessLevel", 28659),
    U8("MirrorMode", 28660),
    U8("FlipMode", 28661),
    U8("ImageFreezeMode", 28662),
    U8("InverseMode", 28663),
    U8("CalibrationExecute", 28664, kCommand),
    U8("CalibrationMode", 28665),
    U16("CalibrationInterval", 28666),
    U8("WiperModeCount", 28668),
    U8("WiperDwellTime", 28669),
    U8("WiperRun", 28670, kCommand),
    U8("WiperStop", 28671, kCommand),
    U8("LrfMode", 28672),
    U8("LrfCheckTimer", 28673),
    U8("WasherRun", 28674, kCommand),
    U8("TempOsdDisplayMode", 28675),
    U8("CoordinateDisplayMode", 28676),
    U8("CameraIdDisplayMode", 28677),
    U8("PtzIdDisplayMode", 28678),
    U8("OsdConvertSize", 28679),
    U8("CamCtlPage", 28680),
    // 28681: not set here
};

constexpr Field kPositionAndAlarmFields[] = {
    U8("FlipReverseMode", 0),
    U8("RecoverOriginMode", 1),
    U8("MotorTorque", 2),
    U8("EndlessMode", 3),
    U8("HomePosMode", 4),
    U8("HomePosType", 5),
    U8("HomePosSetId", 6),
    U8("ZeroPosRunId", 7, kCommand),
    // 8..21: not set here
    U8("AlarmSetId", 22),
    U8("AlarmSetSelectMode", 23),
    U16("AlarmSetPreset", 24),
    U8("AlarmSetPresetDwell", 26),
    U8("AlarmSetEnable", 27),
    U8("RelaySetEnable", 28),
    U8("RelaySet", 29),
    U8("AlarmClearId", 30, kAction),
    // 31..543: not set here
};

// Name tables: a text slot per id, the id taken from its id row after that
// row was merged, and used while below the id's limit. The addressing is
// shared with the daemon and has no bound of its own: an id past a table
// reaches into the tables and fields after it. A name is copied with its
// NUL; an absent or empty one clears the slot's first 16 bytes (a run
// string's 128).
constexpr SlotOptions NamesBelow(uint32_t idLimit, uint32_t clearWidth) {
  return {.idLimit = idLimit, .clearWidth = clearWidth};
}

// Presets: 544 on: names, 32 bytes per preset id.
constexpr Field kPresetSetId = U16("PresetSetId", 25888);  // 65535: no preset edited
constexpr SlotTable kPresetNames =
    Slots("PresetName", 544, 792, 32, FieldType::Text, 32, NamesBelow(kIdle << 8 | kIdle, 16));
constexpr Field kPresetEnable = U8("PresetEnable", 25890);
constexpr Field kPresetFields[] = {
    U8("PresetDwellTime", 25891),
    U8("PresetDetectEnable", 25892),
    U8("PresetTempOsdEnable", 25893),
    U8("PresetTempCenterEnable", 25894),
    // 25895: not set here
};
// Seven measurement boxes (0..6) as four parallel arrays of halfwords.
constexpr IndexedField kPresetBoxes[] = {
    Indexed("PresetTopX%d", 0, 7, 25896, 2, FieldType::U16),
    Indexed("PresetTopY%d", 0, 7, 25910, 2, FieldType::U16),
    Indexed("PresetBotX%d", 0, 7, 25924, 2, FieldType::U16),
    Indexed("PresetBotY%d", 0, 7, 25938, 2, FieldType::U16),
};
constexpr Field kPresetRunSetId = U8("PresetRunSetId", 25957);
constexpr Field kPresetRunFields[] = {
    U8("PresetTempEmissivityMode", 25952),
    U8("PresetTempEmissivity", 25953),
    U16("PresetAllClear", 25954, kAction),
    U8("PresetRunId", 25956, kCommand),
    kPresetRunSetId,
};
// 25958 on: run strings, 128 bytes per preset run id.
constexpr SlotTable kPresetRunStrings =
    Slots("PresetRunStr", 25958, 4, 128, FieldType::Text, 128, NamesBelow(kIdle, 128));

// Scans: 26502 on: names, 32 bytes per scan id.
constexpr SlotTable kScanNames =
    Slots("ScanSetName", 26502, 8, 32, FieldType::Text, 32, NamesBelow(kIdle, 16));
constexpr Field kScanSetId = U8("ScanSetId", 26766);
constexpr Field kScanSetFields[] = {
    kScanSetId,
    U8("ScanStartId", 26767, kCommand),
    U8("ScanEndId", 26768, kCommand),
    U8("ScanSetEnable", 26769),
    U8("ScanSetDirection", 26770),
    U8("ScanSetSpeed", 26771),
    U8("ScanSetDwellTime", 26772),
};
constexpr Field kScanRunFields[] = {
    U8("ScanSetRunMode", 26773),
    U8("ScanRunId", 26774, kCommand),
    U8("ScanAllClear", 26775, kAction),
    // 26776..26791: not set here
};

constexpr Field kPatternFields[] = {
    U8("PatternSetId", 26792),
    U8("PatternStartId", 26793, kCommand),
    U8("PatternEndId", 26794, kCommand),
    U8("PatternSetEnble", 26795),
    U8("PatternSetRunMode", 26796),
    U8("PatternRunId", 26797, kCommand),
    U8("PatternAllClear", 26798, kAction),
    // 26799..26807: not set here
};

// Tours: 26808 on: names, 32 bytes per tour id.
constexpr SlotTable kTourNames =
    Slots("TourSetName", 26808, 20, 32, FieldType::Text, 32, NamesBelow(kIdle, 16));
constexpr Field kTourSetId = U8("TourSetId", 27464);
constexpr Field kTourSetFields[] = {
    kTourSetId,
    U8("TourSetEnble", 27465),
};
constexpr Field kTourSetPrsEnble = U16("TourSetPrsEnble", 27466);
constexpr IndexedField kTourSteps[] = {
    Indexed("TourSetPrsId%d", 0, 16, 27468, 1, FieldType::U8),
    Indexed("TourSetSpeed%d", 0, 16, 27484, 1, FieldType::U8),
    Indexed("TourSetDwell%d", 0, 16, 27500, 1, FieldType::U8),
};
constexpr Field kTourRunFields[] = {
    U8("TourRunId", 27516, kCommand), U8("TourAllClear", 27517, kAction),
    // 27518..27525: not set here
};

// Groups: 27526 on: names, 32 bytes per group id.
constexpr SlotTable kGroupNames =
    Slots("GroupSetName", 27526, 32, 32, FieldType::Text, 32, NamesBelow(kIdle, 16));
constexpr Field kGroupSetId = U8("GroupSetId", 28550);
constexpr Field kGroupSetFields[] = {
    kGroupSetId,
    U8("GroupSetEnble", 28551),
};
constexpr IndexedField kGroupSteps[] = {
    Indexed("GroupSetFuncType%d", 0, 16, 28552, 1, FieldType::U8),
    Indexed("GroupSetFuncId%d", 0, 16, 28568, 2, FieldType::U16),
    Indexed("GroupSetSpeed%d", 0, 16, 28600, 1, FieldType::U8),
    Indexed("GroupSetDwell%d", 0, 16, 28616, 1, FieldType::U8),
    Indexed("GroupSetRepeatCount%d", 0, 16, 28632, 1, FieldType::U8),
};
constexpr Field kGroupRunFields[] = {
    U8("GroupRunId", 28648, kCommand),
    U8("GroupAllClear", 28649, kAction),
};

// Any pending one-shot command or start/end id (idle at 255) answers 204.
constexpr Block kLayout[] = {
    Fields(kPictureFields),
    Fields(kPositionAndAlarmFields),
    Fields(kPresetSetId),
    Fields(kPresetEnable),
    Slot(kPresetNames, kPresetSetId),
    Fields(kPresetFields),
    Steps(kPresetBoxes),
    Fields(kPresetRunFields),
    Slot(kPresetRunStrings, kPresetRunSetId),
    Fields(kScanSetFields),
    Slot(kScanNames, kScanSetId),
    Fields(kScanRunFields),
    Fields(kPatternFields),
    Fields(kTourSetFields),
    Slot(kTourNames, kTourSetId),
    Fields(kTourSetPrsEnble),
    Steps(kTourSteps),
    Fields(kTourRunFields),
    Fields(kGroupSetFields),
    Slot(kGroupNames, kGroupSetId),
    Steps(kGroupSteps),
    Fields(kGroupRunFields),
};

}  // namespace

constexpr SettingsFamily kThermalPtzPositioner = {
    .readPolicy = ReadPolicy::Retry,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<28682>(kLayout),
    .result = kUnlessPending,
    .valueBufferSize = 512,
};
// The largest record of any family.
static_assert(kThermalPtzPositioner.layout.size == kLargestRecord);

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kThermalPtzPositionerNotes = {"Thermal PTZ positioner"};
