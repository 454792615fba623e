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
  const KeyReferenceNotes* text;
};

// Every family, in the order of families/families.h.
extern const FamilyNotes kFamilyNotes[];
extern const int kFamilyNoteCount;

// The notes of a family, or null.
const FamilyNotes* FindFamilyNotes(const SettingsFamily* family);
// What own rule `own` (0 the first Own block of the layout) does; "" when
// the notes do not say.
const char* OwnRuleText(const FamilyNotes& notes, int own);
// The keys whose stored values the family's own rules may change, as their
// Own blocks name them, space separated into out.
void OwnKeys(const FamilyNotes& notes, char* out, size_t size);
// True when `key` is one of them.
bool IsOwnKey(const FamilyNotes& notes, const char* key);
