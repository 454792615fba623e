// Every handler family, one constant each (defined in the family's file).
// The module table names the family of each camera module.
#pragma once

#include "frame/settings_frame.h"

extern const SettingsFamily kAutoBrightnessCamera;
extern const SettingsFamily kBasicColourCamera;
extern const SettingsFamily kBasicImageModule;
extern const SettingsFamily kChromaAccCamera;
extern const SettingsFamily kColourCamera;
extern const SettingsFamily kDayNightCamera;
extern const SettingsFamily kDayNightIrCamera;
extern const SettingsFamily kDcIrisCamera;
extern const SettingsFamily kEmissivityThermalCamera;
extern const SettingsFamily kEnvironmentModeCamera;
extern const SettingsFamily kFlickerlessCamera;
extern const SettingsFamily kFullHdWdrCamera;
extern const SettingsFamily kInfraredSwitchingCamera;
extern const SettingsFamily kIrPtzModule;
extern const SettingsFamily kKeyPowerFrequencyModule;
extern const SettingsFamily kLensImageModule;
extern const SettingsFamily kMainsFrequencyFlagCamera;
extern const SettingsFamily kNoiseSharpnessDefogCamera;
extern const SettingsFamily kOsdMenuKeyCamera;
extern const SettingsFamily kPtzAlarmChannelCamera;
extern const SettingsFamily kPtzAlarmInputModule;
extern const SettingsFamily kPtzAlarmIoModule;
extern const SettingsFamily kPtzDomeCamera;
extern const SettingsFamily kPtzDomeNamedPresetCamera;
extern const SettingsFamily kPtzDomePresetFileModule;
extern const SettingsFamily kPtzModule1D;
extern const SettingsFamily kPtzWiperHeaterModule;
extern const SettingsFamily kReversedThresholdCamera;
extern const SettingsFamily kSensUpCamera;
extern const SettingsFamily kSensorImageProcessing;
extern const SettingsFamily kSingleKeyModule;
extern const SettingsFamily kThermalCamera;
extern const SettingsFamily kThermalImagingModule;
extern const SettingsFamily kThermalPtzPositioner;
extern const SettingsFamily kTwoByteKeyPowerFrequencyModule;
extern const SettingsFamily kTwoSetImageTuning;
extern const SettingsFamily kTwoStreamEncodingCamera;
extern const SettingsFamily kUnroutedZoomModule;
extern const SettingsFamily kWdrIspCamera;
extern const SettingsFamily kZoomCameraModule;
