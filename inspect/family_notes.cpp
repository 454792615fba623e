#include "inspect/family_notes.h"

#include <stdio.h>
#include <string.h>

#define ZRCAMCTL_NOTES_ROW(name, file) {&k##name, #file, k##name##Notes},
const FamilyNotes kFamilyNotes[] = {ZRCAMCTL_FAMILIES(ZRCAMCTL_NOTES_ROW)};
#undef ZRCAMCTL_NOTES_ROW
const int kFamilyNoteCount = sizeof kFamilyNotes / sizeof kFamilyNotes[0];

const FamilyNotes* FindFamilyNotes(const SettingsFamily* family) {
  for (const FamilyNotes& notes : kFamilyNotes)
    if (notes.family == family) return &notes;
  return nullptr;
}

void NoteLine(const FamilyNotes& notes, int line, char* out, size_t size) {
  const char* at = notes.text;
  for (int n = 0; n < line && at; ++n)
    if ((at = strchr(at, '\n')) != nullptr) ++at;
  const size_t length = at ? strcspn(at, "\n") : 0;
  snprintf(out, size, "%.*s", static_cast<int>(length), at ? at : "");
}

bool IsOwnKey(const FamilyNotes& notes, const char* key) {
  char keys[512];
  NoteLine(notes, 1, keys, sizeof keys);
  const size_t length = strlen(key);
  for (const char* at = keys; (at = strstr(at, key)) != nullptr; at += length)
    if ((at == keys || at[-1] == ' ') && (at[length] == ' ' || at[length] == '\0')) return true;
  return false;
}
