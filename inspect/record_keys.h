// Every key a family's layout stores, found by walking the layout's blocks
// the way the merge walks them, and the value a record holds under each as
// the daemon reads it.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include "frame/settings_frame.h"

enum class KeyKind : uint8_t {
  Row,      // a table row: its key as it stands
  Element,  // an array element: the array's key format with the index
  Slot,     // a slot of a slot table: the table's key, in the slot its id row selects
  Product,  // a product's outer prefix and inner key
};

struct RecordKey {
  Field field;         // offset, type, rule and argument of the key's bytes
  const char* name;    // the key, the array's key format, or the product's prefix
  const char* suffix;  // the product's inner key, else ""
  const Field* group;  // the set-id row of the gate over the key, or the slot table's id row
  uint16_t limit;      // the gate's limit, or the slot table's id limit
  uint16_t index;      // the element's index as its key has it, or the slot's id
  KeyKind kind;
  bool plainSave;      // merged only by a plain save
  const Block* block;  // the block that stores the key
};

// Room for the keys of the largest layout, arrays and slot tables element
// by element.
inline constexpr int kMaxRecordKeys = 2048;
// Room for a key as it is shown, with its gate or slot.
inline constexpr size_t kShownKeySize = 112;
// Room for a shown value: a text field's every byte escaped (six bytes in
// JSON), and quotes.
inline constexpr size_t kShownValueSize = 6 * 255 + 8;

// The keys of a layout in offset order (keys at one offset in merge order),
// or in merge order (arrays one after the other, element by element); a
// side file's layout with the gate that holds its block. Returns how many,
// or -1 when there are more than `capacity`.
int ListRecordKeys(const Layout& layout, RecordKey* keys, int capacity, bool byOffset = true,
    const Block* gate = nullptr);

// The key as it is posted.
void PostedKey(const RecordKey& key, char* out, size_t size);
// The key as it is shown: "<set-id key>/<key>" under a gate, "<key>[<slot>]"
// in a slot table, else as posted.
void ShownKey(const RecordKey& key, char* out, size_t size);
// "u8", "u16", "i32" (a word the daemon reads as signed), "u32" (one stored
// unsigned), "text[N]" (NUL-terminated), "chars[N]" (NUL-padded).
void TypeName(const Field& field, char* out, size_t size);

// What the record holds under a key: an integer, or a text's bytes up to
// its NUL (or the field's end).
struct KeyValue {
  bool isText;
  int64_t number;
  const uint8_t* text;
  size_t length;
};
KeyValue ReadKey(const RecordKey& key, const RecordView& record);
bool SameValue(const KeyValue& a, const KeyValue& b);

// The value as text: a decimal number, or a text in double quotes with
// quote, backslash and every byte outside printable ASCII escaped (\n,
// \xHH; in JSON \n and \u00HH).
void ShowValue(const KeyValue& value, bool json, char* out, size_t size);
