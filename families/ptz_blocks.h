// Blocks the PTZ families with alarm inputs share, each built once from its
// base offset: the modules lay them out alike at different places. Pending
// says what their action ids ask of the result rule.
#pragma once

#include "frame/settings_frame.h"

// Presets: view id, set id, clear id and the edited preset's mode, from Base.
template <uint32_t Base, Trait Pending>
struct PtzPresetBlock {
  static constexpr uint32_t kPresets = 32;
  static constexpr Field kView = U8("PresetViewId", Base, Pending);
  static constexpr Field kSetId = U8("PresetSetId", Base + 1);
  static constexpr Field kClear = U8("PresetClearId", Base + 2, Pending);
  static constexpr Field kSetMode = U8("PresetSetMode", Base + 3);
};

// Preset groups: view id, set id, the edited group's enable, then 16 steps
// of a local flag (a checkbox), a preset id, a speed and a dwell time.
template <uint32_t Base, Trait Pending>
struct PtzGroupBlock {
  static constexpr uint32_t kGroups = 6;
  static constexpr Field kView = U8("GrpViewId", Base, Pending);
  static constexpr Field kSetId = U8("GrpSetId", Base + 1);
  static constexpr Field kSetEnable = U8("GrpSetEnable", Base + 2);
  static constexpr IndexedField kSteps[] = {
      Indexed("GrpSetLocalEn%d", 0, 16, Base + 3, 1, FieldType::Checkbox),
      Indexed("GrpSetPrsId%d", 0, 16, Base + 19, 1, FieldType::U8),
      Indexed("GrpSetSpeed%d", 0, 16, Base + 35, 1, FieldType::U8),
      Indexed("GrpSetDwell%d", 0, 16, Base + 51, 1, FieldType::U8),
  };
};

// Patterns: five action ids, the set id and the edited pattern's mode.
template <uint32_t Base, Trait Pending>
struct PtzPatternBlock {
  static constexpr uint32_t kPatterns = 4;
  static constexpr Field kActions[] = {
      U8("PatternViewId", Base, Pending),
      U8("PatternStartId", Base + 1, Pending),
      U8("PatternEndId", Base + 2, Pending),
      U8("PatternRunId", Base + 3, Pending),
      U8("PatternStopId", Base + 4, Pending),
  };
  static constexpr Field kSetId = U8("PatternSetId", Base + 5);
  static constexpr Field kSetMode = U8("PatternSetMode", Base + 6);
};

// Alarm inputs: four of 8 bytes from Base: type, priority, sequence mode
// and data, pan speed, a byte not set here, 16-bit pan/tilt.
template <uint32_t Base>
struct PtzAlarmInputBlock {
  static constexpr IndexedField kArrays[] = {
      Indexed("AlmType%d", 0, 4, Base, 8, FieldType::U8),
      Indexed("AlmPrior%d", 0, 4, Base + 1, 8, FieldType::U8),
      Indexed("AlmSeqMode%d", 0, 4, Base + 2, 8, FieldType::U8),
      Indexed("AlmSeqData%d", 0, 4, Base + 3, 8, FieldType::U8),
      Indexed("AlmAPanSpd%d", 0, 4, Base + 4, 8, FieldType::U8),
      Indexed("AlmAPanTilt%d", 0, 4, Base + 6, 8, FieldType::U16),
  };
};

// Their alarm-off settings: Count entries of 4 bytes from Base: input
// channel, off mode, off time, time unit.
template <uint32_t Base, int Count>
struct PtzAlarmOffBlock {
  static constexpr IndexedField kArrays[] = {
      Indexed("AlmInputCh%d", 0, Count, Base, 4, FieldType::U8),
      Indexed("AlmOffMode%d", 0, Count, Base + 1, 4, FieldType::U8),
      Indexed("AlmOffTime%d", 0, Count, Base + 2, 4, FieldType::U8),
      Indexed("AlmTimeUnit%d", 0, Count, Base + 3, 4, FieldType::U8),
  };
};
