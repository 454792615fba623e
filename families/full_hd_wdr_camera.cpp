// Full-HD WDR cameras: retry read. "KeyValue" locks the
// record; four backlight areas are kept inside the 1920 by 1080 picture;
// the stabilizer is off under backlight mode 1, and byte 121 tells the
// camera which of the two is in charge.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

// Locks the record while not 0, and then answers 204.
constexpr Field kKeyValue = U8("KeyValue", 0, kRequestFlag);

constexpr Field kBacklightMode = U8("BacklightMode", 1);
constexpr Field kBacklight[] = {
    kBacklightMode,
    U8("BlcGain", 2),
    U8("HsblcModeAgcTh", 3),
    U8("HsblcAreaSelect", 4),
    U8("HsblcMode", 5),
    U8("HsblcMaskEn", 6),
    U8("HsblcLevel", 7),
};

// 8..39: four arrays of four halfwords, element n-1 for area n.
constexpr IndexedField kAreaPosX = Indexed("HsblcArea%dPosX", 1, 4, 8, 2, FieldType::U16);
constexpr IndexedField kAreaPosY = Indexed("HsblcArea%dPosY", 1, 4, 16, 2, FieldType::U16);
constexpr IndexedField kAreaSizeX = Indexed("HsblcArea%dSizeX", 1, 4, 24, 2, FieldType::U16);
constexpr IndexedField kAreaSizeY = Indexed("HsblcArea%dSizeY", 1, 4, 32, 2, FieldType::U16);
constexpr IndexedField kAreas[] = {kAreaPosX, kAreaPosY, kAreaSizeX, kAreaSizeY};
constexpr IndexedField kAreaSizes[] = {kAreaSizeX, kAreaSizeY};  // see KeepAreasInsidePicture
constexpr uint32_t kPictureWidth = 1920;
constexpr uint32_t kPictureHeight = 1080;

constexpr Field kStabilizerMode = U8("StabilizerMode", 90);  // see StabilizerRule
constexpr Field kExposureToStabilizer[] = {
    U8("LensMode", 40),
    U8("DcLensMode", 41),
    U8("DcIndoorShutMode", 42),
    U8("DcOutdoorShutMode", 43),
    U8("ManualShutMode", 44),
    U8("AgcMode", 45),
    U8("Brightness", 46),
    U8("SensUpMode", 47),
    U8("SensUpMax", 48),
    U8("AgcLevel", 49),
    U8("WdrGain", 50),
    U8("LowLightMode", 51),
    U8("LowLightTarget", 52),
    U8("WbMode", 53),
    U8("ManualBlueGain", 54),
    U8("ManualRedGain", 55),
    U8("IndoorBlueGain", 56),
    U8("IndoorRedGain", 57),
    U8("OutdoorBlueGain", 58),
    U8("OutdoorRedGain", 59),
    U8("CustomBlueGain", 60),
    U8("CustomRedGain", 61),
    U8("AwcSet", 62, kAction),
    U8("StaticDpcMode", 63),
    U8("StaticDpcScan", 64),
    U8("StaticDpcAgc", 65),
    U8("StaticDpcTh", 66),
    U8("StaticDpcSensUp", 67),
    U8("LiveDpcMode", 68),
    U8("LiveDpcTh", 69),
    U8("LiveDpcAgcTh", 70),
    U8("Nr2dMode", 71),
    U8("Nr3dMode", 72),
    U8("Nr3dLinearMode", 73),
    U8("Nr3dControlMode", 74),
    U8("Nr3dSmartMode", 75),
    U8("Nr3dSmartLevel", 76),
    U8("DefogMode", 77),
    U8("DefogGradation", 78),
    U8("DefogDirection", 79),
    U16("LumaGain", 80),
    U16("LumaWdrGain", 82),
    U16("LumaOffset", 84),
    U16("LumaWdrOffset", 86),
    U8("SharpnessMode", 88),
    U8("SharpnessLevel", 89),
    kStabilizerMode,
};

constexpr Field kOutputAndDayNight[] = {
    U8("CvbsOutType", 91),
    U8("DayNightMode", 92),
    U8("DayNightFilterMode", 93),
    // 94..96: not set here
    U8("AutoDetectMode", 97),
    U8("AutoDayNightDelay", 98),
    U8("AutoAgcDnStartLevel", 99),
    U8("AutoAgcDnEndLevel", 100),
    U8("AutoWdrAgcDnStartLevel", 101),
    U8("AutoWdrAgcDnEndLevel", 102),
    U8("AutoCdsAgcDnStartLevel", 103),
    U8("AutoCdsAgcDnEndLevel", 104),
    // 105..107: not set here
    U8("BwBurst", 108),
    U8("BwIrSmart", 109),
    U8("BwIrLed", 110),
    // 111: not set here
    U8("BwIrSmartPosX", 112),
    U8("BwIrSmartPosY", 113),
    U8("BwIrSmartSizeX", 114),
    U8("BwIrSmartSizeY", 115),
    U8("BwIrSmartLevel", 116),
    U8("BwIrPwmLevel", 117),
    U8("ExtDayNightDelay", 118),
    U8("MirrorMode", 119),
    U8("CamCtlPage", 120),
    // 121: derived, see StabilizerRule
    U8("DayNightAutoFocus", 122),
};

constexpr Field kIrisScanSet = U8("IrisScanSet", 123);
// 124..129: not set here

constexpr uint32_t kStabilizerState = 121;

// A size that would reach past the picture's edge is cut to end at it; a
// position already past the edge leaves the wrapped 16-bit difference.
void KeepInsidePicture(
    const RecordView& record, uint32_t posOffset, uint32_t sizeOffset, uint32_t edge) {
  const uint32_t position = record.GetU16(posOffset);
  if (record.GetU16(sizeOffset) + position > edge) record.PutU16(sizeOffset, edge - position);
}

void KeepAreasInsidePicture(const OwnContext& context) {
  const RecordView& record = context.record;
  for (int i = 0; i < kAreaPosX.count; ++i) {
    KeepInsidePicture(
        record, kAreaPosX.Element(i).offset, kAreaSizeX.Element(i).offset, kPictureWidth);
    KeepInsidePicture(
        record, kAreaPosY.Element(i).offset, kAreaSizeY.Element(i).offset, kPictureHeight);
  }
}

// The stabilizer (the rule's row) is off under backlight mode 1; byte 121
// tells the camera which of the two is in charge: 0 backlight
// compensation, 1 stabilizer, 2 neither.
void StabilizerRule(const OwnContext& context) {
  const RecordView& record = context.record;
  const Field& stabilizerMode = *context.row;
  const bool backlight = record.GetU8(kBacklightMode.offset) == 1;
  if (backlight) record.PutU8(stabilizerMode.offset, 0);
  const uint32_t state = backlight ? 0 : record.GetU8(stabilizerMode.offset) == 1 ? 1 : 2;
  record.PutU8(kStabilizerState, state);
}

// The rows the own rules change.
constexpr Block kAreaSizesKept = Steps(kAreaSizes);
constexpr Block kStabilizerSwitched = Fields(kStabilizerMode);

constexpr Block kLayout[] = {
    KeyValueLock(kKeyValue),
    Fields(kBacklight),
    Steps(kAreas),
    Own(KeepAreasInsidePicture, kAreaSizesKept),
    Fields(kExposureToStabilizer),
    Own(kStabilizerMode, StabilizerRule, &kStabilizerSwitched),
    Fields(kOutputAndDayNight),
    Fields(kIrisScanSet),
};

}  // namespace

constexpr SettingsFamily kFullHdWdrCamera = {
    .readPolicy = ReadPolicy::Retry,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<130>(kLayout),
    .result = kUnlessPending,
};

// The key reference's notes (the inspector's alone): the family's name and
// what each own rule does.
const KeyReferenceNotes kFullHdWdrCameraNotes = {"Full-HD WDR camera",
    {"each backlight area is kept inside the 1920 by 1080 picture: a size reaching past the edge "
     "is cut to end at it (a position already past it leaves the wrapped 16-bit difference)",
        "set to 0 under backlight mode 1; byte 121 says which is in charge: 0 backlight "
        "compensation, 1 stabilizer, 2 neither"}};
