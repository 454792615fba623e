// The record of the day/night IR cameras, mostly 32-bit words.
// The day/night family with exposure weighting keeps the same block at the
// start of its longer record.
#pragma once

#include "frame/settings_frame.h"

inline constexpr Field kDayNightIrFields[] = {
    U32("PowerFrequency", 0),
    U32("Hue", 4),
    U32("Saturation", 8),
    U32("Brightness", 12),
    U32("Contrast", 16),
    U32("Sharpness", 20),
    U8("DayNightMode", 24),
    U8("TdnDwellTime", 25),
    // 26..27: not set here
    U32("DayNightDetect", 28),
    U32("D2nThreshold", 32),
    U32("N2dThreshold", 36),
    U32("VerticalFlip", 40),
    U32("HorizontalFlip", 44),
    U32("Blc", 48),
    U32("Wdr", 52),
    U32("ManualShutter", 56),
    U32("ShutterSpeed", 60),
    U32("WhiteBalance", 64),
    U32("RGain", 68),
    U32("GGain", 72),
    U32("BGain", 76),
    U32("LensType", 80),
    U32("VideoOut", 84),
    U8("VOutSrcChan", 88),
    U8("VOutSkipCount", 89),
    // 90..91: not set here
    U32("XyRatio", 92),
    U32("AgcGain", 96, kAtLeastOne),  // the camera takes no gain below 1
    U32("TargetExposure", 100),
    U32("NoiseFilter", 104),
    U8("SensUpLevel", 108),
    U8("IrLedBrightness", 109),
    // 110..127: not set here
};
