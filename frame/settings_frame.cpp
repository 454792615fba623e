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

bool MergeField(const FormValue& form, const RecordView& record, const Field& field) {
  if (!form.Lookup(field.key)) return false;
  StorePosted(form, record, field);
  return true;
}

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

void MergeClearedText(const FormValue& form, const RecordView& record, const Field& text) {
  MergeField(form, record, text);
  if (form.Empty()) memset(record.bytes + text.offset, 0, text.arg);
}

namespace {

// Parallel arrays, element by element.
void MergeSteps(const FormValue& form, const RecordView& record, const Block& block) {
  for (int i = 0; i < block.arrays[0].count; ++i) {
    for (int a = 0; a < block.count; ++a) {
      const IndexedField& array = block.arrays[a];
      const bool posted = form.LookupIndexed(array.keyFormat, array.first + i);
      const Field element = array.Element(i);
      if (array.Type() == FieldType::Checkbox) record.PutU8(element.offset, posted ? 1 : 0);
      else if (posted) StoreField(record, element, form.Int());
    }
  }
}

}  // namespace

void MergeLayout(
    const Request& request, const FormValue& form, const RecordView& record, const Layout& layout) {
  for (int b = 0; b < layout.count; ++b) {
    const Block& block = layout.blocks[b];
    switch (block.op) {
      case Op::Fields: {
        const Field* rows = block.fields;
        const Field* const end = rows + block.count;
        for (; rows != end; ++rows)
          if (form.Lookup(rows->key)) StorePosted(form, record, *rows);
        break;
      }
      case Op::Steps: MergeSteps(form, record, block); break;
      case Op::Gate:
        MergeField(form, record, block.fields[0]);
        if (StoredValue(record, block.fields[0]) >= block.limit) b += block.count;
        break;
      case Op::ClearedText: MergeClearedText(form, record, block.fields[0]); break;
      case Op::KeyValueLock:
        MergeField(form, record, block.fields[0]);
        if (StoredValue(record, block.fields[0]) != 0) return;
        break;
      case Op::Slot: {
        const IndexedField& table = block.arrays[0];
        const uint32_t id = StoredValue(record, block.fields[0]);
        if (id < table.count)
          MergeField(form, record, table.Element(static_cast<int>(id)).Keyed(table.keyFormat));
        break;
      }
      case Op::Product:
        ForEachRow(block, [&](const Field& row, const char* prefix, const char* suffix) {
          char key[kProductKeySize];
          snprintf(key, sizeof key, "%s%s", prefix, suffix);
          MergeField(form, record, row.Keyed(key));
        });
        break;
      case Op::OneShot:
        if (!MergeField(form, record, block.fields[0])) record.PutU8(block.fields[0].offset, kIdle);
        break;
      case Op::Own: block.own(request, form, record); break;
    }
  }
}

bool LayoutPending(const RecordView& record, const Layout& layout) {
  for (int b = 0; b < layout.count; ++b) {
    const Block& block = layout.blocks[b];
    bool pending = false;
    if (block.op == Op::Fields) {  // only the span of rows that may be pending
      const int end = block.limit >> 8;
      for (int r = block.limit & 0xFF; r < end && !pending; ++r)
        pending = FieldPending(record, block.fields[r]);
    } else {
      ForEachRow(block, [&](const Field& row, const char*, const char*) {
        pending = pending || FieldPending(record, row);
      });
    }
    if (pending) return true;
  }
  return false;
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

int RunSettingsFrame(
    Request& request, const SettingsFamily& family, uint8_t moduleOption, const char* recordPath) {
  if (family.ownFrame) return family.ownFrame(request, family, recordPath);
  char value[kMaxValueBufferSize] = {};
  const FormValue form = {request.form, value, family.valueBufferSize};
  uint8_t bytes[kLargestRecord];
  const RecordView record = {bytes, family.recordSize};

  const int readResult = ReadRecord(request, family.readPolicy, record, recordPath);
  if (readResult != 0) return readResult;
  MergeLayout(request, form, record, family.layout);
  const int writeResult = WriteRecord(request, family.writeFailure, record, recordPath);
  if (writeResult != 0) return writeResult;
  switch (family.result.answer) {
    case Answer::ReturnPage: return 1;
    case Answer::Bare: return 0;
    case Answer::UnlessPendingIfModule:
      if (!(moduleOption & kAnswersPending)) return 1;
      [[fallthrough]];
    case Answer::UnlessPending: return LayoutPending(record, family.layout) ? 0 : 1;
  }
  return 1;
}
