#include "inspect/family_notes.h"

#include <string.h>

#include "families/families.h"

// In the order of families/families.h.
const FamilyNotes kFamilyNotes[] = {
    {&kAutoBrightnessCamera, "Auto-brightness camera", {}, nullptr, ""},
    {&kBasicColourCamera, "Basic colour camera", {}, nullptr, ""},
    {&kBasicImageModule, "Basic image module", {}, nullptr, ""},
    {&kChromaAccCamera, "Chroma and colour-control camera", {}, nullptr, ""},
    {&kColourCamera, "Colour camera", {}, nullptr, ""},
    {&kDayNightCamera, "Day/night camera", {}, nullptr, ""},
    {&kDayNightIrCamera, "Day/night IR camera", {}, nullptr, ""},
    {&kDcIrisCamera, "DC-iris camera", {}, nullptr, ""},
    {&kEmissivityThermalCamera, "Emissivity thermal camera", {}, nullptr, ""},
    {&kEnvironmentModeCamera, "Environment-mode camera", {}, nullptr, ""},
    {&kFlickerlessCamera, "Flickerless camera", {}, nullptr, ""},
    {&kFullHdWdrCamera,
        "Full-HD WDR camera",
        {"each backlight area is kept inside the 1920 by 1080 picture: a size reaching past the "
         "edge is cut to "
         "end at it (a position already past it leaves the wrapped 16-bit difference)",
            "StabilizerMode is set to 0 under BacklightMode 1; byte 121 says which is in charge: 0 "
            "backlight "
            "compensation, 1 stabilizer, 2 neither"},
        nullptr,
        "HsblcArea1SizeX HsblcArea2SizeX HsblcArea3SizeX HsblcArea4SizeX "
        "HsblcArea1SizeY HsblcArea2SizeY HsblcArea3SizeY HsblcArea4SizeY StabilizerMode"},
    {&kInfraredSwitchingCamera, "Infrared-switching camera", {}, nullptr, ""},
    {&kIrPtzModule, "IR PTZ module", {}, nullptr, ""},
    {&kKeyPowerFrequencyModule, "Key and mains-frequency module", {}, nullptr, ""},
    {&kLensImageModule, "Lens and image module", {}, nullptr, ""},
    {&kMainsFrequencyFlagCamera,
        "Mains-frequency flag camera",
        {"a posted ExposerFrequency also sets byte 1 (1 when the stored choice is not 0) and byte "
         "2 (1 when it "
         "is 0)"},
        nullptr,
        ""},
    {&kNoiseSharpnessDefogCamera, "Noise, sharpness and defog camera", {}, nullptr, ""},
    {&kOsdMenuKeyCamera, "OSD menu key camera", {}, nullptr, ""},
    {&kPtzAlarmChannelCamera, "PTZ alarm-channel camera", {}, nullptr, ""},
    {&kPtzAlarmInputModule, "PTZ alarm-input module", {}, nullptr, ""},
    {&kPtzAlarmIoModule, "PTZ alarm I/O module", {}, nullptr, ""},
    {&kPtzDomeCamera, "PTZ dome camera", {}, nullptr, ""},
    {&kPtzDomeNamedPresetCamera, "PTZ dome with named presets", {}, nullptr, ""},
    {&kPtzDomePresetFileModule,
        "PTZ dome with the preset file",
        {},
        "while PresetSetId is below 32 (after the keys up to PresetSetFocus), preset n (1 to 31) "
        "gets its flag "
        "(PresetSetMode, not 0 in its low 16 bits: set) and its label (PresetSetLabel, 64 bytes, "
        "cleared when "
        "absent or empty) in the preset file; MainTitle is written only by a save that opened no "
        "edit slot and "
        "has no pending action",
        "PresetSetMode PresetSetLabel"},
    {&kPtzModule1D, "PTZ module with zero-point calibration", {}, nullptr, ""},
    {&kPtzWiperHeaterModule, "PTZ wiper and heater module", {}, nullptr, ""},
    {&kReversedThresholdCamera, "Reversed-threshold camera", {}, nullptr, ""},
    {&kSensUpCamera, "Sens-up camera", {}, nullptr, ""},
    {&kSensorImageProcessing, "Sensor image processing", {}, nullptr, ""},
    {&kSingleKeyModule, "Single-key module", {}, nullptr, ""},
    {&kThermalCamera, "Thermal camera", {}, nullptr, ""},
    {&kThermalImagingModule, "Thermal imaging module", {}, nullptr, ""},
    {&kThermalPtzPositioner,
        "Thermal PTZ positioner",
        {"PresetName: the slot of PresetSetId, 32 bytes at 544 + 32 * id, while the id is below "
         "65535",
            "PresetRunStr: the slot of PresetRunSetId, 128 bytes at 25958 + 128 * id, while the id "
            "is below 255",
            "ScanSetName: the slot of ScanSetId, 32 bytes at 26502 + 32 * id, while the id is "
            "below 255",
            "TourSetName: the slot of TourSetId, 32 bytes at 26808 + 32 * id, while the id is "
            "below 255",
            "GroupSetName: the slot of GroupSetId, 32 bytes at 27526 + 32 * id, while the id is "
            "below 255. Each of "
            "these names is copied with its NUL, at most a slot less one byte; an absent or empty "
            "one clears the "
            "slot's first 16 bytes (all 128 of a run string); the ids are not bounded by their "
            "table, so a large "
            "id reaches into the tables and fields after it, and a copy or clear past the record's "
            "end is skipped"},
        nullptr,
        "PresetName PresetRunStr ScanSetName TourSetName GroupSetName"},
    {&kTwoByteKeyPowerFrequencyModule, "Two-byte key and mains-frequency module", {}, nullptr, ""},
    {&kTwoSetImageTuning, "Two-set image tuning", {}, nullptr, ""},
    {&kTwoStreamEncodingCamera, "Two-stream encoding camera", {}, nullptr, ""},
    {&kUnroutedZoomModule, "Zoom module without a module code", {}, nullptr, ""},
    {&kWdrIspCamera, "WDR ISP camera", {}, nullptr, ""},
    {&kZoomCameraModule, "Zoom camera module", {}, nullptr, ""},
};
const int kFamilyNoteCount = sizeof kFamilyNotes / sizeof kFamilyNotes[0];

const FamilyNotes* FindFamilyNotes(const SettingsFamily* family) {
  for (const FamilyNotes& notes : kFamilyNotes)
    if (notes.family == family) return &notes;
  return nullptr;
}

bool IsOwnKey(const FamilyNotes& notes, const char* key) {
  const size_t length = strlen(key);
  for (const char* at = notes.ownKeys; (at = strstr(at, key)) != nullptr; at += length)
    if ((at == notes.ownKeys || at[-1] == ' ') && (at[length] == ' ' || at[length] == '\0'))
      return true;
  return false;
}
