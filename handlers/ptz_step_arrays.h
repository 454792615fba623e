// PTZ modules keep tours, groups and alarm inputs as arrays of steps, looked
// up step by step (MergeIndexedFieldsByStep). Preset-group steps also carry
// a local flag that the page posts as a checkbox.
#pragma once

#include <stddef.h>

#include "handlers/settings_frame.h"

// The alarm inputs of the PTZ modules with alarm inputs: four of 8 bytes
// from base: type, priority, sequence mode and data, pan speed, a byte not
// set here, 16-bit pan/tilt.
struct AlarmInputArrays {
  IndexedField arrays[6];
};
constexpr AlarmInputArrays AlarmInputsAt(uint32_t base) {
  return {{
      {"AlmType%d", 0, 4, base, 8, FieldType::U8, nullptr},
      {"AlmPrior%d", 0, 4, base + 1, 8, FieldType::U8, nullptr},
      {"AlmSeqMode%d", 0, 4, base + 2, 8, FieldType::U8, nullptr},
      {"AlmSeqData%d", 0, 4, base + 3, 8, FieldType::U8, nullptr},
      {"AlmAPanSpd%d", 0, 4, base + 4, 8, FieldType::U8, nullptr},
      {"AlmAPanTilt%d", 0, 4, base + 6, 8, FieldType::U16, nullptr},
  }};
}

// Their alarm-off settings: count entries of 4 bytes from base: input
// channel, off mode, off time, time unit.
struct AlarmOffArrays {
  IndexedField arrays[4];
};
constexpr AlarmOffArrays AlarmOffAt(uint32_t base, int count) {
  return {{
      {"AlmInputCh%d", 0, count, base, 4, FieldType::U8, nullptr},
      {"AlmOffMode%d", 0, count, base + 1, 4, FieldType::U8, nullptr},
      {"AlmOffTime%d", 0, count, base + 2, 4, FieldType::U8, nullptr},
      {"AlmTimeUnit%d", 0, count, base + 3, 4, FieldType::U8, nullptr},
  }};
}

// A checkbox the page posts only when it is ticked: its byte becomes 1 when
// the key is posted (the value itself means nothing) and 0 when it is not.
void MergeCheckbox(const FormValue& form, const RecordView& record, const IndexedField& box, int index);

// Preset-group steps: per step the plain keys, then the step's local flag
// (a checkbox).
template <size_t N>
void MergeGroupSteps(const FormValue& form, const RecordView& record, const IndexedField (&arrays)[N],
                     const IndexedField& localFlag) {
  for (int i = 0; i < arrays[0].count; ++i) {
    MergeIndexedStep(form, record, arrays, N, i);
    MergeCheckbox(form, record, localFlag, i);
  }
}
