// The key reference (docs/keys.md): per family its module codes, record,
// read policy and result rule, and every key in merge order with its
// offset, width, gate and rule.
#pragma once

#include <stdio.h>

// Writes the reference as Markdown; false when a family of the module table
// has no notes or a layout has more keys than the inspector has room for.
bool WriteKeyReference(FILE* out);
