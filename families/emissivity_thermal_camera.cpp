// Thermal cameras with an emissivity table: continue read.
// "EmissivityData" goes to the table slot that the emissivity mode selects.
// On some modules (a constant of their own) a pending zoom, calibration or
// menu command keeps the browser on its page.
#include "frame/settings_frame.h"
#include "families/families.h"

namespace {

constexpr Field kFields[] = {
    U8("Version", 0),
    // 1..2: not set here
    U8("VideoMode", 3),
    U8("DZoomEnable", 4),
    U8("DZoomTeleStart", 5, kCommand),
    U8("DZoomWideStart", 6, kCommand),
    U8("DZoomStop", 7, kCommand),
    U8("DZoomDirect", 8),
    U8("AgcMode", 9),
    U8("Contrast", 10),
    U8("Brightness", 11),
    U8("AgcCenterPos", 12),
    U8("AgcLevel", 13),
    U8("AgcRoiSelect", 14),
    U8("AgcRoi", 15),
    U16("AgcRoiPosLeftTopX", 16),
    U16("AgcRoiPosLeftTopY", 18),
    U16("AgcRoiPosRightBottX", 20),
    U16("AgcRoiPosRightBottY", 22),
    U8("CalibrationMode", 24),
    // 25: not set here
    U16("CalibrationInterval", 26),
    U8("CalibrationExecute", 28, kCommand),
    U8("LevelMode", 29),
    U8("MideLevel", 30),
    U8("SharpnessLevel", 31),
    U8("ColorMode", 32),
    U8("MirrorMode", 33),
    U8("FlipMode", 34),
    U8("FreezMode", 35),
    U8("InverseMode", 36),
    U8("OsdEnable", 37),
    U8("OsdMode", 38),
    U8("TempMode", 39),
    U8("AlarmMode", 40),
    U8("AlarmSelect", 41),
    U16("AlarmHTemp", 42),
    U16("AlarmLTemp", 44),
    U8("DetectMode", 46),
    U8("CenterSetEnable", 47),
    // 48..59: not set here
};

// Eleven measurement boxes (0..10) as four parallel arrays of halfwords.
constexpr IndexedField kBoxEdges[] = {
    Indexed("TempPosTop%d", 0, 11, 60, 2, FieldType::U16),
    Indexed("TempPosLeft%d", 0, 11, 82, 2, FieldType::U16),
    Indexed("TempPosBottom%d", 0, 11, 104, 2, FieldType::U16),
    Indexed("TempPosRight%d", 0, 11, 126, 2, FieldType::U16),
};

constexpr Field kEmissivityMode = U8("EmissivityMode", 148);
// "EmissivityData" goes to the slot of the mode as it stands after this
// request, one per mode 0..11; a mode with no slot stores nothing.
constexpr SlotTable kEmissivityTable = Slots("EmissivityData", 149, 12, 1, FieldType::U8);

constexpr Field kTailFields[] = {
    U8("TempOsd", 161),
    U8("BaudRate", 162),
    U8("OsdMenu", 163, kCommand),
    U8("FocusMode", 164),
    U8("AutoFocusMode", 165),
    U16("ManualFocusDirect", 166),
    U8("BlcMode", 168),
    U8("WhiteBalanceMode", 169),
    U8("Defog", 170),
    U8("DssMode", 171),
    U8("ShutterSpeed", 172),
    U8("Flicker", 173),
    U8("Aperture", 174),
    U8("DigitalZoom", 175),
    U8("DayNightMode", 176),
    U8("HighResolutionMode", 177),
    U8("ImageStabilizer", 178),
    U8("NoiseRedution", 179),
    U8("CamCtlPage", 180),
    // 181: not set here
};

constexpr Block kLayout[] = {
    Fields(kFields),
    Steps(kBoxEdges),
    Fields(kEmissivityMode),
    Slot(kEmissivityTable, kEmissivityMode),
    Fields(kTailFields),
};
constexpr Layout kChecked = CheckedLayout<182>(kLayout);

}  // namespace

constexpr SettingsFamily kEmissivityThermalCamera = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-2, false},
    .layout = kChecked,
};

constexpr SettingsFamily kEmissivityThermalCameraAnsweringPending = {
    .readPolicy = ReadPolicy::Continue,
    .writeFailure = {-2, false},
    .layout = kChecked,
    .result = kUnlessPending,
};

// The key reference's notes (the inspector's alone): the family's name.
const KeyReferenceNotes kEmissivityThermalCameraNotes = {"Emissivity thermal camera"};
const KeyReferenceNotes kEmissivityThermalCameraAnsweringPendingNotes = {
    "Emissivity thermal camera answering pending commands"};
