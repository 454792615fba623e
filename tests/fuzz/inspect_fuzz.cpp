// The inspector's decoder over every family and fuzzed record bytes: each key listed, read, shown
// as text and JSON, compared with a second record. Input: a byte choosing the family, then the
// record (cut or padded with zeros); the bytes reversed are the second record.
#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include "inspect/family_notes.h"
#include "frame/record_keys.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1) return 0;
  const int which = data[0] % kFamilyNoteCount;
  const SettingsFamily& family = *kFamilyNotes[which].family;
  static uint8_t bytes[2][kLargestRecord];
  memset(bytes, 0, sizeof bytes);
  const size_t n = size - 1 < family.layout.size ? size - 1 : family.layout.size;
  memcpy(bytes[0], data + 1, n);
  for (size_t i = 0; i < n; ++i) bytes[1][i] = data[n - i];
  const RecordView record = {bytes[0], family.layout.size}, other = {bytes[1], family.layout.size};
  static RecordKey keys[kMaxRecordKeys];
  static int listed = -1, count = 0;  // a family's keys follow from its layout alone
  if (listed != which) listed = which, count = ListRecordKeys(family.layout, keys, kMaxRecordKeys);
  if (count <= 0) __builtin_trap();
  for (int k = 0; k < count; ++k) {
    char key[kShownKeySize], type[16], text[kShownValueSize], json[kShownValueSize];
    ShownKey(keys[k], key, sizeof key);
    TypeName(keys[k].field, type, sizeof type);
    const KeyValue value = ReadKey(keys[k], record);
    ShowValue(value, false, text, sizeof text);
    ShowValue(value, true, json, sizeof json);
    if (strlen(text) + 1 >= sizeof text || strlen(json) + 1 >= sizeof json)
      __builtin_trap();  // never cut
    const KeyValue changed = ReadKey(keys[k], other);
    const bool sameBytes = memcmp(record.bytes + keys[k].field.offset,
                               other.bytes + keys[k].field.offset,
                               keys[k].field.Width()) == 0;
    if (!SameValue(value, value) || (sameBytes && !SameValue(value, changed))) __builtin_trap();
  }
  return 0;
}
