#include "frame/settings_frame.h"

#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "frame/record_store.h"

namespace {

constexpr useconds_t kRetryPause = 100000;
constexpr int kReadAttempts = 3;

constexpr char kReadFailed[] = "ZrCamCtlReadConfFromFile is failed\n";
constexpr char kReadFailedInCgi[] = "ZrCamCtlReadConfFromFile is failed in Cgi\n";
constexpr char kReadFailedRetryFirst[] = "ZrCamCtlReadConfFromFile is failed. Retry.\n";
constexpr char kReadFailedRetry[] = "ZrCamCtlReadConfFromFile is failed. Retry\n";
constexpr char kReadFinallyFailed[] = "ZrCamCtlReadConfFromFile is finally failed\n";
constexpr char kWriteFailed[] = "ZrCamCtlWriteConfToFile is failed\n";

constexpr FrameResult kDone = {0, ""};

int ReadOnce(const RecordView& record, const char* path) {
  return ZrCamCtlReadConfFromFile(record.bytes, static_cast<int32_t>(record.size), path);
}

}  // namespace

bool FamilyForm::Lookup(const char* key, FormValue& value) const {
  return FormLookup(form, key, value.text, size) == LookupOk;
}

bool FamilyForm::LookupIndexed(const char* keyFormat, int index, FormValue& value) const {
  char key[96];
  snprintf(key, sizeof key, keyFormat, index);
  return Lookup(key, value);
}

uint32_t StoredValue(const RecordView& record, const Field& field) {
  switch (field.Type()) {
    case FieldType::U16: return record.GetU16(field.offset);
    case FieldType::U32: return record.GetU32(field.offset);
    default: return record.GetU8(field.offset);
  }
}

namespace {

// Stores a value with a row's width and rule.
void StoreField(const RecordView& record, const Field& field, int32_t value) {
  switch (field.Rule()) {
    case ValueRule::Stored:
    case ValueRule::Unsigned:
    case ValueRule::Action: break;
    case ValueRule::LowByte: value &= 0xFF; break;
    case ValueRule::AtLeastOne: value = value <= 0 ? 1 : value; break;
    case ValueRule::Reversed:
      value = static_cast<int32_t>(static_cast<uint32_t>(field.arg) - static_cast<uint32_t>(value));
      break;
  }
  const uint32_t bits = static_cast<uint32_t>(value);
  switch (field.Type()) {
    case FieldType::U8: record.PutU8(field.offset, bits); break;
    case FieldType::U16: record.PutU16(field.offset, bits); break;
    case FieldType::U32: record.PutU32(field.offset, bits); break;
    case FieldType::Bit: {
      const uint32_t bit = 1u << field.arg, byte = record.GetU8(field.offset);
      record.PutU8(field.offset, (bits & 0xFFFF) != 0 ? byte | bit : byte & ~bit);
      break;
    }
    default: break;  // texts are stored from their value, checkboxes by their step
  }
}

// Stores a posted value in the row.
void StorePosted(const FormValue& value, const RecordView& record, const Field& field) {
  char* target = reinterpret_cast<char*>(record.bytes + field.offset);
  switch (field.Type()) {
    case FieldType::Text: {
      const size_t length = strnlen(value.text, field.arg - 1u);
      memcpy(target, value.text, length);
      target[length] = '\0';
      break;
    }
    case FieldType::PaddedText: {  // NUL-padded, no NUL when full
      const size_t length = strnlen(value.text, field.arg);
      memcpy(target, value.text, length);
      memset(target + length, 0, field.arg - length);
      break;
    }
    default:
      StoreField(record,
          field,
          field.Rule() == ValueRule::Unsigned ? static_cast<int32_t>(DecimalToUInt32(value.text))
                                              : value.Int());
      break;
  }
}

// True while the row holds a pending command (by its trait).
bool FieldPending(const RecordView& record, const Field& field) {
  switch (field.PendingWhile()) {
    case Pending::Never: return false;
    case Pending::UntilIdle:
      return StoredValue(record, field) !=
             (field.Type() == FieldType::U16 ? (kIdle << 8 | kIdle) : kIdle);
    case Pending::UntilZero: return StoredValue(record, field) != 0;
    case Pending::Below: return StoredValue(record, field) <= field.arg;
  }
  return false;
}

// What the record holds open by the layout's rows: a command still
// pending, a gate's set id below its limit.
struct Open {
  bool pending;
  bool gate;
};
Open LayoutOpen(const RecordView& record, const Layout& layout) {
  Open open = {false, false};
  ForEachBlock(layout.blocks, layout.count, [&](const Block& block, const Block*) {
    if (block.op == Op::Gate)
      open.gate = open.gate || StoredValue(record, *block.gate.setId) < block.gate.limit;
    if (open.pending) return;
    if (block.op == Op::Fields) {  // only the span of rows that may be pending
      for (int r = block.table.pendingFirst; r < block.table.pendingEnd && !open.pending; ++r)
        open.pending = FieldPending(record, block.table.rows[r]);
    } else if (block.op != Op::Slot) {  // slot tables hold no commands
      ForEachRow(block, [&](const Field& row, const char*, const char*) {
        open.pending = open.pending || FieldPending(record, row);
      });
    }
  });
  return open;
}

// Plain field: when the key is posted, its value (after the row's rule) is
// stored with the row's width. True when it was posted.
bool MergeField(const FamilyForm& form, const RecordView& record, const Field& field) {
  FormValue value;
  if (!form.Lookup(field.key, value)) return false;
  StorePosted(value, record, field);
  return true;
}

// Parallel arrays, element by element.
void MergeSteps(const FamilyForm& form, const RecordView& record, const StepsBlock& steps) {
  FormValue value;
  for (int i = 0; i < steps.arrays[0].count; ++i) {
    for (int a = 0; a < steps.count; ++a) {
      const IndexedField& array = steps.arrays[a];
      const bool posted = form.LookupIndexed(array.keyFormat, array.first + i, value);
      const Field element = array.Element(i);
      if (array.Type() == FieldType::Checkbox) record.PutU8(element.offset, posted ? 1 : 0);
      else if (posted) StoreField(record, element, value.Int());
    }
  }
}

// Stored when posted and fitting; cleared when absent or empty.
void MergeClearedText(const FamilyForm& form, const RecordView& record, const Field& text) {
  FormValue value;
  if (form.Lookup(text.key, value)) StorePosted(value, record, text);
  if (value.Empty()) memset(record.bytes + text.offset, 0, text.arg);
}

// The slot the id (a row of `ids`) selects. Ids past the table reach the
// bytes after it (the tables that allow them hold texts): a text is copied
// there when its characters and NUL fit in the record, and a clear is
// skipped where it would pass the record's end.
void MergeSlot(const FamilyForm& form, const RecordView& record, const RecordView& ids,
    const SlotBlock& block) {
  const SlotTable& table = *block.table;
  const uint32_t id = StoredValue(ids, *block.id);
  if (id < table.first || id >= table.idLimit) return;
  const uint32_t i = id - table.first;
  const uint32_t at = table.offset + table.stride * i;  // below 2^24: no overflow
  FormValue value;
  if (form.Lookup(table.key, value)) {
    if (i < table.slots) {
      StorePosted(value, record, table.Slot(static_cast<int>(i)));
    } else {
      const size_t length = strnlen(value.text, table.arg - 1u);
      if (at < record.size && length < record.size - at) {
        memcpy(record.bytes + at, value.text, length);
        record.bytes[at + length] = '\0';
      }
    }
  }
  if (table.clearWidth && value.Empty() && at < record.size && table.clearWidth <= record.size - at)
    memset(record.bytes + at, 0, table.clearWidth);
}

FrameResult ReadRecord(ReadPolicy policy, const RecordView& record, const char* path) {
  // Bytes a failed or short read leaves behind read as 0, never as stack garbage.
  memset(record.bytes, 0, record.size);
  if (ReadOnce(record, path) >= 0) return kDone;
  switch (policy) {
    case ReadPolicy::Continue: fputs(kReadFailed, stderr); return kDone;
    case ReadPolicy::ContinueInCgi: fputs(kReadFailedInCgi, stderr); return kDone;
    case ReadPolicy::Abort: fputs(kReadFailed, stderr); return {-1, kReadFailed};
    case ReadPolicy::Retry: break;
  }
  for (int attempt = 1;; ++attempt) {
    fputs(attempt == 1 ? kReadFailedRetryFirst : kReadFailedRetry, stderr);
    usleep(kRetryPause);
    if (attempt == kReadAttempts) break;
    if (ReadOnce(record, path) >= 0) return kDone;
  }
  fputs(kReadFinallyFailed, stderr);
  return {-2, ""};
}

FrameResult WriteRecord(WriteFailure failure, const RecordView& record, const char* path) {
  if (ZrCamCtlWriteConfToFile(record.bytes, static_cast<int32_t>(record.size), path) >= 0)
    return kDone;
  if (failure.syncFirst) sync();
  fputs(kWriteFailed, stderr);
  return {failure.result, kWriteFailed};
}

// One merge: the form, the record being merged, the family's record and
// layout (its rows select a side file's slots too, and its gates and
// commands decide the plain save), and what ends the request when a side
// file fails.
struct Merge {
  const FamilyForm& form;
  const RecordView& record;
  const RecordView& familyRecord;
  const Layout& familyLayout;
  FrameResult failed;
};

bool MergeBlocks(Merge& m, const Block* blocks, int count);

// A side file's image: too large for the stack.
uint8_t gSideFile[kLargestSideFile];

bool MergeSideFile(Merge& m, const SideFile& file) {
  const RecordView bytes = {gSideFile, file.layout.size};
  m.failed = ReadRecord(file.readPolicy, bytes, file.path);
  if (m.failed.result != 0) return false;
  Merge side = {m.form, bytes, m.familyRecord, m.familyLayout, kDone};
  MergeBlocks(side, file.layout.blocks, file.layout.count);
  m.failed = WriteRecord(file.writeFailure, bytes, file.path);
  return m.failed.result == 0;
}

// False when the merge stops: at a KeyValue lock that is set, or when a
// side file failed (m.failed).
bool MergeBlocks(Merge& m, const Block* blocks, int count) {
  const FamilyForm& form = m.form;
  const RecordView& record = m.record;
  for (const Block* block = blocks; block != blocks + count; ++block) {
    switch (block->op) {
      case Op::Fields: {
        const Field* rows = block->table.rows;
        const Field* const end = rows + block->table.count;
        FormValue value;
        for (; rows != end; ++rows)
          if (form.Lookup(rows->key, value)) StorePosted(value, record, *rows);
        break;
      }
      case Op::Steps: MergeSteps(form, record, block->steps); break;
      case Op::Gate: {
        const GateBlock& gate = block->gate;
        MergeField(form, record, *gate.setId);
        if (StoredValue(record, *gate.setId) < gate.limit &&
            !MergeBlocks(m, gate.blocks, gate.count))
          return false;
        break;
      }
      case Op::ClearedText: MergeClearedText(form, record, *block->single.row); break;
      case Op::KeyValueLock:
        MergeField(form, record, *block->single.row);
        if (StoredValue(record, *block->single.row) != 0) return false;
        break;
      case Op::Slot: MergeSlot(form, record, m.familyRecord, block->slot); break;
      case Op::Product:
        ForEachRow(*block, [&](const Field& row, const char* prefix, const char* suffix) {
          char key[kProductKeySize];
          snprintf(key, sizeof key, "%s%s", prefix, suffix);
          MergeField(form, record, row.Keyed(key));
        });
        break;
      case Op::OneShot:
        if (!MergeField(form, record, *block->single.row))
          record.PutU8(block->single.row->offset, kIdle);
        break;
      case Op::Own: block->own.rule(OwnContext{form, record, block->own.row}); break;
      case Op::SideFile:
        if (!MergeSideFile(m, *block->side.file)) return false;
        break;
      case Op::PlainSave: {
        const Open open = LayoutOpen(m.familyRecord, m.familyLayout);
        if (!open.pending && !open.gate &&
            !MergeBlocks(m, block->plainSave.blocks, block->plainSave.count))
          return false;
        break;
      }
    }
  }
  return true;
}

}  // namespace

FrameResult RunSettingsFrame(
    const Form& form, const SettingsFamily& family, const char* recordPath) {
  const FamilyForm familyForm = {form, family.valueBufferSize};
  const Layout& layout = family.layout;
  uint8_t bytes[kLargestRecord];
  const RecordView record = {bytes, layout.size};

  const FrameResult read = ReadRecord(family.readPolicy, record, recordPath);
  if (read.result != 0) return read;
  Merge merge = {familyForm, record, record, layout, kDone};
  if (!MergeBlocks(merge, layout.blocks, layout.count) && merge.failed.result != 0)
    return merge.failed;
  const FrameResult written = WriteRecord(family.writeFailure, record, recordPath);
  if (written.result != 0) return written;
  const bool pending =
      family.result.answer == Answer::UnlessPending && LayoutOpen(record, layout).pending;
  return {family.result.answer == Answer::Bare || pending ? 0 : 1, ""};
}
