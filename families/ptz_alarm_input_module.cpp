// PTZ camera modules with alarm inputs and preset groups:
// retry read. Each editing group is gated on its set id; one-shot ids are
// idle at or above their kind's limit. The camera title is cut to 15
// characters and cleared when not posted; the group steps' local flags are
// checkboxes, set when posted and cleared when not.
#include "families/ptz_blocks.h"
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

// Kinds: their set-id gate, and the limit below which their one-shot ids
// are pending commands.
constexpr uint32_t kPrivacyLimit = 8;
constexpr uint32_t kScanLimit = 8;

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

constexpr Field kPrivacyViewId = U8("PrivacyViewId", 152, IdBelow(kPrivacyLimit));
constexpr Field kPrivacyStartEnd[] = {
    U8("PrivacyStartId", 153, IdBelow(kPrivacyLimit)),
    U8("PrivacyEndId", 154, IdBelow(kPrivacyLimit)),
};
constexpr Field kPrivacySetId = U8("PrivacySetId", 155);
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

using Presets = PtzPresetBlock<210, IdBelow(32)>;
// 214..253: not set here

constexpr Field kScanActions[] = {
    U8("ScanViewId", 254, IdBelow(kScanLimit)),
    U8("ScanRunId", 255, IdBelow(kScanLimit)),
    U8("ScanStopId", 256, IdBelow(kScanLimit)),
};
constexpr Field kScanSetId = U8("ScanSetId", 257);
constexpr Field kScanSlot[] = {
    U8("ScanSetMode", 258),
    U8("ScanSetSpeed", 259),
    U8("ScanSetDwell", 260),
    U8("ScanSetStartPreset", 261),
    U8("ScanSetEndPreset", 262),
    // 263..266: not set here
};

using Patterns = PtzPatternBlock<267, IdBelow(4)>;
// 274..663: not set here

using Groups = PtzGroupBlock<664, IdBelow(6)>;
constexpr Field kGroupRunStop[] = {
    U8("GrpRunId", 731, IdBelow(Groups::kGroups)),
    U8("GrpStopId", 732, IdBelow(Groups::kGroups)),
};

using AlarmInputs = PtzAlarmInputBlock<744>;
// The alarm-off setting exists once, as index 0.
using AlarmOff = PtzAlarmOffBlock<776, 1>;
// 780..784: not set here
constexpr Field kAlarmClear = U8("AlmClear", 785, kAction);
// 786..787: not set here

// The blocks each set id opens.
constexpr Block kPrivacyEdit[] = {Fields(kPrivacySlot)};
constexpr Block kPresetEdit[] = {Fields(Presets::kSetMode)};
constexpr Block kScanEdit[] = {Fields(kScanSlot)};
constexpr Block kPatternEdit[] = {Fields(Patterns::kSetMode)};
constexpr Block kGroupEdit[] = {Fields(Groups::kSetEnable), Steps(Groups::kSteps)};

constexpr Block kLayout[] = {
    Fields(kImage),
    ClearedText(kCamTitle),  // cut to the field; an absent or empty title clears it
    Fields(kAutoRun),
    Fields(kPrivacyViewId),
    Gate(kPrivacySetId, kPrivacyLimit, kPrivacyEdit),
    Fields(kPrivacyStartEnd),
    Fields(Presets::kView),
    Gate(Presets::kSetId, Presets::kPresets, kPresetEdit),
    Fields(Presets::kClear),
    Fields(kScanActions),
    Gate(kScanSetId, kScanLimit, kScanEdit),
    Fields(Patterns::kActions),
    Gate(Patterns::kSetId, Patterns::kPatterns, kPatternEdit),
    Fields(Groups::kView),
    Gate(Groups::kSetId, Groups::kGroups, kGroupEdit),
    Fields(kGroupRunStop),
    Steps(AlarmInputs::kArrays),
    Steps(AlarmOff::kArrays),
    Fields(kAlarmClear),
};

}  // namespace

constexpr SettingsFamily kPtzAlarmInputModule = {
    .readPolicy = ReadPolicy::Retry,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<788>(kLayout),
    .result = kUnlessPending,
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kPtzAlarmInputModuleNotes = {"PTZ alarm-input module"};
