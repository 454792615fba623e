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
  Abort,          // report, answer -1 with the report on the error page, write nothing
  Retry,          // three reads 100 ms apart, then -2, write nothing
};

// What a failed record write returns; some families flush the file systems first.
struct WriteFailure {
  int8_t result;
  bool syncFirst;
};

// ---- Form values --------------------------------------------------------

// A value looked up from the form, in a buffer of its caller's.
struct FormValue {
  char text[kMaxValueBufferSize];

  int32_t Int() const { return FormValueToInt(text); }
  bool Empty() const { return text[0] == '\0'; }
};

// The form as a family reads it: values at most size - 1 bytes long.
struct FamilyForm {
  const Form& form;
  int size;

  // True only when the key was posted with a value that fits; value holds
  // what was found, cut to fit ("" when nothing was).
  bool Lookup(const char* key, FormValue& value) const;
  // Looks up keyFormat with %d replaced by index.
  bool LookupIndexed(const char* keyFormat, int index, FormValue& value) const;
};

// What a family's own rule gets: the form, the record, and the row the
// block hands it (null when none).
struct OwnContext {
  const FamilyForm& form;
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

// What a request to the frame came to: the program's result (1 the return
// page, 0 the bare answer, negative the error page) and the error page's
// message.
struct FrameResult {
  int result;
  const char* message;
};

// Read the record, merge the layout (side files and the plain save where
// their blocks stand), write, answer. The record buffer lives on the stack.
FrameResult RunSettingsFrame(
    const Form& form, const SettingsFamily& family, const char* recordPath);

// The value a byte, halfword or word row holds.
uint32_t StoredValue(const RecordView& record, const Field& field);
