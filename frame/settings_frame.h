// The frame every settings family shares: read the record with the family's
// read policy, merge the posted keys by the family's layout (frame/layout.h),
// write the record back, and answer by the family's result rule. A family is
// one constant: its policies, its layout (with the record's size) and, in
// code, only the rules that are its own.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include "cgi/cgi_request.h"
#include "frame/layout.h"
#include "frame/record_view.h"

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
  int8_t result;
  bool syncFirst;
};

// ---- Form values --------------------------------------------------------

// The handler's value buffer: every lookup overwrites it, and the value is
// converted right after its own lookup.
struct FormValue {
  const Form& form;
  char* buffer;
  int size;

  // True only when the key was posted with a value that fits the buffer.
  bool Lookup(const char* key) const { return FormLookup(form, key, buffer, size) == LookupOk; }
  // Looks up keyFormat with %d replaced by index.
  bool LookupIndexed(const char* keyFormat, int index) const;
  int32_t Int() const;
  const char* Text() const { return buffer; }
  bool Empty() const { return buffer[0] == '\0'; }
};

// What a family's own rule gets: the request and its form value, the
// record, and the row the rule belongs to (null when it belongs to none).
struct OwnContext {
  const Request& request;
  const FormValue& form;
  const RecordView& record;
  const Field* row;
};

// ---- Result rules -------------------------------------------------------------

enum class Answer : uint8_t {
  ReturnPage,     // always 1
  Bare,           // always 0: the bare 204 answer
  UnlessPending,  // 0 while a row of the layout holds a pending command, else 1
};
struct ResultRule {
  Answer answer;
};
inline constexpr ResultRule kReturnPage = {Answer::ReturnPage};
inline constexpr ResultRule kBareAnswer = {Answer::Bare};
inline constexpr ResultRule kUnlessPending = {Answer::UnlessPending};

// ---- The family ------------------------------------------------------------------

// A file a family edits beside its record (a Side block): read, merged by
// its own layout and written like the record, by its own policies.
struct SideFile {
  const char* path;
  ReadPolicy readPolicy;
  WriteFailure writeFailure;
  Layout layout;
};

// A family: its policies, its layout (which carries the record's size) and
// its result rule. A variant for some modules (another record size,
// another result rule) is a constant of its own in the family's file.
struct SettingsFamily {
  ReadPolicy readPolicy;
  WriteFailure writeFailure;
  Layout layout;
  ResultRule result = kReturnPage;
  uint16_t valueBufferSize = kValueBufferSize;
};

// ---- The frame ------------------------------------------------------------------

// Read the record, merge the layout (side files and plain-save blocks in
// their turn), write, answer. The record buffer lives on the stack. A
// failed read or write is reported in the request's error buffer.
int RunSettingsFrame(Request& request, const SettingsFamily& family, const char* recordPath);

// True while a row of the layout holds a pending command (by its trait).
bool LayoutPending(const RecordView& record, const Layout& layout);
// Stores a value with a row's width and rule, as a posted value would be.
void StoreField(const RecordView& record, const Field& field, int32_t value);
// The value a byte or halfword row holds.
uint32_t StoredValue(const RecordView& record, const Field& field);
// True while the row holds a pending command (by its trait).
bool FieldPending(const RecordView& record, const Field& field);
