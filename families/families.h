// Every settings family: one line a family, its constant's name (without
// the k) and the file in families/ that defines it. The build takes the
// family files from this list, and the inspector its families' notes.
#pragma once

#include "frame/settings_frame.h"

// What the key reference says of a family that its layout cannot: the
// family's name, and what each of its own rules does, in layout order (the
// rows a rule changes are named by its Own block).
struct KeyReferenceNotes {
  const char* name;
  const char* ownRules[2] = {};
};

// X(Name, file): the constant kName and the notes kNameNotes, both defined
// in families/file.cpp. The notes are the key reference's (see
// inspect/family_notes.h); the product never refers to them.
#define ZRCAMCTL_FAMILIES(X)                                            \
  X(AutoBrightnessCamera, auto_brightness_camera)                       \
  X(BasicColourCamera, basic_colour_camera)                             \
  X(BasicImageModule, basic_image_module)                               \
  X(ChromaAccCamera, chroma_acc_camera)                                 \
  X(ColourCamera, colour_camera)                                        \
  X(DayNightCamera, day_night_camera)                                   \
  X(DayNightIrCamera, day_night_ir_camera)                              \
  X(DcIrisCamera, dc_iris_camera)                                       \
  X(EmissivityThermalCamera, emissivity_thermal_camera)                 \
  X(EmissivityThermalCameraAnsweringPending, emissivity_thermal_camera) \
  X(EnvironmentModeCamera, environment_mode_camera)                     \
  X(FlickerlessCamera, flickerless_camera)                              \
  X(FullHdWdrCamera, full_hd_wdr_camera)                                \
  X(InfraredSwitchingCamera, infrared_switching_camera)                 \
  X(IrPtzModule, ir_ptz_module)                                         \
  X(KeyPowerFrequencyModule, key_power_frequency_module)                \
  X(LensImageModule, lens_image_module)                                 \
  X(MainsFrequencyFlagCamera, mains_frequency_flag_camera)              \
  X(NoiseSharpnessDefogCamera, noise_sharpness_defog_camera)            \
  X(OsdMenuKeyCamera, osd_menu_key_camera)                              \
  X(PtzAlarmChannelCamera, ptz_alarm_channel_camera)                    \
  X(PtzAlarmInputModule, ptz_alarm_input_module)                        \
  X(PtzAlarmIoModule, ptz_alarm_io_module)                              \
  X(PtzDomeCamera, ptz_dome_camera)                                     \
  X(PtzDomeNamedPresetCamera, ptz_dome_named_preset_camera)             \
  X(PtzDomePresetFileModule, ptz_dome_preset_file_module)               \
  X(PtzModule1D, ptz_module_1d)                                         \
  X(PtzWiperHeaterModule, ptz_wiper_heater_module)                      \
  X(ReversedThresholdCamera, reversed_threshold_camera)                 \
  X(SensUpCamera, sens_up_camera)                                       \
  X(SensorImageProcessing, sensor_image_processing)                     \
  X(SingleKeyModule, single_key_module)                                 \
  X(ThermalCamera, thermal_camera)                                      \
  X(ThermalImagingModule, thermal_imaging_module)                       \
  X(ThermalPtzPositioner, thermal_ptz_positioner)                       \
  X(TwoByteKeyPowerFrequencyModule, key_power_frequency_module)         \
  X(TwoSetImageTuning, two_set_image_tuning)                            \
  X(TwoStreamEncodingCamera, two_stream_encoding_camera)                \
  X(UnroutedZoomModule, unrouted_zoom_module)                           \
  X(WdrIspCamera, wdr_isp_camera)                                       \
  X(ZoomCameraModule, zoom_camera_module)

#define ZRCAMCTL_DECLARE_FAMILY(name, file) \
  extern const SettingsFamily k##name;      \
  extern const KeyReferenceNotes k##name##Notes;
ZRCAMCTL_FAMILIES(ZRCAMCTL_DECLARE_FAMILY)
#undef ZRCAMCTL_DECLARE_FAMILY
