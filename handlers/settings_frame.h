// The frame every settings handler shares: read the record with the
// family's read policy, merge the posted keys, write the record back, and
// map the outcome to the family's result. A family supplies its layout as
// a table of fields and, in code, only the rules that are its own.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include "handlers/record_view.h"

inline constexpr int kValueBufferSize = 128;
inline constexpr int kMaxValueBufferSize = 512;

// What a failed record read does.
enum class ReadPolicy : uint8_t {
  Continue,       // report, merge into the buffer as it stands, write
  ContinueInCgi,  // the same, with the " in Cgi" report
  Abort,          // report into the error buffer, return -1, write nothing
  Retry,          // three reads 100 ms apart, then -2, write nothing
};

// What a failed record write returns; some families flush the file systems first.
struct WriteFailure {
  int result;
  bool syncFirst;
};

// ---- Form values --------------------------------------------------------

// The handler's value buffer: every lookup overwrites it, and the value is
// converted right after its own lookup.
struct FormValue {
  char* buffer;
  int size;

  // True only when the key was posted with a value that fits the buffer.
  bool Lookup(const char* key) const;
  // Looks up keyFormat with %d replaced by index.
  bool LookupIndexed(const char* keyFormat, int index) const;
  int32_t Int() const;
  const char* Text() const { return buffer; }
  bool Empty() const { return buffer[0] == '\0'; }
};

// ---- Layout tables ----------------------------------------------------------

enum class FieldType : uint8_t {
  U8,          // unsigned byte
  U16,         // little-endian halfword
  U32,         // little-endian word (signed values as two's complement)
  Text,        // at most size-1 characters and a NUL; the rest of the field kept
  PaddedText,  // up to size characters, NUL-padded, no terminator when full
};

// A family's own transform of a converted value before it is stored.
using ValueRule = int32_t (*)(int32_t converted);

struct Field {
  const char* key;
  uint32_t offset;
  FieldType type;
  ValueRule rule;
  uint32_t textSize;
};

constexpr Field U8(const char* key, uint32_t offset, ValueRule rule = nullptr) {
  return {key, offset, FieldType::U8, rule, 0};
}
constexpr Field U16(const char* key, uint32_t offset, ValueRule rule = nullptr) {
  return {key, offset, FieldType::U16, rule, 0};
}
constexpr Field U32(const char* key, uint32_t offset, ValueRule rule = nullptr) {
  return {key, offset, FieldType::U32, rule, 0};
}
constexpr Field Text(const char* key, uint32_t offset, uint32_t size) {
  return {key, offset, FieldType::Text, nullptr, size};
}
constexpr Field PaddedText(const char* key, uint32_t offset, uint32_t size) {
  return {key, offset, FieldType::PaddedText, nullptr, size};
}

// Value rules shared by several families.
int32_t LowByte(int32_t v);     // only the low 8 bits, whatever the field's width
int32_t AtLeastOne(int32_t v);  // 0 or negative becomes 1
// Reversed field: C minus the posted value.
template <int32_t C>
int32_t Reversed(int32_t v) {
  return static_cast<int32_t>(static_cast<uint32_t>(C) - static_cast<uint32_t>(v));
}

// Plain field: when the key is posted, its value (after the field's rule)
// is stored with the field's width. True when it was posted.
bool MergeField(const FormValue& form, const RecordView& record, const Field& field);

// Every field of a table, in table order.
void MergeFields(const FormValue& form, const RecordView& record, const Field* fields, size_t count);
template <size_t N>
void MergeFields(const FormValue& form, const RecordView& record, const Field (&fields)[N]) {
  MergeFields(form, record, fields, N);
}

// Stores a value with a field's width and rule, as a posted value would be.
void StoreField(const RecordView& record, const Field& field, int32_t value);

// Indexed keys: "<name>%d" for index = first .. first+count-1, element i at
// offset + i * stride.
struct IndexedField {
  const char* keyFormat;
  int first;
  int count;
  uint32_t offset;
  uint32_t stride;
  FieldType type;
  ValueRule rule;
};
void MergeIndexedField(const FormValue& form, const RecordView& record, const IndexedField& field);

// One element of each of several parallel arrays, at one index.
void MergeIndexedStep(const FormValue& form, const RecordView& record, const IndexedField* arrays, size_t count,
                      int index);

// Parallel arrays of like length merged element by element: every array's
// key for the first index, then every array's key for the next, ...
void MergeIndexedFieldsByStep(const FormValue& form, const RecordView& record, const IndexedField* arrays,
                              size_t count);
template <size_t N>
void MergeIndexedFieldsByStep(const FormValue& form, const RecordView& record, const IndexedField (&arrays)[N]) {
  MergeIndexedFieldsByStep(form, record, arrays, N);
}

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

// ---- Named patterns -------------------------------------------------------------

// KeyValue lock: "KeyValue" is stored at offset when posted; true when the
// byte there (posted or as read) is not 0 and nothing else may change.
bool KeyValueLocked(const FormValue& form, const RecordView& record, uint32_t offset);

// KeyValue rule: 1 (return page) when the byte is 0, else 0 (204 answer).
int KeyValueResult(const RecordView& record, uint32_t offset);

// One-shot commands are idle at 255: true when none of the bytes at the
// offsets holds a pending command.
bool OneShotsIdle(const RecordView& record, const uint32_t* offsets, size_t count);
template <size_t N>
bool OneShotsIdle(const RecordView& record, const uint32_t (&offsets)[N]) {
  return OneShotsIdle(record, offsets, N);
}

// Set-id gate: the set id is stored (low 8 bits) when posted; true when the
// byte there (posted or as read) is below limit, so its edit slot may be merged.
bool SetIdGateOpen(const FormValue& form, const RecordView& record, const char* setIdKey,
                   uint32_t offset, uint32_t limit);

// ---- The frame ----------------------------------------------------------------

struct SettingsFamily {
  uint32_t recordSize;
  ReadPolicy readPolicy;
  WriteFailure writeFailure;
  // Merges the posted keys, in the family's lookup order.
  void (*merge)(const FormValue& form, const RecordView& record);
  // The result after a successful write; null means always 1.
  int (*result)(const RecordView& record);
  int valueBufferSize = kValueBufferSize;
};

// The steps of the frame on a record buffer of family.recordSize bytes.
int RunSettingsFrameOn(const SettingsFamily& family, const RecordView& record, char* errorBuffer,
                       const char* recordPath);

// A family's handler: the record buffer lives on the stack with its exact size.
template <const SettingsFamily& Family>
int RunSettingsFrame(char* errorBuffer, const char* recordPath) {
  uint8_t record[Family.recordSize];
  return RunSettingsFrameOn(Family, RecordView{record, Family.recordSize}, errorBuffer, recordPath);
}

// The frame's read and write steps, for families that handle more than one file.
// ReadRecord: 0 to go on merging, or the handler's result when it must stop.
// WriteRecord: 0 when stored, or the family's write-failure result.
int ReadRecord(ReadPolicy policy, const RecordView& record, const char* path, char* errorBuffer);
int WriteRecord(WriteFailure failure, const RecordView& record, const char* path, char* errorBuffer);
