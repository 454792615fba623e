#include "handlers/ptz_step_arrays.h"

namespace {

uint32_t ElementOffset(const IndexedField& array, int index) {
  return array.offset + static_cast<uint32_t>(index) * array.stride;
}

}  // namespace

void MergeStep(const FormValue& form, const RecordView& record, const IndexedField* arrays, size_t count,
               int index) {
  for (size_t a = 0; a < count; ++a) {
    const IndexedField& array = arrays[a];
    if (!form.LookupIndexed(array.keyFormat, array.first + index)) continue;
    const Field element = {nullptr, ElementOffset(array, index), array.type, array.rule, 0};
    StoreField(record, element, form.Int());
  }
}

void MergeSteps(const FormValue& form, const RecordView& record, const IndexedField* arrays, size_t count) {
  for (int i = 0; i < arrays[0].count; ++i) MergeStep(form, record, arrays, count, i);
}

void MergeCheckbox(const FormValue& form, const RecordView& record, const IndexedField& box, int index) {
  const bool ticked = form.LookupIndexed(box.keyFormat, box.first + index);
  record.PutU8(ElementOffset(box, index), ticked ? 1 : 0);
}
