// What the inspector says of each family beyond its layout: a name, and
// what the family's own rules (its Own blocks and its own frame) do, since
// those are code and have no rows to read.
#pragma once

#include "frame/settings_frame.h"

struct FamilyNotes {
  const SettingsFamily* family;
  const char* name;
  const char* ownRules[5];  // each Own block of the layout, in layout order
  const char* ownFrame;     // what the family's own frame does besides the merge, or null
  // Posted keys the family's own rules store or change, space separated:
  // keys no row holds, and rows whose stored value a rule may change.
  const char* ownKeys;
};

extern const FamilyNotes kFamilyNotes[];
extern const int kFamilyNoteCount;

// The notes of a family, or null.
const FamilyNotes* FindFamilyNotes(const SettingsFamily* family);
// True when `key` is one of the notes' own keys.
bool IsOwnKey(const FamilyNotes& notes, const char* key);
