// Camera-module code to its handler family: one row per module.
#pragma once

#include <stdint.h>

#include "families/families.h"
#include "modules/product_code.h"

inline constexpr int kModuleCount = 142;

struct ModuleRow {
  uint16_t code;
  const SettingsFamily* family;  // null: the module has no family
};

extern const ModuleRow ModuleTable[kModuleCount];

// The row of a module id, or null.
const ModuleRow* FindModuleRow(uint32_t extCamId);
