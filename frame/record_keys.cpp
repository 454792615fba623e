#include "frame/record_keys.h"

#include <stdio.h>
#include <string.h>

void VisitBlocks(
    const Layout& layout, FunctionRef<void(const Block&, const Block*)> visit, const Block* outer) {
  ForEachBlock(layout.blocks, layout.count, visit, outer);
}

namespace {

void VisitKeys(const Block* blocks, size_t count, FunctionRef<void(const RecordKey&)> visit,
    const Block* outer) {
  ForEachBlock(
      blocks,
      count,
      [&](const Block& block, const Block* holder) {
        const bool plainSave = holder && holder->op == Op::PlainSave;
        const Block* gate = holder && holder->op == Op::Gate ? holder : outer;
        int visited = 0, array = 0, element = 0;  // a step block's array and element
        ForEachRow(block, [&](const Field& row, const char* prefix, const char* suffix) {
          RecordKey key = {row,
              prefix,
              suffix,
              gate ? gate->gate.setId : nullptr,
              gate ? gate->gate.limit : uint16_t{0},
              0,
              KeyKind::Row,
              plainSave,
              &block};
          if (block.op == Op::Steps) {
            const IndexedField& steps = block.steps.arrays[array];
            key.name = steps.keyFormat;
            key.index = static_cast<uint16_t>(steps.first + element);
            key.kind = KeyKind::Element;
            if (++element == steps.count) element = 0, ++array;
          } else if (block.op == Op::Slot) {
            const SlotTable& table = *block.slot.table;
            key.name = table.key;
            key.index = static_cast<uint16_t>(table.first + visited);
            key.kind = KeyKind::Slot;
            key.group = block.slot.id;
            key.limit = table.idLimit;
          } else if (block.op == Op::Product) {
            key.kind = KeyKind::Product;
          }
          ++visited;
          visit(key);
        });
      },
      outer);
}

}  // namespace

void ForEachRecordKey(
    const Layout& layout, FunctionRef<void(const RecordKey&)> visit, const Block* outer) {
  VisitKeys(layout.blocks, layout.count, visit, outer);
}

int ListRecordKeys(
    const Layout& layout, RecordKey* keys, int capacity, bool byOffset, const Block* outer) {
  int count = 0;
  ForEachRecordKey(
      layout,
      [&](const RecordKey& key) {
        if (count < capacity) keys[count] = key;
        ++count;
      },
      outer);
  if (count > capacity) return -1;
  if (!byOffset) return count;
  // Insertion sort: stable, and the blocks come nearly in offset order.
  for (int i = 1; i < count; ++i) {
    const RecordKey key = keys[i];
    int j = i;
    for (; j > 0 && keys[j - 1].field.offset > key.field.offset; --j) keys[j] = keys[j - 1];
    keys[j] = key;
  }
  return count;
}

void KeyPattern(const char* format, char* out, size_t size) {
  const char* mark = strstr(format, "%d");
  if (!mark) {
    snprintf(out, size, "%s", format);
    return;
  }
  snprintf(out, size, "%.*s<n>%s", static_cast<int>(mark - format), format, mark + 2);
}

void PostedKey(const RecordKey& key, char* out, size_t size) {
  switch (key.kind) {
    case KeyKind::Element: snprintf(out, size, key.name, key.index); break;
    case KeyKind::Product: snprintf(out, size, "%s%s", key.name, key.suffix); break;
    default: snprintf(out, size, "%s", key.name); break;
  }
}

void ShownKey(const RecordKey& key, char* out, size_t size) {
  char posted[kProductKeySize + 48];
  PostedKey(key, posted, sizeof posted);
  if (key.kind == KeyKind::Slot)
    snprintf(out, size, "%s[%u]", posted, static_cast<unsigned>(key.index));
  else if (key.group) snprintf(out, size, "%s/%s", key.group->key, posted);
  else snprintf(out, size, "%s", posted);
}

void TypeName(const Field& field, char* out, size_t size) {
  switch (field.Type()) {
    case FieldType::U16: snprintf(out, size, "u16"); break;
    case FieldType::U32:
      snprintf(out, size, field.Rule() == ValueRule::Unsigned ? "u32" : "i32");
      break;
    case FieldType::Text: snprintf(out, size, "text[%u]", static_cast<unsigned>(field.arg)); break;
    case FieldType::PaddedText:
      snprintf(out, size, "chars[%u]", static_cast<unsigned>(field.arg));
      break;
    case FieldType::Bit: snprintf(out, size, "bit"); break;
    default: snprintf(out, size, "u8"); break;
  }
}

KeyValue ReadKey(const RecordKey& key, const RecordView& record) {
  const Field& field = key.field;
  if (field.Type() == FieldType::Text || field.Type() == FieldType::PaddedText) {
    const uint8_t* text = record.bytes + field.offset;
    return {true, 0, text, strnlen(reinterpret_cast<const char*>(text), field.arg)};
  }
  if (field.Type() == FieldType::Bit)
    return {false, record.GetU8(field.offset) >> field.arg & 1, nullptr, 0};
  const uint32_t bits = StoredValue(record, field);
  const bool signedWord = field.Type() == FieldType::U32 && field.Rule() != ValueRule::Unsigned;
  return {false,
      signedWord ? static_cast<int64_t>(static_cast<int32_t>(bits)) : static_cast<int64_t>(bits),
      nullptr,
      0};
}

bool SameValue(const KeyValue& a, const KeyValue& b) {
  if (a.isText != b.isText) return false;
  if (!a.isText) return a.number == b.number;
  return a.length == b.length && memcmp(a.text, b.text, a.length) == 0;
}

void ShowValue(const KeyValue& value, bool json, char* out, size_t size) {
  if (!value.isText) {
    snprintf(out, size, "%lld", static_cast<long long>(value.number));
    return;
  }
  size_t at = 0;
  auto put = [&](const char* s) {
    const size_t n = strlen(s);
    if (at + n < size) memcpy(out + at, s, n), at += n;
  };
  put("\"");
  for (size_t i = 0; i < value.length; ++i) {
    const unsigned c = value.text[i];
    char escaped[8] = {static_cast<char>(c), '\0'};
    char letter = 0;  // the short escapes: JSON's, or \n alone
    switch (c) {
      case '"':
      case '\\': letter = static_cast<char>(c); break;
      case '\n': letter = 'n'; break;
      case '\b': letter = json ? 'b' : 0; break;
      case '\f': letter = json ? 'f' : 0; break;
      case '\r': letter = json ? 'r' : 0; break;
      case '\t': letter = json ? 't' : 0; break;
      default: break;
    }
    if (letter) snprintf(escaped, sizeof escaped, "\\%c", letter);
    else if (c < 0x20 || c > 0x7e)
      snprintf(escaped, sizeof escaped, json ? "\\u%04x" : "\\x%02x", c);
    put(escaped);
  }
  put("\"");
  out[at < size ? at : size - 1] = '\0';
}

namespace {

bool Overlap(const Field& a, const Field& b) {
  return a.offset < b.offset + b.Width() && b.offset < a.offset + a.Width();
}

// True when the row (the same row, not only the same offset) is the id row
// of a slot table of the layout or of one of its side files.
bool IsSlotIdRow(const Layout& layout, const char* key, uint16_t offset) {
  bool found = false;
  VisitBlocks(layout, [&](const Block& block, const Block*) {
    if (block.op == Op::Slot)
      found = found || (block.slot.id->key == key && block.slot.id->offset == offset);
    if (block.op == Op::SideFile)
      found = found || IsSlotIdRow(block.side.file->layout, key, offset);
  });
  return found;
}

}  // namespace

KeyRole RoleOf(const RecordKey& key, const Layout& layout, const Layout& record) {
  const Field& field = key.field;
  if (field.PendingWhile() != Pending::Never || field.Rule() == ValueRule::Action)
    return KeyRole::Command;
  const Op op = key.block->op;
  if (op == Op::Gate || op == Op::OneShot || op == Op::KeyValueLock) return KeyRole::Command;
  if (&layout == &record && key.kind == KeyKind::Row && IsSlotIdRow(record, key.name, field.offset))
    return KeyRole::Command;
  if (key.kind == KeyKind::Slot || key.group || key.plainSave) return KeyRole::Edit;
  bool kept = false;
  VisitBlocks(layout, [&](const Block& block, const Block*) {
    if (block.op == Op::Own && block.own.changes)
      VisitKeys(
          block.own.changes,
          1,
          [&](const RecordKey& changed) { kept = kept || Overlap(changed.field, field); },
          nullptr);
  });
  return kept ? KeyRole::Edit : KeyRole::Setting;
}
