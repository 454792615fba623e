// PTZ modules keep tours, groups and alarm inputs as arrays of steps: one
// array per step property, or one entry per step. The page posts a step's
// keys together, and they are looked up step by step, each step's keys in
// the order of the family's table.
#pragma once

#include <stddef.h>

#include "handlers/settings_frame.h"

// Layout checks at compile time: every field and every array element lies
// inside the record.
constexpr uint32_t FieldWidth(FieldType type, uint32_t textSize) {
  switch (type) {
    case FieldType::U8: return 1;
    case FieldType::U16: return 2;
    case FieldType::U32: return 4;
    default: return textSize;
  }
}
template <size_t N>
constexpr bool FitsIn(const Field (&fields)[N], uint32_t recordSize) {
  for (const Field& f : fields)
    if (f.offset + FieldWidth(f.type, f.textSize) > recordSize) return false;
  return true;
}
template <size_t N>
constexpr bool FitsIn(const IndexedField (&arrays)[N], uint32_t recordSize) {
  for (const IndexedField& a : arrays)
    if (a.count < 1 || a.offset + static_cast<uint32_t>(a.count - 1) * a.stride + FieldWidth(a.type, 0) > recordSize)
      return false;
  return true;
}

// Every array of the table at one index.
void MergeStep(const FormValue& form, const RecordView& record, const IndexedField* arrays, size_t count,
               int index);

// All steps, index by index; the arrays share the first table entry's count.
void MergeSteps(const FormValue& form, const RecordView& record, const IndexedField* arrays, size_t count);
template <size_t N>
void MergeSteps(const FormValue& form, const RecordView& record, const IndexedField (&arrays)[N]) {
  MergeSteps(form, record, arrays, N);
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
    MergeStep(form, record, arrays, N, i);
    MergeCheckbox(form, record, localFlag, i);
  }
}
