// The settings handler of every camera-module family.
//
// A handler merges the posted form into its family's settings record at
// recordPath. 1 (or another positive value): stored, send the return page;
// 0: stored, answer 204; negative: failed, errorBuffer says why.
#pragma once

using SettingsHandler = int (*)(char* errorBuffer, const char* recordPath);

#define ZR_SETTINGS_HANDLER(name) int name(char* errorBuffer, const char* recordPath)

ZR_SETTINGS_HANDLER(BasicColourCameraSettings);              // 0H 0K
ZR_SETTINGS_HANDLER(ThermalCameraSettings);                  // 0D 09
ZR_SETTINGS_HANDLER(ReversedThresholdCameraSettings);        // 0G
ZR_SETTINGS_HANDLER(AutoBrightnessCameraSettings);           // 0v 0V 0W
ZR_SETTINGS_HANDLER(DcIrisCameraSettings);                   // 0h 0k
ZR_SETTINGS_HANDLER(WdrIspCameraSettings);                   // 0c 1c
ZR_SETTINGS_HANDLER(FlickerlessCameraSettings);              // 0j 0i
ZR_SETTINGS_HANDLER(EnvironmentModeCameraSettings);          // 0C
ZR_SETTINGS_HANDLER(SensUpCameraSettings);                   // 0o
ZR_SETTINGS_HANDLER(ChromaAccCameraSettings);                // 0M 0m
ZR_SETTINGS_HANDLER(DayNightIrCameraSettings);               // 0y 0Y 0w 0X 0Z 0S 1w 1V 0T
ZR_SETTINGS_HANDLER(FullHdWdrCameraSettings);                // 0O 0I 05 1H 1h
ZR_SETTINGS_HANDLER(MainsFrequencyFlagCameraSettings);       // 0l
ZR_SETTINGS_HANDLER(PtzDomeCameraSettings);                  // 0L 0f 1L
ZR_SETTINGS_HANDLER(UnroutedZoomModuleSettings);             // in no row
ZR_SETTINGS_HANDLER(PtzAlarmChannelCameraSettings);          // 03 13 23
ZR_SETTINGS_HANDLER(ZoomCameraModuleSettings);               // 0J 0F 06 07 ... (23 codes)
ZR_SETTINGS_HANDLER(PtzAlarmInputModuleSettings);            // 08 1n 1p 28
ZR_SETTINGS_HANDLER(PtzWiperHeaterModuleSettings);           // 18
ZR_SETTINGS_HANDLER(ThermalImagingModuleSettings);           // 0R 0r
ZR_SETTINGS_HANDLER(SingleKeyModuleSettings);                // 1A 1a 1T 1t 1O 1o
ZR_SETTINGS_HANDLER(KeyPowerFrequencyModuleSettings);        // 1B 11 21
ZR_SETTINGS_HANDLER(PtzDomePresetFileModuleSettings);        // 1C 14 2C
ZR_SETTINGS_HANDLER(PtzModule1DSettings);                    // 1D
ZR_SETTINGS_HANDLER(LensImageModuleSettings);                // 1G 1g 1e
ZR_SETTINGS_HANDLER(PtzAlarmIoModuleSettings);               // 1K 1k 1l 2K
ZR_SETTINGS_HANDLER(IrPtzModuleSettings);                    // 1I 1i 1J 1j 2i 2j
ZR_SETTINGS_HANDLER(BasicImageModuleSettings);               // 1M
ZR_SETTINGS_HANDLER(TwoByteKeyPowerFrequencyModuleSettings); // 1X 1x 2X 2x
ZR_SETTINGS_HANDLER(DayNightCameraSettings);                 // 3A
ZR_SETTINGS_HANDLER(TwoStreamEncodingCameraSettings);        // 3Z
ZR_SETTINGS_HANDLER(SensorImageProcessingSettings);          // 5A 5B 5C 5D 5E 5F 5G 5H 5M 5O 5T
ZR_SETTINGS_HANDLER(TwoSetImageTuningSettings);              // 1d
ZR_SETTINGS_HANDLER(OsdMenuKeyCameraSettings);               // 1m 3C 3c
ZR_SETTINGS_HANDLER(EmissivityThermalCameraSettings);        // 10 12 1Z 1z
ZR_SETTINGS_HANDLER(ColourCameraSettings);                   // 0N 0n 0P 0p
ZR_SETTINGS_HANDLER(NoiseSharpnessDefogSettings);            // 6A 6B 6C 6D 6E 6F 6G 6H 6T
ZR_SETTINGS_HANDLER(ThermalPtzPositionerSettings);           // 3T 3t
ZR_SETTINGS_HANDLER(PtzDomeNamedPresetSettings);             // 3I 3i
ZR_SETTINGS_HANDLER(InfraredSwitchingCameraSettings);        // 7A 7B

#undef ZR_SETTINGS_HANDLER
