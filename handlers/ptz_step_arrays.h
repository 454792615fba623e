// PTZ modules keep tours, groups and alarm inputs as arrays of steps, looked
// up step by step (MergeIndexedFieldsByStep). Preset-group steps also carry
// a local flag that the page posts as a checkbox.
#pragma once

#include <stddef.h>

#include "handlers/settings_frame.h"

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
