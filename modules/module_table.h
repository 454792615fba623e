// Camera-module code to its handler family: one row per module.
#pragma once

#include <stdint.h>

#include "families/families.h"
#include "modules/product_code.h"

inline constexpr int kModuleCount = 142;

struct ModuleRow {
  uint16_t code;
  uint8_t option;                // what the family needs to know of the module (ModuleOption)
  const SettingsFamily* family;  // null: the module has no family
  constexpr ModuleRow(uint16_t c = 0, const SettingsFamily* f = nullptr, uint8_t o = kNoOption)
      : code(c), option(o), family(f) {}
};

extern const ModuleRow ModuleTable[kModuleCount];

// The row of a module id, or null.
const ModuleRow* FindModuleRow(uint32_t extCamId);
