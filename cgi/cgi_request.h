// The request library: CGI environment, the urlencoded form and value lookup.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>

// The variables the request is read by ("" when unset), the headers that
// tell where it comes from (null when not sent), and its streams.
struct CgiEnvironment {
  const char* requestMethod;
  const char* queryString;
  const char* contentType;
  int32_t contentLength;  // for a GET, the query's length
  const char* secFetchSite;
  const char* origin;
  const char* referer;
  const char* host;
  FILE* out;
  FILE* in;
};

inline constexpr int kErrorBufferSize = 256;
inline constexpr int kProductCodeSize = 64;

// The form, parsed in place: the decoded entries lie one after the other
// in one buffer as "name\0value\0", in request order with duplicates kept.
// A hostile form may carry half a million entries in its 1 MiB, so nothing
// is allocated per entry: an open-addressing index holds, for each distinct
// name, the offset of its first occurrence (plus one; 0 is a free slot).
// Lookups cost a short probe instead of a walk of the whole form.
struct Form {
  char* text;
  uint32_t used;
  uint32_t capacity;
  uint32_t* index;
  uint32_t slots;   // a power of two, or 0 before the first entry
  uint32_t names;   // distinct names in the index
  uint32_t key[2];  // of the index's hash, set when the index outgrows the small table
};

// One request: made once by main from the environment and the body, and
// passed down by reference to the program, whose parts (the form, the
// product code) go on to the layers below. It lives on main's stack.
struct Request {
  CgiEnvironment cgi;
  Form form;
  char productCode[kProductCodeSize];  // as the set program read it
  char errorBuffer[kErrorBufferSize];  // filled only for the error page
};

enum FormLookupResult : int {
  LookupOk = 0,
  LookupTruncated = 1,
  LookupEmpty = 3,
  LookupNotFound = 4,
};

// A POST body larger than this is refused as a read failure.
inline constexpr int32_t kMaxContentLength = 1048576;

// Captures the environment into request, which starts zeroed.
void ReadCgiEnvironment(Request& request);

// Reads the form (POST body or GET query) into the request whose
// environment was captured. 0 on success, -1 when it could not be read.
int ReadCgiForm(Request& request);

// Case-insensitive for ASCII letters, exact for other bytes, whole strings.
bool EqualsIgnoringCase(const char* a, const char* b);

// Parses urlencoded bytes and appends their pairs to the form. 0 or -1.
int ParseUrlEncodedForm(Form& form, const char* data, size_t length);

// Copies the first value posted under `key` into `buffer` (`max` bytes).
int FormLookup(const Form& form, const char* key, char* buffer, int max);

// "0x"/"0X": unsigned hexadecimal, wrapping at 32 bits; otherwise decimal,
// saturating at the signed 32-bit limits.
int32_t FormValueToInt(const char* text);

// Base-10 conversion of the C library's strtol on a 32-bit target.
int32_t DecimalToInt32(const char* text, const char** end);

// Base-10 conversion of strtoul on a 32-bit target: a leading "-" negates
// modulo 2^32, overflow saturates at 4294967295.
uint32_t DecimalToUInt32(const char* text);

void FreeForm(Form& form);

// Walks the form in request order, duplicates included: nullptr gives the
// first entry's name, a name the next one's; nullptr after the last.
const char* NextFormEntry(const Form& form, const char* name);
// An entry's value is stored right after its name.
inline const char* FormEntryValue(const char* name) {
  while (*name) ++name;
  return name + 1;
}
