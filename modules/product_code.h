// The product code and the camera-module id it carries.
#pragma once

#include <stdint.h>

inline constexpr int kPnCodeBufferSize = 64;

// The id of a two-character module code (the first two characters of
// code): "0D" is 0x3044.
constexpr uint16_t ModuleCode(const char* code) {
  return static_cast<uint16_t>(
      static_cast<unsigned char>(code[0]) * 256u + static_cast<unsigned char>(code[1]));
}
inline constexpr int kRecordPathBufferSize = 256;

// Reads string number keyOffset (0..7) of the basic configuration into out,
// a kPnCodeBufferSize buffer (at most 63 characters are kept). Its length, or -1.
int PnCodeUtilQefStrRead(char* out, int keyOffset);
int PnCodeUtilRead(char* out);

// The value of QEF_STR<keyOffset>="..."; in a basic configuration text
// (NUL-terminated; cut at the closing quote) into out (kPnCodeBufferSize
// bytes, at most 63 characters kept). Its length, or -1.
int ParseQefString(char* text, int keyOffset, char* out);

// Reads the product code into pnCode, then the module code its characters
// 19 and 20 make; -1 unreadable, -2 too short.
int32_t GetExtCamId(char (&pnCode)[kPnCodeBufferSize]);

// "/opt/kfp/etc/ZrConf/ZrCamCtlConf%c%c.bin" for the product code: 0, or
// -1 null argument, -2 product code too short, -3 buffer too small.
int MakeCamCtlConfPath(char* pathBuffer, int bufferLength, const char* pnCode);
