// Camera-module id to settings handler.
#pragma once

#include <stdint.h>

#include "handlers/settings_handlers.h"

inline constexpr int kModuleCount = 142;

// Two parallel arrays in row order, each ended by a row whose id is 0.
extern const uint32_t ModuleIds[kModuleCount + 1];
extern const SettingsHandler ModuleHandlers[kModuleCount + 1];

// The row of an id, or -1.
int FindModuleRow(uint32_t extCamId);

// The id of a two-character module code: "0D" is 0x3044.
constexpr uint32_t ModuleCode(const char (&code)[3]) {
  return static_cast<uint32_t>(static_cast<unsigned char>(code[0])) * 256u +
         static_cast<unsigned char>(code[1]);
}
