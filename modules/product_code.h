// The product code and the camera-module id it carries.
#pragma once

#include <stdint.h>

#include "cgi/cgi_request.h"

// The id of a two-character module code (the first two characters of
// code): "0D" is 0x3044.
constexpr uint16_t ModuleCode(const char* code) {
  return static_cast<uint16_t>(
      static_cast<unsigned char>(code[0]) * 256u + static_cast<unsigned char>(code[1]));
}
inline constexpr int kRecordPathBufferSize = 256;

// Reads the product code, string 1 of the basic configuration, into pnCode
// (at most kProductCodeSize - 1 characters kept, NULs after them). Its
// length, or -1.
int PnCodeUtilRead(char (&pnCode)[kProductCodeSize]);

// The value of QEF_STR<keyOffset>="..."; in a basic configuration text
// (NUL-terminated; cut at the closing quote) into out (kProductCodeSize
// bytes, at most kProductCodeSize - 1 characters kept). Its length, or -1.
int ParseQefString(char* text, int keyOffset, char* out);

// The module code that characters 19 and 20 of the product code make; the
// product code's length is what PnCodeUtilRead returned: -1 unreadable,
// -2 too short.
int32_t GetExtCamId(const char* pnCode, int length);

// "/opt/kfp/etc/ZrConf/ZrCamCtlConf%c%c.bin" for the product code: 0, or
// -1 null argument, -2 product code too short, -3 buffer too small.
int MakeCamCtlConfPath(char* pathBuffer, int bufferLength, const char* pnCode);
