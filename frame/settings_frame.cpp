#include "frame/settings_frame.h"

#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "frame/record_store.h"
#include "cgi/cgi_request.h"

namespace {

constexpr useconds_t kRetryPause = 100000;
constexpr int kReadAttempts = 3;

constexpr char kReadFailed[] = "ZrCamCtlReadConfFromFile is failed\n";
constexpr char kReadFailedInCgi[] = "ZrCamCtlReadConfFromFile is failed in Cgi\n";
constexpr char kReadFailedRetryFirst[] = "ZrCamCtlReadConfFromFile is failed. Retry.\n";
constexpr char kReadFailedRetry[] = "ZrCamCtlReadConfFromFile is failed. Retry\n";
constexpr char kReadFinallyFailed[] = "ZrCamCtlReadConfFromFile is finally failed\n";
constexpr char kWriteFailed[] = "ZrCamCtlWriteConfToFile is failed\n";

// The message goes to the error buffer whole, with its NUL.
template <size_t N>
void Report(char* errorBuffer, const char (&message)[N]) {
  static_assert(N <= 256, "the error buffer holds 256 bytes");
  memcpy(errorBuffer, message, N);
}

int ReadOnce(const RecordView& record, const char* path) {
  return ZrCamCtlReadConfFromFile(record.bytes, static_cast<int32_t>(record.size), path);
}

}  // namespace

bool FormValue::LookupIndexed(const char* keyFormat, int index) const {
  char key[96];
  snprintf(key, sizeof key, keyFormat, index);
  return Lookup(key);
}

int32_t FormValue::Int() const { return FormValueToInt(buffer); }

void StoreField(const RecordView& record, const Field& field, int32_t value) {
  switch (field.Rule()) {
    case ValueRule::Stored:
    case ValueRule::Unsigned: break;
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
    default: break;  // texts are stored from the value buffer, checkboxes by their step
  }
}

namespace {

// Stores the value just looked up for the row.
void StorePosted(const FormValue& form, const RecordView& record, const Field& field) {
  char* target = reinterpret_cast<char*>(record.bytes + field.offset);
  switch (field.Type()) {
    case FieldType::Text: {
      const size_t length = strnlen(form.Text(), field.arg - 1u);
      memcpy(target, form.Text(), length);
      target[length] = '\0';
      break;
    }
    case FieldType::PaddedText: strncpy(target, form.Text(), field.arg); break;
    default:
      StoreField(record,
          field,
          field.Rule() == ValueRule::Unsigned ? static_cast<int32_t>(DecimalToUInt32(form.Text()))
                                              : form.Int());
      break;
  }
}

}  // namespace

uint32_t StoredValue(const RecordView& record, const Field& field) {
  switch (field.Type()) {
    case FieldType::U16: return record.GetU16(field.offset);
    case FieldType::U32: return record.GetU32(field.offset);
    default: return record.GetU8(field.offset);
  }
}

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

namespace {

// Plain field: when the key is posted, its value (after the row's rule) is
// stored with the row's width. True when it was posted.
bool MergeField(const FormValue& form, const RecordView& record, const Field& field) {
  if (!form.Lookup(field.key)) return false;
  StorePosted(form, record, field);
  return true;
}

// Parallel arrays, element by element.
void MergeSteps(const FormValue& form, const RecordView& record, const StepsBlock& steps) {
  for (int i = 0; i < steps.arrays[0].count; ++i) {
    for (int a = 0; a < steps.count; ++a) {
      const IndexedField& array = steps.arrays[a];
      const bool posted = form.LookupIndexed(array.keyFormat, array.first + i);
      const Field element = array.Element(i);
      if (array.Type() == FieldType::Checkbox) record.PutU8(element.offset, posted ? 1 : 0);
      else if (posted) StoreField(record, element, form.Int());
    }
  }
}

void MergeClearedText(const FormValue& form, const RecordView& record, const Field& text) {
  MergeField(form, record, text);
  if (form.Empty()) memset(record.bytes + text.offset, 0, text.arg);
}

// The slot the id (a row of `ids`) selects. Ids past the table reach the
// bytes after it (the tables that allow them hold texts): a text is copied
// there when its characters and NUL fit in the record, and a clear is
// skipped where it would pass the record's end.
void MergeSlot(const FormValue& form, const RecordView& record, const RecordView& ids,
    const SlotBlock& block) {
  const SlotTable& table = *block.table;
  const uint32_t id = StoredValue(ids, *block.id);
  if (id < table.first || id >= table.idLimit) return;
  const uint32_t i = id - table.first;
  const uint32_t at = table.offset + table.stride * i;  // below 2^24: no overflow
  if (form.Lookup(table.key)) {
    if (i < table.slots) {
      StorePosted(form, record, table.Slot(static_cast<int>(i)));
    } else {
      const size_t length = strnlen(form.Text(), table.arg - 1u);
      if (at < record.size && length < record.size - at) {
        memcpy(record.bytes + at, form.Text(), length);
        record.bytes[at + length] = '\0';
      }
    }
  }
  if (table.clearWidth && form.Empty() && at < record.size && table.clearWidth <= record.size - at)
    memset(record.bytes + at, 0, table.clearWidth);
}

int ReadRecord(Request& request, ReadPolicy policy, const RecordView& record, const char* path) {
  // Bytes a failed or short read leaves behind read as 0, never as stack garbage.
  memset(record.bytes, 0, record.size);
  if (ReadOnce(record, path) >= 0) return 0;
  switch (policy) {
    case ReadPolicy::Continue: fputs(kReadFailed, stderr); return 0;
    case ReadPolicy::ContinueInCgi: fputs(kReadFailedInCgi, stderr); return 0;
    case ReadPolicy::Abort:
      Report(request.errorBuffer, kReadFailed);
      fputs(kReadFailed, stderr);
      return -1;
    case ReadPolicy::Retry: break;
  }
  for (int attempt = 1;; ++attempt) {
    fputs(attempt == 1 ? kReadFailedRetryFirst : kReadFailedRetry, stderr);
    usleep(kRetryPause);
    if (attempt == kReadAttempts) break;
    if (ReadOnce(record, path) >= 0) return 0;
  }
  fputs(kReadFinallyFailed, stderr);
  return -2;
}

int WriteRecord(
    Request& request, WriteFailure failure, const RecordView& record, const char* path) {
  if (ZrCamCtlWriteConfToFile(record.bytes, static_cast<int32_t>(record.size), path) >= 0) return 0;
  if (failure.syncFirst) sync();
  Report(request.errorBuffer, kWriteFailed);
  fputs(kWriteFailed, stderr);
  return failure.result;
}

// One merge: the request and its form value, the record being merged, the
// record whose rows select slots (the family's record, also for a side
// file), and the result that ends the request when a side file cannot be
// written.
struct Merge {
  Request& request;
  const FormValue& form;
  const RecordView& record;
  const RecordView& ids;
  int result;
};

bool MergeBlocks(Merge& m, const Block* blocks, int count);

// A side file's image: static for its size (see Request).
uint8_t gSideFile[kLargestSideFile];

bool MergeSideFile(Merge& m, const SideFile& file) {
  const RecordView bytes = {gSideFile, file.layout.size};
  if ((m.result = ReadRecord(m.request, file.readPolicy, bytes, file.path)) != 0) return false;
  Merge side = {m.request, m.form, bytes, m.record, 0};
  MergeBlocks(side, file.layout.blocks, file.layout.count);
  m.result = WriteRecord(m.request, file.writeFailure, bytes, file.path);
  return m.result == 0;
}

// False when the merge stops: at a KeyValue lock that is set, or when a
// side file failed (m.result).
bool MergeBlocks(Merge& m, const Block* blocks, int count) {
  const FormValue& form = m.form;
  const RecordView& record = m.record;
  for (const Block* block = blocks; block != blocks + count; ++block) {
    switch (block->op) {
      case Op::Fields: {
        const Field* rows = block->table.rows;
        const Field* const end = rows + block->table.count;
        for (; rows != end; ++rows)
          if (form.Lookup(rows->key)) StorePosted(form, record, *rows);
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
      case Op::Slot: MergeSlot(form, record, m.ids, block->slot); break;
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
      case Op::Own: block->own.rule(OwnContext{m.request, form, record, block->own.row}); break;
      case Op::SideFile:
        if (!MergeSideFile(m, *block->side.file)) return false;
        break;
      case Op::PlainSave: break;  // after the record is written, see RunSettingsFrame
    }
  }
  return true;
}

bool AnyGateOpen(const RecordView& record, const Layout& layout) {
  bool open = false;
  ForEachBlock(layout.blocks, layout.count, [&](const Block& block, const Block*) {
    open =
        open || (block.op == Op::Gate && StoredValue(record, *block.gate.setId) < block.gate.limit);
  });
  return open;
}

}  // namespace

bool LayoutPending(const RecordView& record, const Layout& layout) {
  bool pending = false;
  ForEachBlock(layout.blocks, layout.count, [&](const Block& block, const Block*) {
    if (pending) return;
    if (block.op == Op::Fields) {  // only the span of rows that may be pending
      for (int r = block.table.pendingFirst; r < block.table.pendingEnd && !pending; ++r)
        pending = FieldPending(record, block.table.rows[r]);
    } else if (block.op != Op::Slot) {  // slot tables hold no commands
      ForEachRow(block, [&](const Field& row, const char*, const char*) {
        pending = pending || FieldPending(record, row);
      });
    }
  });
  return pending;
}

int RunSettingsFrame(Request& request, const SettingsFamily& family, const char* recordPath) {
  char value[kMaxValueBufferSize] = {};
  const FormValue form = {request.form, value, family.valueBufferSize};
  uint8_t bytes[kLargestRecord];
  const RecordView record = {bytes, family.layout.size};
  const Layout& layout = family.layout;

  const int readResult = ReadRecord(request, family.readPolicy, record, recordPath);
  if (readResult != 0) return readResult;
  Merge merge = {request, form, record, record, 0};
  if (!MergeBlocks(merge, layout.blocks, layout.count) && merge.result != 0) return merge.result;
  const int writeResult = WriteRecord(request, family.writeFailure, record, recordPath);
  if (writeResult != 0) return writeResult;
  const bool pending =
      family.result.answer == Answer::UnlessPending && LayoutPending(record, layout);
  const int result = family.result.answer == Answer::Bare || pending ? 0 : 1;
  for (const Block* block = layout.blocks; block != layout.blocks + layout.count; ++block) {
    if (block->op != Op::PlainSave) continue;
    if (pending || LayoutPending(record, layout) || AnyGateOpen(record, layout)) return result;
    MergeBlocks(merge, block->plainSave.blocks, block->plainSave.count);
    const int plainResult = WriteRecord(request, family.writeFailure, record, recordPath);
    if (plainResult != 0) return plainResult;
  }
  return result;
}
