// The request library: CGI environment, the urlencoded form and value lookup.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>

struct CgiEnvironment {
  const char* serverSoftware;
  const char* serverName;
  const char* gatewayInterface;
  const char* serverProtocol;
  const char* serverPort;
  const char* requestMethod;
  const char* pathInfo;
  const char* pathTranslated;
  const char* scriptName;
  const char* queryString;
  const char* remoteHost;
  const char* remoteAddr;
  const char* authType;
  const char* remoteUser;
  const char* remoteIdent;
  const char* contentType;
  int32_t contentLength;
  const char* httpAccept;
  const char* httpUserAgent;
  const char* httpReferer;
  FILE* out;
  FILE* in;
};

// The process-wide request state, filled by ReadCgiRequest.
extern CgiEnvironment gCgi;

enum FormLookupResult : int {
  LookupOk = 0,
  LookupTruncated = 1,
  LookupEmpty = 3,
  LookupNotFound = 4,
};

// A POST body larger than this is refused as a read failure.
inline constexpr int32_t kMaxContentLength = 1048576;

// Captures the environment and reads the form (POST body or GET query).
// 0 on success, -1 when the form could not be read.
int ReadCgiRequest();

// Parses urlencoded bytes and appends their pairs to the form. 0 or -1.
int ParseUrlEncodedForm(const char* data, size_t length);

// Copies the first value posted under `key` into `buffer` (`max` bytes).
int FormLookup(const char* key, char* buffer, int max);

// "0x"/"0X": unsigned hexadecimal, wrapping at 32 bits; otherwise decimal,
// saturating at the signed 32-bit limits.
int32_t FormValueToInt(const char* text);

// Base-10 conversion of the C library's strtol on a 32-bit target.
int32_t DecimalToInt32(const char* text, const char** end);

// Base-10 conversion of strtoul on a 32-bit target: a leading "-" negates
// modulo 2^32, overflow saturates at 4294967295.
uint32_t DecimalToUInt32(const char* text);

void FreeForm();

// Walks the form in request order, duplicates included: nullptr gives the
// first entry's name, a name the next one's; nullptr after the last.
const char* NextFormEntry(const char* name);
// An entry's value is stored right after its name.
inline const char* FormEntryValue(const char* name) {
  while (*name) ++name;
  return name + 1;
}
