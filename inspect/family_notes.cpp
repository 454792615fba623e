#include "inspect/family_notes.h"

#include <stdio.h>
#include <string.h>

#define ZRCAMCTL_NOTES_ROW(name, file) {&k##name, #file, &k##name##Notes},
const FamilyNotes kFamilyNotes[] = {ZRCAMCTL_FAMILIES(ZRCAMCTL_NOTES_ROW)};
#undef ZRCAMCTL_NOTES_ROW
const int kFamilyNoteCount = sizeof kFamilyNotes / sizeof kFamilyNotes[0];

namespace {

// Every key an Own block of the layout names as changed, in layout order:
// a table's rows, arrays one after the other, element by element.
template <typename Visit>
void ForEachOwnKey(const Layout& layout, Visit visit) {
  ForEachBlock(layout.blocks, layout.count, [&](const Block& block, const Block*) {
    if (block.op != Op::Own || !block.own.changes) return;
    const Block& changes = *block.own.changes;
    for (int r = 0; changes.op == Op::Fields && r < changes.table.count; ++r)
      visit(changes.table.rows[r].key);
    for (int a = 0; changes.op == Op::Steps && a < changes.steps.count; ++a) {
      const IndexedField& array = changes.steps.arrays[a];
      for (int i = 0; i < array.count; ++i) {
        char key[96];
        snprintf(key, sizeof key, array.keyFormat, array.first + i);
        visit(key);
      }
    }
  });
}

}  // namespace

const FamilyNotes* FindFamilyNotes(const SettingsFamily* family) {
  for (const FamilyNotes& notes : kFamilyNotes)
    if (notes.family == family) return &notes;
  return nullptr;
}

const char* OwnRuleText(const FamilyNotes& notes, int own) {
  const int count = sizeof notes.text->ownRules / sizeof notes.text->ownRules[0];
  return own < count && notes.text->ownRules[own] ? notes.text->ownRules[own] : "";
}

void OwnKeys(const FamilyNotes& notes, char* out, size_t size) {
  size_t at = 0;
  out[0] = '\0';
  ForEachOwnKey(notes.family->layout, [&](const char* key) {
    if (at < size) at += snprintf(out + at, size - at, "%s%s", at ? " " : "", key);
  });
}

bool IsOwnKey(const FamilyNotes& notes, const char* key) {
  bool own = false;
  ForEachOwnKey(notes.family->layout, [&](const char* name) { own = own || !strcmp(name, key); });
  return own;
}
