// PTZ dome cameras: 508-byte record, retry read. Image and view settings,
// then privacy masks, scans, patterns, presets and tours: each kind has
// view/start/end/run ids and one edit slot, taken only while the kind's
// set id names an object. The slot is never indexed by the set id; the
// daemon applies it.
#include "handlers/settings_frame.h"
#include "handlers/settings_handlers.h"

namespace {

constexpr Field kImageAndView[] = {
    U8("VideoOutMode", 0),
    U8("CameraViewMode", 1),
    U8("FocusMode", 2),
    U8("FocusSensitivity", 3),
    U8("FocusLimit", 4),
    U8("WhiteBalanceMode", 5),
    U8("WhiteBalanceRGain", 6),
    U8("WhiteBalanceBGain", 7),
    U8("ExposureMode", 8),
    U8("ExposureSlowShutter", 9),
    U8("ExposureIris", 10),
    U8("ExposureGain", 11),
    U8("ExposureBrightness", 12),
    U8("ExposureShutter", 13),
    U8("ExposureDayNightMode", 14),
    U8("ExposureBrightOffset", 15),
    U8("ExposureBackLight", 16),
    U8("ExposureWdrMode", 17),
    U8("ExposureWdrValue", 18),
    U8("Sharpness", 19),
    U8("MaxDigitalZoom", 20),
    U8("ViewAngleFlip", 21),
    U8("ViewAngleTiltLimit", 22),
    U8("AutoCalibration", 23),
    U8("InstallationEnv", 24),
    U8("PresetFreeze", 25),
    U8("PtzSpeed", 26),
    // 27..43: not set here
    U8("PrivacyViewId", 44),
};

// Privacy mask: set id at 45, below 8.
constexpr uint32_t kPrivacySetId = 45;
constexpr uint32_t kPrivacyMasks = 8;
constexpr Field kPrivacySlot[] = {
    U8("PrivacyMode", 46),
    U8("PrivacyTrigger", 47),
    U16("PrivacyX0", 48),
    U16("PrivacyY0", 50),
    U16("PrivacyX1", 52),
    U16("PrivacyY1", 54),
    U16("PrivacyX2", 56),
    U16("PrivacyY2", 58),
    U16("PrivacyX3", 60),
    U16("PrivacyY3", 62),
    U16("PrivacyW", 64),
    U16("PrivacyH", 66),
    // 68..147: not set here
};

constexpr Field kScanIds[] = {
    U8("ScanViewId", 148),
    U8("ScanStartId", 149),
    U8("ScanEndId", 150),
    U8("ScanRunId", 151),
};
constexpr uint32_t kScanSetId = 152;
constexpr uint32_t kScans = 16;
constexpr Field kScanSlot[] = {
    U8("ScanSetMode", 153),
    U8("ScanSetSpeed", 154),
    U8("ScanSetDir", 155),
    U8("ScanSetSwap", 156),
    U8("ScanSetDwell", 157),
    // 158..165: not set here
};

constexpr Field kPatternIds[] = {
    U8("PatternViewId", 166),
    U8("PatternStartId", 167),
    U8("PatternEndId", 168),
    U8("PatternRunId", 169),
};
constexpr uint32_t kPatternSetId = 170;
constexpr uint32_t kPatterns = 8;
constexpr Field kPatternSlot[] = {
    U8("PatternSetMode", 171),
    // 172..203: not set here
};

constexpr Field kPresetIds[] = {
    U8("PresetViewId", 204),
};
constexpr uint32_t kPresetSetId = 205;
constexpr uint32_t kPresets = 32;
constexpr Field kPresetSlot[] = {
    U8("PresetSetMode", 206),
    // 207..470: not set here
};

constexpr uint32_t kTourRunId = 472;
constexpr Field kTourIds[] = {
    U8("TourViewId", 471),
    U8("TourRunId", kTourRunId),
};
constexpr uint32_t kTourSetId = 473;
constexpr uint32_t kTours = 8;
constexpr Field kTourSlot[] = {
    U8("TourSetMode", 474),
};
// Eight steps of the tour being edited; each key has its own byte, so
// taking the arrays one after the other stores what step-by-step would.
constexpr IndexedField kTourSteps[] = {
    {"TourSetFncType%d", 0, 8, 475, 1, FieldType::U8, nullptr},
    {"TourSetFncId%d", 0, 8, 483, 1, FieldType::U8, nullptr},
    {"TourSetSpeed%d", 0, 8, 491, 1, FieldType::U8, nullptr},
    {"TourSetDwell%d", 0, 8, 499, 1, FieldType::U8, nullptr},
    // 507: not set here
};

constexpr uint32_t kRecordSize = 508;
static_assert(kTourSteps[3].offset + kTourSteps[3].count == kRecordSize - 1);

void Merge(const FormValue& form, const RecordView& record) {
  MergeFields(form, record, kImageAndView);

  if (SetIdGateOpen(form, record, "PrivacySetId", kPrivacySetId, kPrivacyMasks)) {
    MergeFields(form, record, kPrivacySlot);
  }

  MergeFields(form, record, kScanIds);
  if (SetIdGateOpen(form, record, "ScanSetId", kScanSetId, kScans)) MergeFields(form, record, kScanSlot);

  MergeFields(form, record, kPatternIds);
  if (SetIdGateOpen(form, record, "PatternSetId", kPatternSetId, kPatterns)) {
    MergeFields(form, record, kPatternSlot);
  }

  MergeFields(form, record, kPresetIds);
  if (SetIdGateOpen(form, record, "PresetSetId", kPresetSetId, kPresets)) {
    MergeFields(form, record, kPresetSlot);
  }

  MergeFields(form, record, kTourIds);
  if (SetIdGateOpen(form, record, "TourSetId", kTourSetId, kTours)) {
    MergeFields(form, record, kTourSlot);
    for (const IndexedField& steps : kTourSteps) MergeIndexedField(form, record, steps);
  }
}

// A view, start, end or run id that names an object means the dome is
// busy with it: 204 keeps the browser on its page.
struct ObjectId {
  uint32_t offset;
  uint32_t limit;
};
constexpr ObjectId kObjectIds[] = {
    {44, kPrivacyMasks},                                                        // PrivacyViewId
    {148, kScans},    {149, kScans},    {150, kScans},    {151, kScans},        // Scan view/start/end/run
    {166, kPatterns}, {167, kPatterns}, {168, kPatterns}, {169, kPatterns},     // Pattern view/start/end/run
    {204, kPresets},                                                            // PresetViewId
    {471, kTours},                                                              // TourViewId
};

int Result(const RecordView& record) {
  for (const ObjectId& id : kObjectIds) {
    if (record.GetU8(id.offset) < id.limit) return 0;
  }
  return record.GetU8(kTourRunId) >= kTours ? 1 : 0;
}

constexpr SettingsFamily kPtzDomeCamera = {
    .recordSize = kRecordSize,
    .readPolicy = ReadPolicy::Retry,
    .writeFailure = {-2, false},
    .merge = Merge,
    .result = Result,
};

}  // namespace

int PtzDomeCameraSettings(char* errorBuffer, const char* recordPath) {
  return RunSettingsFrame<kPtzDomeCamera>(errorBuffer, recordPath);
}
