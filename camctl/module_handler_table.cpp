#include "camctl/module_handler_table.h"

// Row order is fixed: the row index appears in diagnostics.
const uint32_t ModuleIds[kModuleCount + 1] = {
    ModuleCode("0D"),  // 0
    ModuleCode("09"),  // 1
    ModuleCode("0H"),  // 2
    ModuleCode("0G"),  // 3
    ModuleCode("0v"),  // 4
    ModuleCode("0V"),  // 5
    ModuleCode("0h"),  // 6
    ModuleCode("0c"),  // 7
    ModuleCode("0K"),  // 8
    ModuleCode("0J"),  // 9
    ModuleCode("0C"),  // 10
    ModuleCode("0W"),  // 11
    ModuleCode("0j"),  // 12
    ModuleCode("0k"),  // 13
    ModuleCode("0o"),  // 14
    ModuleCode("0M"),  // 15
    ModuleCode("0y"),  // 16
    ModuleCode("0i"),  // 17
    ModuleCode("0Y"),  // 18
    ModuleCode("0w"),  // 19
    ModuleCode("0X"),  // 20
    ModuleCode("0Z"),  // 21
    ModuleCode("0S"),  // 22
    ModuleCode("0O"),  // 23
    ModuleCode("0I"),  // 24
    ModuleCode("0m"),  // 25
    ModuleCode("0l"),  // 26
    ModuleCode("0L"),  // 27
    ModuleCode("0f"),  // 28
    ModuleCode("03"),  // 29
    ModuleCode("0F"),  // 30
    ModuleCode("08"),  // 31
    ModuleCode("18"),  // 32
    ModuleCode("06"),  // 33
    ModuleCode("07"),  // 34
    ModuleCode("05"),  // 35
    ModuleCode("1E"),  // 36
    ModuleCode("1F"),  // 37
    ModuleCode("1A"),  // 38
    ModuleCode("1a"),  // 39
    ModuleCode("1B"),  // 40
    ModuleCode("1C"),  // 41
    ModuleCode("14"),  // 42
    ModuleCode("1D"),  // 43
    ModuleCode("1w"),  // 44
    ModuleCode("0R"),  // 45
    ModuleCode("0r"),  // 46
    ModuleCode("1n"),  // 47
    ModuleCode("1p"),  // 48
    ModuleCode("1f"),  // 49
    ModuleCode("1H"),  // 50
    ModuleCode("1h"),  // 51
    ModuleCode("13"),  // 52
    ModuleCode("1c"),  // 53
    ModuleCode("1d"),  // 54
    ModuleCode("1G"),  // 55
    ModuleCode("1K"),  // 56
    ModuleCode("1k"),  // 57
    ModuleCode("1l"),  // 58
    ModuleCode("1I"),  // 59
    ModuleCode("1i"),  // 60
    ModuleCode("1J"),  // 61
    ModuleCode("1j"),  // 62
    ModuleCode("1g"),  // 63
    ModuleCode("1S"),  // 64
    ModuleCode("1L"),  // 65
    ModuleCode("1M"),  // 66
    ModuleCode("1V"),  // 67
    ModuleCode("1Y"),  // 68
    ModuleCode("1X"),  // 69
    ModuleCode("1x"),  // 70
    ModuleCode("1Q"),  // 71
    ModuleCode("1R"),  // 72
    ModuleCode("1T"),  // 73
    ModuleCode("1t"),  // 74
    ModuleCode("1O"),  // 75
    ModuleCode("1o"),  // 76
    ModuleCode("1y"),  // 77
    ModuleCode("11"),  // 78
    ModuleCode("3A"),  // 79
    ModuleCode("1U"),  // 80
    ModuleCode("1u"),  // 81
    ModuleCode("19"),  // 82
    ModuleCode("0T"),  // 83
    ModuleCode("3Z"),  // 84
    ModuleCode("5A"),  // 85
    ModuleCode("5B"),  // 86
    ModuleCode("5C"),  // 87
    ModuleCode("5D"),  // 88
    ModuleCode("5E"),  // 89
    ModuleCode("5F"),  // 90
    ModuleCode("5G"),  // 91
    ModuleCode("5H"),  // 92
    ModuleCode("5M"),  // 93
    ModuleCode("5O"),  // 94
    ModuleCode("5T"),  // 95
    ModuleCode("1s"),  // 96
    ModuleCode("1e"),  // 97
    ModuleCode("1m"),  // 98
    ModuleCode("3C"),  // 99
    ModuleCode("3c"),  // 100
    ModuleCode("10"),  // 101
    ModuleCode("12"),  // 102
    ModuleCode("0N"),  // 103
    ModuleCode("0n"),  // 104
    ModuleCode("0P"),  // 105
    ModuleCode("0p"),  // 106
    ModuleCode("6A"),  // 107
    ModuleCode("6B"),  // 108
    ModuleCode("6C"),  // 109
    ModuleCode("6D"),  // 110
    ModuleCode("6E"),  // 111
    ModuleCode("6F"),  // 112
    ModuleCode("6G"),  // 113
    ModuleCode("6H"),  // 114
    ModuleCode("6T"),  // 115
    ModuleCode("1v"),  // 116
    ModuleCode("0s"),  // 117
    ModuleCode("1W"),  // 118
    ModuleCode("1Z"),  // 119
    ModuleCode("1z"),  // 120
    ModuleCode("3T"),  // 121
    ModuleCode("3t"),  // 122
    ModuleCode("3I"),  // 123
    ModuleCode("3i"),  // 124
    ModuleCode("7A"),  // 125
    ModuleCode("7B"),  // 126
    ModuleCode("28"),  // 127
    ModuleCode("2C"),  // 128
    ModuleCode("2F"),  // 129
    ModuleCode("2J"),  // 130
    ModuleCode("2K"),  // 131
    ModuleCode("2S"),  // 132
    ModuleCode("2U"),  // 133
    ModuleCode("2X"),  // 134
    ModuleCode("21"),  // 135
    ModuleCode("23"),  // 136
    ModuleCode("2i"),  // 137
    ModuleCode("2j"),  // 138
    ModuleCode("2s"),  // 139
    ModuleCode("2u"),  // 140
    ModuleCode("2x"),  // 141
    0,
};

const SettingsHandler ModuleHandlers[kModuleCount + 1] = {
    ThermalCameraSettings,  // 0 0D
    ThermalCameraSettings,  // 1 09
    BasicColourCameraSettings,  // 2 0H
    ReversedThresholdCameraSettings,  // 3 0G
    AutoBrightnessCameraSettings,  // 4 0v
    AutoBrightnessCameraSettings,  // 5 0V
    DcIrisCameraSettings,  // 6 0h
    WdrIspCameraSettings,  // 7 0c
    BasicColourCameraSettings,  // 8 0K
    ZoomCameraModuleSettings,  // 9 0J
    EnvironmentModeCameraSettings,  // 10 0C
    AutoBrightnessCameraSettings,  // 11 0W
    FlickerlessCameraSettings,  // 12 0j
    DcIrisCameraSettings,  // 13 0k
    SensUpCameraSettings,  // 14 0o
    ChromaAccCameraSettings,  // 15 0M
    DayNightIrCameraSettings,  // 16 0y
    FlickerlessCameraSettings,  // 17 0i
    DayNightIrCameraSettings,  // 18 0Y
    DayNightIrCameraSettings,  // 19 0w
    DayNightIrCameraSettings,  // 20 0X
    DayNightIrCameraSettings,  // 21 0Z
    DayNightIrCameraSettings,  // 22 0S
    FullHdWdrCameraSettings,  // 23 0O
    FullHdWdrCameraSettings,  // 24 0I
    ChromaAccCameraSettings,  // 25 0m
    MainsFrequencyFlagCameraSettings,  // 26 0l
    PtzDomeCameraSettings,  // 27 0L
    PtzDomeCameraSettings,  // 28 0f
    PtzAlarmChannelCameraSettings,  // 29 03
    ZoomCameraModuleSettings,  // 30 0F
    PtzAlarmInputModuleSettings,  // 31 08
    PtzWiperHeaterModuleSettings,  // 32 18
    ZoomCameraModuleSettings,  // 33 06
    ZoomCameraModuleSettings,  // 34 07
    FullHdWdrCameraSettings,  // 35 05
    ZoomCameraModuleSettings,  // 36 1E
    ZoomCameraModuleSettings,  // 37 1F
    SingleKeyModuleSettings,  // 38 1A
    SingleKeyModuleSettings,  // 39 1a
    KeyPowerFrequencyModuleSettings,  // 40 1B
    PtzDomePresetFileModuleSettings,  // 41 1C
    PtzDomePresetFileModuleSettings,  // 42 14
    PtzModule1DSettings,  // 43 1D
    DayNightIrCameraSettings,  // 44 1w
    ThermalImagingModuleSettings,  // 45 0R
    ThermalImagingModuleSettings,  // 46 0r
    PtzAlarmInputModuleSettings,  // 47 1n
    PtzAlarmInputModuleSettings,  // 48 1p
    ZoomCameraModuleSettings,  // 49 1f
    FullHdWdrCameraSettings,  // 50 1H
    FullHdWdrCameraSettings,  // 51 1h
    PtzAlarmChannelCameraSettings,  // 52 13
    WdrIspCameraSettings,  // 53 1c
    TwoSetImageTuningSettings,  // 54 1d
    LensImageModuleSettings,  // 55 1G
    PtzAlarmIoModuleSettings,  // 56 1K
    PtzAlarmIoModuleSettings,  // 57 1k
    PtzAlarmIoModuleSettings,  // 58 1l
    IrPtzModuleSettings,  // 59 1I
    IrPtzModuleSettings,  // 60 1i
    IrPtzModuleSettings,  // 61 1J
    IrPtzModuleSettings,  // 62 1j
    LensImageModuleSettings,  // 63 1g
    ZoomCameraModuleSettings,  // 64 1S
    PtzDomeCameraSettings,  // 65 1L
    BasicImageModuleSettings,  // 66 1M
    DayNightIrCameraSettings,  // 67 1V
    nullptr,  // 68 1Y  family not defined
    TwoByteKeyPowerFrequencyModuleSettings,  // 69 1X
    TwoByteKeyPowerFrequencyModuleSettings,  // 70 1x
    ZoomCameraModuleSettings,  // 71 1Q
    ZoomCameraModuleSettings,  // 72 1R
    SingleKeyModuleSettings,  // 73 1T
    SingleKeyModuleSettings,  // 74 1t
    SingleKeyModuleSettings,  // 75 1O
    SingleKeyModuleSettings,  // 76 1o
    nullptr,  // 77 1y  family not defined
    KeyPowerFrequencyModuleSettings,  // 78 11
    DayNightCameraSettings,  // 79 3A
    ZoomCameraModuleSettings,  // 80 1U
    ZoomCameraModuleSettings,  // 81 1u
    ZoomCameraModuleSettings,  // 82 19
    DayNightIrCameraSettings,  // 83 0T
    TwoStreamEncodingCameraSettings,  // 84 3Z
    SensorImageProcessingSettings,  // 85 5A
    SensorImageProcessingSettings,  // 86 5B
    SensorImageProcessingSettings,  // 87 5C
    SensorImageProcessingSettings,  // 88 5D
    SensorImageProcessingSettings,  // 89 5E
    SensorImageProcessingSettings,  // 90 5F
    SensorImageProcessingSettings,  // 91 5G
    SensorImageProcessingSettings,  // 92 5H
    SensorImageProcessingSettings,  // 93 5M
    SensorImageProcessingSettings,  // 94 5O
    SensorImageProcessingSettings,  // 95 5T
    ZoomCameraModuleSettings,  // 96 1s
    LensImageModuleSettings,  // 97 1e
    OsdMenuKeyCameraSettings,  // 98 1m
    OsdMenuKeyCameraSettings,  // 99 3C
    OsdMenuKeyCameraSettings,  // 100 3c
    EmissivityThermalCameraSettings,  // 101 10
    EmissivityThermalCameraSettings,  // 102 12
    ColourCameraSettings,  // 103 0N
    ColourCameraSettings,  // 104 0n
    ColourCameraSettings,  // 105 0P
    ColourCameraSettings,  // 106 0p
    NoiseSharpnessDefogSettings,  // 107 6A
    NoiseSharpnessDefogSettings,  // 108 6B
    NoiseSharpnessDefogSettings,  // 109 6C
    NoiseSharpnessDefogSettings,  // 110 6D
    NoiseSharpnessDefogSettings,  // 111 6E
    NoiseSharpnessDefogSettings,  // 112 6F
    NoiseSharpnessDefogSettings,  // 113 6G
    NoiseSharpnessDefogSettings,  // 114 6H
    NoiseSharpnessDefogSettings,  // 115 6T
    ZoomCameraModuleSettings,  // 116 1v
    ZoomCameraModuleSettings,  // 117 0s
    ZoomCameraModuleSettings,  // 118 1W
    EmissivityThermalCameraSettings,  // 119 1Z
    EmissivityThermalCameraSettings,  // 120 1z
    ThermalPtzPositionerSettings,  // 121 3T
    ThermalPtzPositionerSettings,  // 122 3t
    PtzDomeNamedPresetSettings,  // 123 3I
    PtzDomeNamedPresetSettings,  // 124 3i
    InfraredSwitchingCameraSettings,  // 125 7A
    InfraredSwitchingCameraSettings,  // 126 7B
    PtzAlarmInputModuleSettings,  // 127 28
    PtzDomePresetFileModuleSettings,  // 128 2C
    ZoomCameraModuleSettings,  // 129 2F
    ZoomCameraModuleSettings,  // 130 2J
    PtzAlarmIoModuleSettings,  // 131 2K
    ZoomCameraModuleSettings,  // 132 2S
    ZoomCameraModuleSettings,  // 133 2U
    TwoByteKeyPowerFrequencyModuleSettings,  // 134 2X
    KeyPowerFrequencyModuleSettings,  // 135 21
    PtzAlarmChannelCameraSettings,  // 136 23
    IrPtzModuleSettings,  // 137 2i
    IrPtzModuleSettings,  // 138 2j
    ZoomCameraModuleSettings,  // 139 2s
    ZoomCameraModuleSettings,  // 140 2u
    TwoByteKeyPowerFrequencyModuleSettings,  // 141 2x
    nullptr,
};

int FindModuleRow(uint32_t extCamId) {
  for (int row = 0; ModuleIds[row] != 0; ++row) {
    if (ModuleIds[row] == extCamId) return row;
  }
  return -1;
}
