#include "handlers/settings_frame.h"

#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "camctl/record_store.h"
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

bool FormValue::Lookup(const char* key) const { return FormLookup(key, buffer, size) == LookupOk; }

bool FormValue::LookupIndexed(const char* keyFormat, int index) const {
  char key[96];
  snprintf(key, sizeof key, keyFormat, index);
  return Lookup(key);
}

int32_t FormValue::Int() const { return FormValueToInt(buffer); }

int32_t LowByte(int32_t v) { return v & 0xFF; }

int32_t AtLeastOne(int32_t v) { return v <= 0 ? 1 : v; }

void StoreField(const RecordView& record, const Field& field, int32_t value) {
  if (field.rule) value = field.rule(value);
  const uint32_t bits = static_cast<uint32_t>(value);
  switch (field.type) {
    case FieldType::U8: record.PutU8(field.offset, bits); break;
    case FieldType::U16: record.PutU16(field.offset, bits); break;
    case FieldType::U32: record.PutU32(field.offset, bits); break;
    case FieldType::Text:
    case FieldType::PaddedText: break;  // texts are stored from the value buffer
  }
}

bool MergeField(const FormValue& form, const RecordView& record, const Field& field) {
  if (!form.Lookup(field.key)) return false;
  char* target = reinterpret_cast<char*>(record.bytes + field.offset);
  switch (field.type) {
    case FieldType::Text: {
      const size_t length = strnlen(form.Text(), field.textSize - 1);
      memcpy(target, form.Text(), length);
      target[length] = '\0';
      break;
    }
    case FieldType::PaddedText:
      strncpy(target, form.Text(), field.textSize);
      break;
    default:
      StoreField(record, field, form.Int());
      break;
  }
  return true;
}

void MergeFields(const FormValue& form, const RecordView& record, const Field* fields, size_t count) {
  for (size_t i = 0; i < count; ++i) MergeField(form, record, fields[i]);
}

void MergeIndexedStep(const FormValue& form, const RecordView& record, const IndexedField* arrays, size_t count,
                      int index) {
  for (size_t a = 0; a < count; ++a) {
    const IndexedField& array = arrays[a];
    if (!form.LookupIndexed(array.keyFormat, array.first + index)) continue;
    const Field element = {nullptr, array.offset + static_cast<uint32_t>(index) * array.stride, array.type,
                           array.rule, 0};
    StoreField(record, element, form.Int());
  }
}

void MergeIndexedFieldsByStep(const FormValue& form, const RecordView& record, const IndexedField* arrays,
                              size_t count) {
  for (int i = 0; count > 0 && i < arrays[0].count; ++i) MergeIndexedStep(form, record, arrays, count, i);
}

void MergeIndexedField(const FormValue& form, const RecordView& record, const IndexedField& field) {
  MergeIndexedFieldsByStep(form, record, &field, 1);
}

bool KeyValueLocked(const FormValue& form, const RecordView& record, uint32_t offset) {
  if (form.Lookup("KeyValue")) record.PutU8(offset, static_cast<uint32_t>(form.Int()));
  return record.GetU8(offset) != 0;
}

int KeyValueResult(const RecordView& record, uint32_t offset) { return record.GetU8(offset) == 0 ? 1 : 0; }

bool OneShotsIdle(const RecordView& record, const uint32_t* offsets, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    if (record.GetU8(offsets[i]) != 0xFF) return false;
  }
  return true;
}

bool SetIdGateOpen(const FormValue& form, const RecordView& record, const char* setIdKey, uint32_t offset,
                   uint32_t limit) {
  if (form.Lookup(setIdKey)) record.PutU8(offset, static_cast<uint32_t>(form.Int()));
  return record.GetU8(offset) < limit;
}

int ReadRecord(ReadPolicy policy, const RecordView& record, const char* path, char* errorBuffer) {
  // Bytes a failed or short read leaves behind read as 0, never as stack garbage.
  memset(record.bytes, 0, record.size);
  if (ReadOnce(record, path) >= 0) return 0;
  switch (policy) {
    case ReadPolicy::Continue:
      fputs(kReadFailed, stderr);
      return 0;
    case ReadPolicy::ContinueInCgi:
      fputs(kReadFailedInCgi, stderr);
      return 0;
    case ReadPolicy::Abort:
      Report(errorBuffer, kReadFailed);
      fputs(kReadFailed, stderr);
      return -1;
    case ReadPolicy::Retry:
      break;
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

int WriteRecord(WriteFailure failure, const RecordView& record, const char* path, char* errorBuffer) {
  if (ZrCamCtlWriteConfToFile(record.bytes, static_cast<int32_t>(record.size), path) >= 0) return 0;
  if (failure.syncFirst) sync();
  Report(errorBuffer, kWriteFailed);
  fputs(kWriteFailed, stderr);
  return failure.result;
}

int RunSettingsFrameOn(const SettingsFamily& family, const RecordView& record, char* errorBuffer,
                       const char* recordPath) {
  char value[kMaxValueBufferSize] = {};
  const FormValue form = {value, family.valueBufferSize};

  const int readResult = ReadRecord(family.readPolicy, record, recordPath, errorBuffer);
  if (readResult != 0) return readResult;
  family.merge(form, record);
  const int writeResult = WriteRecord(family.writeFailure, record, recordPath, errorBuffer);
  if (writeResult != 0) return writeResult;
  return family.result ? family.result(record) : 1;
}
