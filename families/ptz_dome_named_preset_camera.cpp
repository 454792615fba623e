// PTZ domes with named presets, tours, groups, swings and privacy masks:
// retry read. A preset name goes to the slot of the
// preset being edited, a request without a device title clears it, and
// any pending run command answers 204.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

// 0..255: not set here
// 256..4607: 256 preset names of 17 bytes, slot n at 256 + 17 * n. The name
// goes to the slot of the preset id as it stands now; an id without a slot
// takes no name.
constexpr SlotTable kPresetNames = Slots("PresetName", 256, 256, 17, FieldType::Text, 17);

constexpr Field kPresetRunId = U16("PresetRunId", 4608, kCommand);
constexpr Field kPresetSetId = U16("PresetSetId", 4610);
constexpr Field kPresetMode = U8("PresetMode", 4612);
// 4613: not set here
constexpr Field kPresetAllClear = U16("PresetAllClear", 4614, kAction);
// 4616..5135: not set here

constexpr Field kTourKeys[] = {
    U8("TourSetId", 5136),
    U8("TourRunId", 5137, kCommand),
    U8("TourMode", 5138),
};
// One tour of 16 steps as four parallel arrays, merged step by step.
constexpr IndexedField kTourSteps[] = {
    Indexed("TourEnable%d", 0, 16, 5139, 1, FieldType::U8),
    Indexed("TourPrsId%d", 0, 16, 5155, 1, FieldType::U8),
    Indexed("TourSpeed%d", 0, 16, 5171, 1, FieldType::U8),
    Indexed("TourDwell%d", 0, 16, 5187, 1, FieldType::U8),
};
constexpr Field kTourAllClear = U8("TourAllClear", 5203, kAction);
// 5204..5275: not set here

constexpr Field kGroupKeys[] = {
    U8("GroupRunId", 5276, kCommand),
    U8("GroupSetId", 5277),
    U8("GroupMode", 5278),
};
constexpr IndexedField kGroupTours = Indexed("GroupTourId%d", 0, 8, 5279, 1, FieldType::U8);

constexpr Field kSwingAndPositionKeys[] = {
    U8("GroupAllClear", 5287, kAction),
    // 5288..5335: not set here
    U8("SwingRunId", 5336, kCommand),
    U8("SwingSetId", 5337),
    U8("SwingMode", 5338),
    U8("SwingStart", 5339, kAction),
    U8("SwingEnd", 5340),
    U8("SwingSpeed", 5341),
    U8("SwingDwell", 5342),
    U8("SwingDirection", 5343),
    // 5344: not set here
    U8("SwingAllClear", 5345, kAction),
    U8("HomePosRunId", 5346, kCommand),
    U8("HomePosSetId", 5347, kCommand),
    U8("HomePosClearId", 5348, kCommand),
    U8("ZeroPosRunId", 5349, kCommand),
    U8("ZeroPosSetId", 5350, kCommand),
    U8("ZeroPosClearId", 5351, kCommand),
    // 5352..5423: not set here
};

// Eight privacy masks: "Privacy<i><side>", each side an array of 8 halfwords.
constexpr IndexedField kPrivacySides[] = {
    Indexed("Privacy%dTop", 0, 8, 5424, 2, FieldType::U16),
    Indexed("Privacy%dLeft", 0, 8, 5440, 2, FieldType::U16),
    Indexed("Privacy%dBottom", 0, 8, 5456, 2, FieldType::U16),
    Indexed("Privacy%dRight", 0, 8, 5472, 2, FieldType::U16),
};

constexpr Field kCameraKeys[] = {
    U8("ZoomSpeed", 5488),
    U8("DZoomMode", 5489),
    U8("FocusSpeed", 5490),
    U8("FocusMode", 5491),
    U8("FocusNearLimit", 5492),
    U8("WbMode", 5493),
    U8("RGain", 5494),
    U8("BGain", 5495),
    U8("AeMode", 5496),
    U8("SlowShutter", 5497),
    U8("GainLimit", 5498),
    U8("ExposureComp", 5499),
    U8("ShutterSpeed", 5500),
    U8("IrisLevel", 5501),
    U8("BrightLevel", 5502),
    U8("GainValue", 5503),
    U8("WdrMode", 5504),
    U8("BrightnessLevel", 5505),
    U8("BrightnessCompensation", 5506),
    U8("CompensationLevel", 5507),
    U8("IcrMode", 5508),
    U8("ApertureGain", 5509),
    U8("BackLight", 5510),
    U8("Stabilizer", 5511),
    U8("IcrOnLevel", 5512),
    U8("IcrOffLevel", 5513),
    U8("GammaMode", 5514),
    U8("ChromaSet", 5515),
    U8("HrMode", 5516),
    U8("NrLevel", 5517),
    U8("DefogSet", 5518),
    U8("HlcSet", 5519),
    U8("HlcLevel", 5520),
    U8("ProPortional", 5521),
    U8("DFlip", 5522),
    U8("PowerOn", 5523),
    U8("ImgFreeze", 5524),
    U8("MdWindow", 5525),
    U8("IrAdjust", 5526),
};

constexpr Field kDeviceTitle = Text("DeviceTitle", 5527, 16);

constexpr Field kDisplayKeys[] = {
    U8("AutoRunMotion", 5543),
    U8("AutoRunTime", 5544),
    U8("AutoRunNumber", 5545),
    U8("ZeroPosition", 5546),
    U8("LiveZoom", 5547),
    U8("LiveZoomSize", 5548),
    // 5549: not set here
    U16("XHighPosition", 5550),
    U16("XLowPosition", 5552),
    U16("YHighPosition", 5554),
    U16("YLowPosition", 5556),
    U8("OsdDisplay", 5558, kCommand),
    // 5559: not set here
    U8("CamCtlPage", 5560),
    // 5561: not set here
};

// The return page only while no command is pending and the OSD display
// byte is idle.
constexpr Block kLayout[] = {
    Fields(kPresetRunId),
    Fields(kPresetSetId),
    Fields(kPresetMode),
    Slot(kPresetNames, kPresetSetId),
    Fields(kPresetAllClear),
    Fields(kTourKeys),
    Steps(kTourSteps),
    Fields(kTourAllClear),
    Fields(kGroupKeys),
    Steps(kGroupTours),
    Fields(kSwingAndPositionKeys),
    Steps(kPrivacySides),
    Fields(kCameraKeys),
    // A request without a title (absent or empty) clears the stored one; a
    // title longer than a form value may be changes nothing.
    ClearedText(kDeviceTitle),
    Fields(kDisplayKeys),
};

}  // namespace

constexpr SettingsFamily kPtzDomeNamedPresetCamera = {
    .readPolicy = ReadPolicy::Retry,
    .writeFailure = {-2, false},
    .layout = CheckedLayout<5562>(kLayout),
    .result = kUnlessPending,
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kPtzDomeNamedPresetCameraNotes = {"PTZ dome with named presets"};
