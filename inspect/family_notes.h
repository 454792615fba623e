// What the inspector says of each family beyond its layout: the notes each
// family's file keeps for the key reference (its name, and what its own
// rules do, since those are code and have no rows to read). Only the
// inspector refers to them, so the product's executable leaves them out.
#pragma once

#include <stddef.h>

#include "families/families.h"

struct FamilyNotes {
  const SettingsFamily* family;
  const char* file;  // the family's file in families/, without ".cpp"
  // Lines: the family's name; the posted keys its own rules store or change
  // (space separated: keys no row holds, rows whose value a rule may
  // change), maybe empty; then what each Own block does, in layout order.
  const char* text;
};

// Every family, in the order of families/families.h.
extern const FamilyNotes kFamilyNotes[];
extern const int kFamilyNoteCount;

// The notes of a family, or null.
const FamilyNotes* FindFamilyNotes(const SettingsFamily* family);
// Line `line` of the notes (0: the name, 1: the own keys, 2 on: the own
// rules) into out; "" when there is no such line.
void NoteLine(const FamilyNotes& notes, int line, char* out, size_t size);
// True when `key` is one of the notes' own keys.
bool IsOwnKey(const FamilyNotes& notes, const char* key);
