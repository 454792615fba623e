// A family's record layout as data: rows (key, offset, width, trait),
// blocks that say how rows are merged (plain tables, step arrays, set-id
// gates, cleared texts, one-shot commands, slot tables, composed keys), and
// the compile-time checks every layout passes. The merge, the result rule
// and any tool that decodes a record or lists the keys walk the same blocks.
#pragma once

#include <stddef.h>
#include <stdint.h>

struct FormValue;
struct RecordView;
struct Request;

// The largest record of any family (the thermal PTZ positioner's).
inline constexpr uint32_t kLargestRecord = 28682;

// ---- Layout rows ---------------------------------------------------------------

enum class FieldType : uint8_t {
  U8,          // unsigned byte
  U16,         // little-endian halfword
  U32,         // little-endian word (signed values as two's complement)
  Text,        // at most size-1 characters and a NUL; the rest of the field kept
  PaddedText,  // up to size characters, NUL-padded, no terminator when full
  Checkbox,    // byte: 1 when its key is posted, 0 when it is not
};

// A family's transform of a converted value before it is stored.
enum class ValueRule : uint8_t {
  Stored,      // as converted
  LowByte,     // only the low 8 bits, whatever the field's width
  Reversed,    // the row's constant minus the posted value
  Unsigned,    // converted as an unsigned decimal (no sign, no base prefix)
  AtLeastOne,  // 0 or negative becomes 1
};

// A one-shot command byte at rest; a wider command is at rest when each of
// its bytes is.
inline constexpr uint32_t kIdle = 255;

// What a stored value tells the result rule: is a command still pending?
enum class Pending : uint8_t {
  Never,
  UntilIdle,  // a one-shot command, idle when every bit is set (255 for a byte)
  UntilZero,  // a request flag, idle at 0
  Below,      // an object id: pending while below the row's limit
};

// How a row is stored and read back, packed in one byte.
struct Trait {
  ValueRule rule;
  Pending pending;
  uint8_t arg;  // Reversed: the constant; Below: limit - 1
};
inline constexpr Trait kPlain = {ValueRule::Stored, Pending::Never, 0};
inline constexpr Trait kLowByte = {ValueRule::LowByte, Pending::Never, 0};
inline constexpr Trait kUnsigned = {ValueRule::Unsigned, Pending::Never, 0};
inline constexpr Trait kAtLeastOne = {ValueRule::AtLeastOne, Pending::Never, 0};
inline constexpr Trait kCommand = {ValueRule::Stored, Pending::UntilIdle, 0};
inline constexpr Trait kRequestFlag = {ValueRule::Stored, Pending::UntilZero, 0};
constexpr Trait Reversed(uint32_t constant) {
  return {ValueRule::Reversed, Pending::Never, static_cast<uint8_t>(constant)};
}
// An object id that asks the camera to act while below limit (1 to 256).
constexpr Trait IdBelow(uint32_t limit) {
  return {ValueRule::Stored, Pending::Below, static_cast<uint8_t>(limit - 1)};
}

// A posted key stored at a fixed offset of the record. Eight bytes on the
// target: the key, a 16-bit offset, the type and trait packed, and one
// argument (a text's size, a rule's constant, a limit).
struct Field {
  const char* key;
  uint16_t offset;
  uint8_t form;  // FieldType | ValueRule << 3 | Pending << 6
  uint8_t arg;

  constexpr FieldType Type() const { return static_cast<FieldType>(form & 7); }
  constexpr ValueRule Rule() const { return static_cast<ValueRule>((form >> 3) & 7); }
  constexpr Pending PendingWhile() const { return static_cast<Pending>(form >> 6); }
  constexpr uint32_t Width() const;
  constexpr Field Keyed(const char* otherKey) const { return {otherKey, offset, form, arg}; }
};

constexpr uint8_t PackForm(FieldType type, Trait trait) {
  return static_cast<uint8_t>(static_cast<uint8_t>(type) | static_cast<uint8_t>(trait.rule) << 3 |
                              static_cast<uint8_t>(trait.pending) << 6);
}
constexpr uint32_t WidthOf(FieldType type, uint32_t textSize) {
  switch (type) {
    case FieldType::U16: return 2;
    case FieldType::U32: return 4;
    case FieldType::Text:
    case FieldType::PaddedText: return textSize;
    default: return 1;
  }
}
constexpr uint32_t Field::Width() const { return WidthOf(Type(), arg); }

constexpr Field U8(const char* key, uint32_t offset, Trait trait = kPlain) {
  return {key, static_cast<uint16_t>(offset), PackForm(FieldType::U8, trait), trait.arg};
}
constexpr Field U16(const char* key, uint32_t offset, Trait trait = kPlain) {
  return {key, static_cast<uint16_t>(offset), PackForm(FieldType::U16, trait), trait.arg};
}
constexpr Field U32(const char* key, uint32_t offset, Trait trait = kPlain) {
  return {key, static_cast<uint16_t>(offset), PackForm(FieldType::U32, trait), trait.arg};
}
constexpr Field Text(const char* key, uint32_t offset, uint32_t size) {
  return {key,
      static_cast<uint16_t>(offset),
      PackForm(FieldType::Text, kPlain),
      static_cast<uint8_t>(size)};
}
constexpr Field PaddedText(const char* key, uint32_t offset, uint32_t size) {
  return {key,
      static_cast<uint16_t>(offset),
      PackForm(FieldType::PaddedText, kPlain),
      static_cast<uint8_t>(size)};
}

// The outer row of a product: a key prefix and the base offset of its rows.
constexpr Field Prefix(const char* prefix, uint32_t offset) {
  return {prefix, static_cast<uint16_t>(offset), PackForm(FieldType::U8, kPlain), 0};
}

// Indexed keys: "<name>%d" for index = first .. first+count-1, element i at
// offset + i * stride.
struct IndexedField {
  const char* keyFormat;
  uint16_t offset;
  uint16_t count;
  uint8_t form;  // as Field::form
  uint8_t arg;
  uint8_t first;
  uint8_t stride;

  constexpr FieldType Type() const { return static_cast<FieldType>(form & 7); }
  constexpr Field Element(int index) const {
    return {nullptr, static_cast<uint16_t>(offset + index * stride), form, arg};
  }
};

constexpr IndexedField Indexed(const char* keyFormat, int first, int count, uint32_t offset,
    uint32_t stride, FieldType type, Trait trait = kPlain) {
  return {keyFormat,
      static_cast<uint16_t>(offset),
      static_cast<uint16_t>(count),
      PackForm(type, trait),
      trait.arg,
      static_cast<uint8_t>(first),
      static_cast<uint8_t>(stride)};
}

// A table of slots under one key: the slot an id row selects, slot i at
// offset + i * stride, `slots` of them (see the Slot block).
constexpr IndexedField SlotTable(const char* key, uint32_t offset, uint32_t slots, uint32_t stride,
    FieldType type, uint32_t textSize = 0) {
  return {key,
      static_cast<uint16_t>(offset),
      static_cast<uint16_t>(slots),
      PackForm(type, kPlain),
      static_cast<uint8_t>(textSize),
      0,
      static_cast<uint8_t>(stride)};
}

// ---- Layout blocks -----------------------------------------------------------

// A family's own step, for what no block can say.
using OwnRule = void (*)(const Request& request, const FormValue& form, const RecordView& record);

enum class Op : uint8_t {
  Fields,  // every row, in table order
  Steps,   // parallel arrays, element by element: every array's key for an index, then the next
           // index
  Gate,    // the set-id row; the next `count` blocks only while its stored value is below `limit`
  ClearedText,   // a text row; an absent or empty value clears the whole field
  KeyValueLock,  // the "KeyValue" row; while its byte is not 0 nothing after it is merged
  OneShot,       // a one-shot command row; a request without it leaves the command idle
  Slot,  // a slot table's key, stored in the slot its id row selects while the id is below the slot
         // count
  Product,  // keys made of a prefix and a suffix: every outer row (prefix, base offset) with
            // every inner row (suffix, offset from the base, type)
  Own,      // the family's own rule
};

struct Block {
  Op op;
  uint8_t count;
  uint16_t limit;  // Gate: the set-id limit; Product: the inner rows; Fields: the rows that may be
                   // pending
  const Field* fields;
  const IndexedField* arrays;
  OwnRule own;
};

template <size_t N>
constexpr Block Fields(const Field (&rows)[N]) {
  static_assert(N < 256, "a table holds at most 255 rows");
  // limit: the rows that may be pending, first | end << 8, for the result rule.
  size_t first = N, end = 0;
  for (size_t r = 0; r < N; ++r)
    if (rows[r].PendingWhile() != Pending::Never) {
      if (first == N) first = r;
      end = r + 1;
    }
  const uint16_t pendingRows = end == 0 ? 0 : static_cast<uint16_t>(first | end << 8);
  return {Op::Fields, static_cast<uint8_t>(N), pendingRows, rows, nullptr, nullptr};
}
constexpr Block Fields(const Field& row) {
  const uint16_t pendingRows = row.PendingWhile() != Pending::Never ? 1 << 8 : 0;
  return {Op::Fields, 1, pendingRows, &row, nullptr, nullptr};
}
template <size_t N>
constexpr Block Steps(const IndexedField (&arrays)[N]) {
  static_assert(N < 256, "a step block holds at most 255 arrays");
  return {Op::Steps, static_cast<uint8_t>(N), 0, nullptr, arrays, nullptr};
}
constexpr Block Steps(const IndexedField& array) {
  return {Op::Steps, 1, 0, nullptr, &array, nullptr};
}
// The set id is stored when posted (a byte keeps its low 8 bits); the
// following `blocks` blocks are merged only while it is below limit.
constexpr Block Gate(const Field& setId, uint32_t limit, int blocks) {
  return {Op::Gate,
      static_cast<uint8_t>(blocks),
      static_cast<uint16_t>(limit),
      &setId,
      nullptr,
      nullptr};
}
constexpr Block ClearedText(const Field& text) {
  return {Op::ClearedText, 1, 0, &text, nullptr, nullptr};
}
constexpr Block KeyValueLock(const Field& keyValue) {
  return {Op::KeyValueLock, 1, 0, &keyValue, nullptr, nullptr};
}
constexpr Block OneShot(const Field& command) {
  return {Op::OneShot, 1, 0, &command, nullptr, nullptr};
}
// The id row is merged by its own block; this one only reads it.
constexpr Block Slot(const IndexedField& table, const Field& id) {
  return {Op::Slot, 1, 0, &id, &table, nullptr};
}
// rows: the outer rows, then the inner rows.
template <size_t N>
constexpr Block Product(const Field (&rows)[N], int outer) {
  return {Op::Product,
      static_cast<uint8_t>(outer),
      static_cast<uint16_t>(N - outer),
      rows,
      nullptr,
      nullptr};
}
constexpr Block Own(OwnRule rule) { return {Op::Own, 0, 0, nullptr, nullptr, rule}; }

// ---- Compile-time layout checks ---------------------------------------------

// Called only when a layout is wrong: a call in a constant expression does
// not build, and the compiler names the function.
void LayoutErrorFieldOutsideRecord();
void LayoutErrorTableNotInOffsetOrder();
void LayoutErrorFieldsOverlap();
void LayoutErrorGateRunsPastLayout();
void LayoutErrorRecordTooLarge();
void LayoutErrorKeyTooLong();
void LayoutErrorStepCountsDiffer();

// Room for a product's composed key and its NUL.
inline constexpr size_t kProductKeySize = 48;

struct Span {
  uint32_t begin;
  uint32_t end;
};

// Every byte range a block's rows occupy (arrays element by element).
// Every row a block stores, arrays and slot tables element by element, a
// product's keys as they are composed (prefix and suffix given apart).
template <typename Visit>
constexpr void ForEachRow(const Block& block, Visit visit) {
  switch (block.op) {
    case Op::Steps:
    case Op::Slot:
      for (int a = 0; a < block.count; ++a)
        for (int i = 0; i < block.arrays[a].count; ++i) visit(block.arrays[a].Element(i), "", "");
      break;
    case Op::Product:
      for (int o = 0; o < block.count; ++o) {
        const Field& outer = block.fields[o];
        for (int i = 0; i < block.limit; ++i) {
          const Field& inner = block.fields[block.count + i];
          visit(Field{nullptr,
                    static_cast<uint16_t>(outer.offset + inner.offset),
                    inner.form,
                    inner.arg},
              outer.key,
              inner.key);
        }
      }
      break;
    case Op::Own: break;
    case Op::Fields:
      for (int r = 0; r < block.count; ++r) visit(block.fields[r], block.fields[r].key, "");
      break;
    default: visit(block.fields[0], block.fields[0].key, ""); break;
  }
}

template <typename Visit>
constexpr void ForEachSpan(const Block& block, Visit visit) {
  ForEachRow(block, [&](const Field& row, const char*, const char*) {
    visit(Span{row.offset, row.offset + row.Width()});
  });
}

// Inside the record; rows of a table and arrays of a step block in offset
// order; no two byte ranges of the family overlapping unless `overlaps`
// declares them (pairs of offsets).
consteval bool CheckLayout(const Block* blocks, size_t count, uint32_t recordSize,
    const uint16_t* overlaps, size_t overlapCount) {
  if (recordSize > kLargestRecord) LayoutErrorRecordTooLarge();
  for (size_t b = 0; b < count; ++b) {
    const Block& block = blocks[b];
    if (block.op == Op::Gate && b + block.count >= count) LayoutErrorGateRunsPastLayout();
    ForEachSpan(block, [&](Span s) {
      if (s.end > recordSize || s.begin >= s.end) LayoutErrorFieldOutsideRecord();
    });
    if (block.op == Op::Fields)
      for (int r = 1; r < block.count; ++r)
        if (block.fields[r].offset <= block.fields[r - 1].offset)
          LayoutErrorTableNotInOffsetOrder();
    if (block.op == Op::Steps)
      for (int a = 1; a < block.count; ++a)
        if (block.arrays[a].offset <= block.arrays[a - 1].offset)
          LayoutErrorTableNotInOffsetOrder();
    if (block.op == Op::Steps || block.op == Op::Slot)
      for (int a = 0; a < block.count; ++a) {
        const IndexedField& array = block.arrays[a];
        if (array.count != block.arrays[0].count) LayoutErrorStepCountsDiffer();
        if (array.count < 1 ||
            array.offset + (array.count - 1u) * array.stride + WidthOf(array.Type(), array.arg) >
                recordSize)
          LayoutErrorFieldOutsideRecord();
      }
    if (block.op == Op::Product) {
      for (int r = 1; r < block.count + block.limit; ++r)
        if (r != block.count && block.fields[r].offset <= block.fields[r - 1].offset)
          LayoutErrorTableNotInOffsetOrder();
      ForEachRow(block, [&](const Field&, const char* prefix, const char* suffix) {
        size_t length = 0;
        while (prefix[length]) ++length;
        for (size_t i = 0; suffix[i]; ++i) ++length;
        if (length >= kProductKeySize) LayoutErrorKeyTooLong();
      });
      for (int o = 0; o < block.count; ++o)
        if (block.fields[o].offset + block.fields[block.count + block.limit - 1].offset +
                block.fields[block.count + block.limit - 1].Width() >
            recordSize)
          LayoutErrorFieldOutsideRecord();
    }
  }
  // Each byte remembers the range that took it (its first offset + 1): a
  // second range on it must be one the family declares.
  uint32_t* owner = new uint32_t[recordSize]();
  for (size_t b = 0; b < count; ++b) {
    ForEachSpan(blocks[b], [&](Span s) {
      for (uint32_t at = s.begin; at < s.end && at < recordSize; ++at) {
        if (owner[at] != 0) {
          bool declared = false;
          for (size_t o = 0; o + 1 < overlapCount; o += 2)
            declared = declared || (overlaps[o] == s.begin && overlaps[o + 1] == owner[at] - 1) ||
                       (overlaps[o] == owner[at] - 1 && overlaps[o + 1] == s.begin);
          if (!declared) LayoutErrorFieldsOverlap();
        }
        owner[at] = s.begin + 1;
      }
    });
  }
  delete[] owner;
  return true;
}

// A family's layout: only CheckedLayout makes one, so every layout that
// builds has been checked against its record.
class Layout {
 public:
  const Block* blocks;
  uint8_t count;

  // Blocks first .. first+n-1, for a family that runs its own frame in parts.
  constexpr Layout Part(uint8_t first, uint8_t n) const { return Layout(blocks + first, n); }

  template <uint32_t RecordSize, size_t N, size_t M>
  friend consteval Layout CheckedLayout(const Block (&blocks)[N], const uint16_t (&overlaps)[M]);
  template <uint32_t RecordSize, size_t N>
  friend consteval Layout CheckedLayout(const Block (&blocks)[N]);

 private:
  constexpr Layout(const Block* b, uint8_t n) : blocks(b), count(n) {}
};

template <uint32_t RecordSize, size_t N, size_t M>
consteval Layout CheckedLayout(const Block (&blocks)[N], const uint16_t (&overlaps)[M]) {
  CheckLayout(blocks, N, RecordSize, overlaps, M);
  return Layout(blocks, static_cast<uint8_t>(N));
}
template <uint32_t RecordSize, size_t N>
consteval Layout CheckedLayout(const Block (&blocks)[N]) {
  CheckLayout(blocks, N, RecordSize, nullptr, 0);
  return Layout(blocks, static_cast<uint8_t>(N));
}
