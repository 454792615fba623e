// Camera-module code to its handler family: one row per module.
#pragma once

#include <stdint.h>

#include "families/families.h"

inline constexpr int kModuleCount = 142;

// The id of a two-character module code: "0D" is 0x3044.
constexpr uint16_t ModuleCode(const char (&code)[3]) {
  return static_cast<uint16_t>(
      static_cast<unsigned char>(code[0]) * 256u + static_cast<unsigned char>(code[1]));
}

struct ModuleRow {
  uint16_t code;
  const SettingsFamily* family;  // null: the module has no family
};

extern const ModuleRow ModuleTable[kModuleCount];

// The row of a module id, or null.
const ModuleRow* FindModuleRow(uint32_t extCamId);
