// Every key a family's layout stores, found by walking the layout's blocks
// the way the merge walks them, what each is to a reader (a setting, a
// command, an edit), and the value a record holds under each as the daemon
// reads it.
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

// A callable handed down by reference: one copy of the walk serves every
// caller, without a copy of the callable or an allocation.
template <typename Signature>
class FunctionRef;
template <typename Result, typename... Args>
class FunctionRef<Result(Args...)> {
 public:
  template <typename Callable>
  FunctionRef(const Callable& callable)  // NOLINT: converts like a function pointer
      : object_(&callable), call_([](const void* object, Args... args) -> Result {
          return (*static_cast<const Callable*>(object))(args...);
        }) {}
  Result operator()(Args... args) const { return call_(object_, args...); }

 private:
  const void* object_;
  Result (*call_)(const void*, Args...);
};

// Every block of a layout and of its gates and plain saves, in merge order,
// with the gate or plain-save block that holds it (or `outer`).
void VisitBlocks(const Layout& layout, FunctionRef<void(const Block&, const Block*)> visit,
    const Block* outer = nullptr);

// Every key of a layout in merge order (a step block's arrays one after the
// other, element by element; a slot table slot by slot); a side file's
// layout with the gate that holds its block.
void ForEachRecordKey(
    const Layout& layout, FunctionRef<void(const RecordKey&)> visit, const Block* outer = nullptr);

// What a key is to whoever reads a record back.
enum class KeyRole : uint8_t {
  // Posting its value alone restores it, and the camera does nothing but
  // take it: a plain row, an array element, a text, a product's key.
  Setting,
  // It asks the camera to act or marks something pending: a command, an
  // object id, a request flag, an action, the key-value lock, a gate's set
  // id, a slot table's id row.
  Command,
  // Reached only through a gate or a slot, kept by the family's own rule,
  // or merged only by a plain save.
  Edit,
};
// `layout`: the layout the key was listed from; `record`: the family's
// record layout (its slot tables' and side files' ids are rows of it).
KeyRole RoleOf(const RecordKey& key, const Layout& layout, const Layout& record);

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

// An array's key format with "<n>" for its index.
void KeyPattern(const char* format, char* out, size_t size);
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
// \xHH; in JSON the short escapes \b \f \n \r \t and \u00hh).
void ShowValue(const KeyValue& value, bool json, char* out, size_t size);
