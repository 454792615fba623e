// PTZ camera module 1D: 328-byte record of bytes, 256-byte form values,
// continue read. Scans, privacy masks, patterns and tours are edited one
// set at a time behind their set numbers; a pending action or zero-point
// command keeps the browser on its page.
#include "handlers/settings_frame.h"
#include "handlers/settings_handlers.h"

namespace {

constexpr Field kImageFields[] = {
    // 0..3: not set here
    U8("CamModReboot", 4),
    U8("ImgSetHMirror", 5),
    U8("ImgSetFlip", 6),
    U8("AfSense", 7),
    U8("DZoom", 8),
    U8("WBalance", 9),
    U8("WBRedGain", 10),
    U8("WBBlueGain", 11),
    U8("Exposure", 12),
    U8("ExpIris", 13),
    U8("ExpShutter", 14),
    U8("ExpGain", 15),
    U8("Sharpness", 16),
    U8("BackLight", 17),
    U8("DaynNight", 18),
    U8("Wdr", 19),
    U8("Focus", 20),
    U8("Resolution", 21),
    U8("ImgSetAutoFlip", 22),
    U8("ImgSetOverTilt", 23),
    U8("PropPanTilt", 24),
    U8("HomeMode", 25),
    U8("HomeId", 26),
    // 27..94: not set here
    U8("Initial", 327),  // looked up with the image settings
};

// Scans: 8 sets.
constexpr Field kScanActions[] = {
    U8("ScanViewId", 95),
    U8("ScanStartId", 96),
    U8("ScanEndId", 97),
    U8("ScanRunId", 99),
};
constexpr uint32_t kScanSetId = 98;
constexpr uint32_t kScanSets = 8;
constexpr Field kScanSlot[] = {
    U8("ScanSetMode", 100),
    U8("ScanSetDwell", 101),
    U8("ScanSetSpeed", 102),
    // 103..126: not set here
};

// Patterns: 8 sets; the run id is looked up after the set id.
constexpr Field kPatternActions[] = {
    U8("PatternViewId", 127),
    U8("PatternStartId", 128),
    U8("PatternEndId", 129),
};
constexpr uint32_t kPatternSetId = 130;
constexpr uint32_t kPatternSets = 8;
constexpr Field kPatternRunId = U8("PatternRunId", 131);
constexpr Field kPatternSlot = U8("PatternSetMode", 132);
// 133..276: not set here

// Tours: 8 tours of 8 steps; the run id is looked up after the set id.
constexpr Field kTourViewId = U8("TourViewId", 277);
constexpr uint32_t kTourSetId = 278;
constexpr uint32_t kTourSets = 8;
constexpr Field kTourRunId = U8("TourRunId", 279);
constexpr Field kTourSetMode = U8("TourSetMode", 280);
constexpr int kTourSteps = 8;
constexpr uint32_t kTourSetFncType = 281;  // "TourSetFncType%d", one byte per step
constexpr uint32_t kTourSetFncId = 289;    // "TourSetFncId%d", one byte per step

// Privacy masks: 24 sets.
constexpr Field kPrivacyViewId = U8("PrivacyViewId", 297);
constexpr uint32_t kPrivacySetId = 298;
constexpr uint32_t kPrivacySets = 24;
constexpr Field kPrivacySlot = U8("PrivacySetMode", 299);
// 300..323: not set here

// Zero-point (position calibration) commands, 255 when idle.
constexpr Field kZeroPointFields[] = {
    U8("ZeroClear", 324),
    U8("ZeroSet", 325),
    U8("ZeroGet", 326),
};

void MergeTourStep(const FormValue& form, const RecordView& record, const char* keyFormat, uint32_t base,
                   int step) {
  const uint32_t offset = base + static_cast<uint32_t>(step);
  MergeIndexedField(form, record, {keyFormat, step, 1, offset, 0, FieldType::U8, nullptr});
}

void Merge(const FormValue& form, const RecordView& record) {
  MergeFields(form, record, kImageFields);

  MergeFields(form, record, kScanActions);
  if (SetIdGateOpen(form, record, "ScanSetId", kScanSetId, kScanSets)) MergeFields(form, record, kScanSlot);

  MergeField(form, record, kPrivacyViewId);
  if (SetIdGateOpen(form, record, "PrivacySetId", kPrivacySetId, kPrivacySets)) {
    MergeField(form, record, kPrivacySlot);
  }

  MergeFields(form, record, kPatternActions);
  const bool patternOpen = SetIdGateOpen(form, record, "PatternSetId", kPatternSetId, kPatternSets);
  MergeField(form, record, kPatternRunId);
  if (patternOpen) MergeField(form, record, kPatternSlot);

  MergeField(form, record, kTourViewId);
  const bool tourOpen = SetIdGateOpen(form, record, "TourSetId", kTourSetId, kTourSets);
  MergeField(form, record, kTourRunId);
  if (tourOpen) {
    MergeField(form, record, kTourSetMode);
    for (int step = 0; step < kTourSteps; ++step) {
      MergeTourStep(form, record, "TourSetFncType%d", kTourSetFncType, step);
      MergeTourStep(form, record, "TourSetFncId%d", kTourSetFncId, step);
    }
  }

  MergeFields(form, record, kZeroPointFields);
}

// Action ids below their set count start an action on the camera.
constexpr uint32_t kEightSetActions[] = {95, 96, 97, 99, 127, 128, 129, 131, 277, 279};

int Result(const RecordView& record) {
  if (record.GetU8(kPrivacyViewId.offset) < kPrivacySets) return 0;
  for (uint32_t offset : kEightSetActions) {
    if (record.GetU8(offset) < 8) return 0;
  }
  for (const Field& command : kZeroPointFields) {
    if (record.GetU8(command.offset) != 0xFF) return 0;
  }
  return 1;
}

constexpr SettingsFamily kPtzModule1D = {
    .recordSize = 328,
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-2, false},
    .merge = Merge,
    .result = Result,
    .valueBufferSize = 256,
};

}  // namespace

int PtzModule1DSettings(char* errorBuffer, const char* recordPath) {
  return RunSettingsFrame<kPtzModule1D>(errorBuffer, recordPath);
}
