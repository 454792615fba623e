#include "handlers/ptz_step_arrays.h"

namespace {

uint32_t ElementOffset(const IndexedField& array, int index) {
  return array.offset + static_cast<uint32_t>(index) * array.stride;
}

}  // namespace

void MergeCheckbox(const FormValue& form, const RecordView& record, const IndexedField& box, int index) {
  const bool ticked = form.LookupIndexed(box.keyFormat, box.first + index);
  record.PutU8(ElementOffset(box, index), ticked ? 1 : 0);
}
