// A family's record layout as data: rows (key, offset, width, trait),
// blocks that say how rows are merged (plain tables, step arrays, set-id
// gates holding the blocks they open, cleared texts, one-shot commands, slot
// tables, composed keys, side files), and
// the compile-time checks every layout passes. The merge, the result rule
// and any tool that decodes a record or lists the keys walk the same blocks.
#pragma once

#include <stddef.h>
#include <stdint.h>

// The largest record a layout may describe, and the largest file a family
// may edit beside its record: the frame's buffers for them are this large.
// The family that reaches each limit asserts it in its own file.
inline constexpr uint32_t kLargestRecord = 28682;
inline constexpr uint32_t kLargestSideFile = 262760;

// ---- Layout rows ---------------------------------------------------------------

enum class FieldType : uint8_t {
  U8,          // unsigned byte
  U16,         // little-endian halfword
  U32,         // little-endian word (signed values as two's complement)
  Text,        // at most size-1 characters and a NUL; the rest of the field kept
  PaddedText,  // up to size characters, NUL-padded, no terminator when full
  Checkbox,    // byte: 1 when its key is posted, 0 when it is not
  Bit,         // bit `arg` of a byte: set by a value whose low 16 bits are not 0, else cleared
};

// A family's transform of a converted value before it is stored.
enum class ValueRule : uint8_t {
  Stored,      // as converted
  LowByte,     // only the low 8 bits, whatever the field's width
  Reversed,    // the row's constant minus the posted value
  Unsigned,    // converted as an unsigned decimal (no sign, no base prefix)
  AtLeastOne,  // 0 or negative becomes 1
  Action,      // as converted; the camera acts on what is stored (clear every preset, ...)
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
inline constexpr Trait kAction = {ValueRule::Action, Pending::Never, 0};
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

// A table of slots under one key: the slot its id row selects, ids from
// `first` up to below idLimit, slot i (id first + i) at offset + i * stride
// (a bit table's bit i in byte offset + i / 8). `slots` is what the table
// holds; an id limit past it lets ids reach the bytes after the table (the
// daemon's addressing), and a store that would pass the record's end is
// skipped. An absent or empty value clears `clearWidth` bytes of the slot.
struct SlotTable {
  const char* key;
  uint16_t offset;
  uint16_t slots;
  uint16_t idLimit;
  uint8_t form;  // as Field::form
  uint8_t arg;   // as Field::arg
  uint8_t stride;
  uint8_t first;
  uint8_t clearWidth;

  constexpr FieldType Type() const { return static_cast<FieldType>(form & 7); }
  constexpr Field Slot(int i) const {
    if (Type() == FieldType::Bit)
      return {key, static_cast<uint16_t>(offset + i / 8), form, static_cast<uint8_t>(i % 8)};
    return {key, static_cast<uint16_t>(offset + i * stride), form, arg};
  }
};

struct SlotOptions {
  uint32_t first = 0;       // the id of the first slot
  uint32_t idLimit = 0;     // 0: first + slots
  uint32_t clearWidth = 0;  // bytes an absent or empty value clears
};
constexpr SlotTable Slots(const char* key, uint32_t offset, uint32_t slots, uint32_t stride,
    FieldType type, uint32_t textSize = 0, SlotOptions options = {}) {
  return {key,
      static_cast<uint16_t>(offset),
      static_cast<uint16_t>(slots),
      static_cast<uint16_t>(options.idLimit ? options.idLimit : options.first + slots),
      PackForm(type, kPlain),
      static_cast<uint8_t>(textSize),
      static_cast<uint8_t>(stride),
      static_cast<uint8_t>(options.first),
      static_cast<uint8_t>(options.clearWidth)};
}

// ---- Layout blocks -----------------------------------------------------------

struct Block;
struct OwnContext;  // frame/settings_frame.h: the form, the record and the row
struct SideFile;    // frame/settings_frame.h: a file edited beside the record

// A family's own step, for what no block can say.
using OwnRule = void (*)(const OwnContext& context);

enum class Op : uint8_t {
  Fields,        // a table of rows, in table order
  Steps,         // parallel arrays, element by element: every array's key for an index, then the
                 // next index
  Gate,          // a set-id row, then the blocks it holds, merged only while the stored id is
                 // below its limit
  ClearedText,   // a text row; an absent or empty value clears the whole field
  KeyValueLock,  // the "KeyValue" row; while its byte is not 0 nothing after it is merged
  OneShot,       // a one-shot command row; a request without it leaves the command idle
  Slot,          // a slot table's key, stored in the slot its id row selects
  Product,       // keys made of a prefix and a suffix: every outer row (prefix, base offset) with
                 // every inner row (suffix, offset from the base, type)
  Own,           // the family's own rule
  SideFile,      // a file the family edits beside its record, merged by its own layout
  PlainSave,     // blocks merged only by a plain save: where the block stands, no gate of
                 // the layout is open and no command pending
};

// What each kind of block holds.
struct TableBlock {
  const Field* rows;
  uint8_t count;
  uint8_t pendingFirst, pendingEnd;  // the rows that may be pending, for the result rule
};
struct StepsBlock {
  const IndexedField* arrays;
  uint8_t count;
};
struct GateBlock {
  const Field* setId;
  const Block* blocks;  // the blocks it opens
  uint16_t limit;
  uint8_t count;
};
struct RowBlock {  // ClearedText, KeyValueLock, OneShot
  const Field* row;
};
struct SlotBlock {
  const SlotTable* table;
  const Field* id;  // merged by its own block; the slot block only reads it
};
struct ProductBlock {
  const Field* outer;
  const Field* inner;
  uint8_t outerCount, innerCount;
};
struct OwnBlock {
  OwnRule rule;
  const Field* row;      // the row the rule is given, or null
  const Block* changes;  // the rows whose stored values it may change (Fields, Steps), or null
};
struct SideFileBlock {
  const SideFile* file;
};
struct BlockList {  // PlainSave
  const Block* blocks;
  uint8_t count;
};

struct Block {
  Op op;
  union {
    TableBlock table;
    StepsBlock steps;
    GateBlock gate;
    RowBlock single;
    SlotBlock slot;
    ProductBlock product;
    OwnBlock own;
    SideFileBlock side;
    BlockList plainSave;
  };
  constexpr Block(TableBlock b) : op(Op::Fields), table(b) {}
  constexpr Block(StepsBlock b) : op(Op::Steps), steps(b) {}
  constexpr Block(GateBlock b) : op(Op::Gate), gate(b) {}
  constexpr Block(Op o, RowBlock b) : op(o), single(b) {}
  constexpr Block(SlotBlock b) : op(Op::Slot), slot(b) {}
  constexpr Block(ProductBlock b) : op(Op::Product), product(b) {}
  constexpr Block(OwnBlock b) : op(Op::Own), own(b) {}
  constexpr Block(SideFileBlock b) : op(Op::SideFile), side(b) {}
  constexpr Block(BlockList b) : op(Op::PlainSave), plainSave(b) {}
};

template <size_t N>
constexpr Block Fields(const Field (&rows)[N]) {
  static_assert(N < 256, "a table holds at most 255 rows");
  size_t first = 0, end = 0;
  for (size_t r = 0; r < N; ++r)
    if (rows[r].PendingWhile() != Pending::Never) {
      if (end == 0) first = r;
      end = r + 1;
    }
  return TableBlock{
      rows, static_cast<uint8_t>(N), static_cast<uint8_t>(first), static_cast<uint8_t>(end)};
}
constexpr Block Fields(const Field& row) {
  return TableBlock{&row, 1, 0, static_cast<uint8_t>(row.PendingWhile() != Pending::Never)};
}
template <size_t N>
constexpr Block Steps(const IndexedField (&arrays)[N]) {
  static_assert(N < 256, "a step block holds at most 255 arrays");
  return StepsBlock{arrays, static_cast<uint8_t>(N)};
}
constexpr Block Steps(const IndexedField& array) { return StepsBlock{&array, 1}; }
// The set id is stored when posted (a byte keeps its low 8 bits); the
// blocks it holds are merged only while it is below limit.
template <size_t N>
constexpr Block Gate(const Field& setId, uint32_t limit, const Block (&blocks)[N]) {
  static_assert(N < 256, "a gate holds at most 255 blocks");
  return GateBlock{&setId, blocks, static_cast<uint16_t>(limit), static_cast<uint8_t>(N)};
}
constexpr Block ClearedText(const Field& text) { return Block(Op::ClearedText, RowBlock{&text}); }
constexpr Block KeyValueLock(const Field& keyValue) {
  return Block(Op::KeyValueLock, RowBlock{&keyValue});
}
constexpr Block OneShot(const Field& command) { return Block(Op::OneShot, RowBlock{&command}); }
// The slot the id row selects (see SlotTable).
constexpr Block Slot(const SlotTable& table, const Field& id) { return SlotBlock{&table, &id}; }
// rows: the outer rows, then the inner rows.
template <size_t N>
constexpr Block Product(const Field (&rows)[N], int outer) {
  return ProductBlock{
      rows, rows + outer, static_cast<uint8_t>(outer), static_cast<uint8_t>(N - outer)};
}
// The family's own rule; row: the row handed to the rule; changes: the rows
// of the layout whose stored values the rule may change.
constexpr Block Own(OwnRule rule, const Block& changes) {
  return OwnBlock{rule, nullptr, &changes};
}
constexpr Block Own(const Field& row, OwnRule rule, const Block* changes = nullptr) {
  return OwnBlock{rule, &row, changes};
}
// The file is read, merged by its layout (its slot tables' ids are rows of
// the family's record) and written where the block stands; a failed write
// ends the request with the file's write-failure result.
constexpr Block Side(const SideFile& file) { return SideFileBlock{&file}; }
template <size_t N>
constexpr Block PlainSave(const Block (&blocks)[N]) {
  return BlockList{blocks, static_cast<uint8_t>(N)};
}

// Every block of a list and of the gates and plain saves in it, in merge
// order, with the gate or plain-save block that holds it (or `holder`).
template <typename Visit>
constexpr void ForEachBlock(
    const Block* blocks, size_t count, Visit visit, const Block* holder = nullptr) {
  for (size_t b = 0; b < count; ++b) {
    visit(blocks[b], holder);
    if (blocks[b].op == Op::Gate)
      ForEachBlock(blocks[b].gate.blocks, blocks[b].gate.count, visit, &blocks[b]);
    if (blocks[b].op == Op::PlainSave)
      ForEachBlock(blocks[b].plainSave.blocks, blocks[b].plainSave.count, visit, &blocks[b]);
  }
}

// ---- Compile-time layout checks ---------------------------------------------

// Called only when a layout is wrong: a call in a constant expression does
// not build, and the compiler names the function.
void LayoutErrorFieldOutsideRecord();
void LayoutErrorTableNotInOffsetOrder();
void LayoutErrorFieldsOverlap();
void LayoutErrorRecordTooLarge();
void LayoutErrorKeyTooLong();
void LayoutErrorStepCountsDiffer();
void LayoutErrorOwnRowNotInLayout();

// Room for a product's composed key and its NUL.
inline constexpr size_t kProductKeySize = 48;

struct Span {
  uint32_t begin;
  uint32_t end;
};

// Every row a block stores: a table's rows, arrays and slot tables element
// by element, a product's keys as they are composed (prefix and suffix
// given apart), a gate's set id (the blocks it holds are blocks of their
// own). Own, side-file and plain-save blocks have none.
template <typename Visit>
constexpr void ForEachRow(const Block& block, Visit visit) {
  switch (block.op) {
    case Op::Fields:
      for (int r = 0; r < block.table.count; ++r)
        visit(block.table.rows[r], block.table.rows[r].key, "");
      break;
    case Op::Steps:
      for (int a = 0; a < block.steps.count; ++a)
        for (int i = 0; i < block.steps.arrays[a].count; ++i)
          visit(block.steps.arrays[a].Element(i), "", "");
      break;
    case Op::Slot:
      for (int i = 0; i < block.slot.table->slots; ++i) visit(block.slot.table->Slot(i), "", "");
      break;
    case Op::Product:
      for (int o = 0; o < block.product.outerCount; ++o) {
        const Field& outer = block.product.outer[o];
        for (int i = 0; i < block.product.innerCount; ++i) {
          const Field& inner = block.product.inner[i];
          visit(Field{nullptr,
                    static_cast<uint16_t>(outer.offset + inner.offset),
                    inner.form,
                    inner.arg},
              outer.key,
              inner.key);
        }
      }
      break;
    case Op::Gate: visit(*block.gate.setId, block.gate.setId->key, ""); break;
    case Op::ClearedText:
    case Op::KeyValueLock:
    case Op::OneShot: visit(*block.single.row, block.single.row->key, ""); break;
    case Op::Own:
    case Op::SideFile:
    case Op::PlainSave: break;
  }
}

// The byte ranges a block's rows occupy (a bit table's bytes once each).
template <typename Visit>
constexpr void ForEachSpan(const Block& block, Visit visit) {
  ForEachRow(block, [&](const Field& row, const char*, const char*) {
    if (row.Type() != FieldType::Bit || row.arg == 0)
      visit(Span{row.offset, row.offset + row.Width()});
  });
}

// Inside the record; rows of a table and arrays of a step block in offset
// order; no two byte ranges of the family overlapping unless `overlaps`
// declares them (pairs of offsets).
consteval bool CheckLayout(const Block* blocks, size_t count, uint32_t recordSize, uint32_t largest,
    const uint16_t* overlaps, size_t overlapCount) {
  if (recordSize > largest) LayoutErrorRecordTooLarge();
  uint32_t used = 0;  // the end of the last byte a row takes
  ForEachBlock(blocks, count, [&](const Block& block, const Block*) {
    ForEachSpan(block, [&](Span s) {
      if (s.end > recordSize || s.begin >= s.end) LayoutErrorFieldOutsideRecord();
      if (s.end > used) used = s.end;
    });
    if (block.op == Op::Fields)
      for (int r = 1; r < block.table.count; ++r)
        if (block.table.rows[r].offset <= block.table.rows[r - 1].offset)
          LayoutErrorTableNotInOffsetOrder();
    if (block.op == Op::Steps)
      for (int a = 0; a < block.steps.count; ++a) {
        const IndexedField& array = block.steps.arrays[a];
        if (a > 0 && array.offset <= block.steps.arrays[a - 1].offset)
          LayoutErrorTableNotInOffsetOrder();
        if (array.count != block.steps.arrays[0].count) LayoutErrorStepCountsDiffer();
        if (array.count < 1) LayoutErrorFieldOutsideRecord();
      }
    if (block.op == Op::Slot && block.slot.table->slots < 1) LayoutErrorFieldOutsideRecord();
    if (block.op == Op::Product) {
      const ProductBlock& p = block.product;
      for (int r = 1; r < p.outerCount; ++r)
        if (p.outer[r].offset <= p.outer[r - 1].offset) LayoutErrorTableNotInOffsetOrder();
      for (int r = 1; r < p.innerCount; ++r)
        if (p.inner[r].offset <= p.inner[r - 1].offset) LayoutErrorTableNotInOffsetOrder();
      ForEachRow(block, [&](const Field&, const char* prefix, const char* suffix) {
        size_t length = 0;
        while (prefix[length]) ++length;
        for (size_t i = 0; suffix[i]; ++i) ++length;
        if (length >= kProductKeySize) LayoutErrorKeyTooLong();
      });
    }
  });
  // Each byte remembers the range that took it (its first offset + 1): a
  // second range on it must be one the family declares.
  uint32_t* owner = new uint32_t[used + 1]();
  ForEachBlock(blocks, count, [&](const Block& block, const Block*) {
    ForEachSpan(block, [&](Span s) {
      for (uint32_t at = s.begin; at < s.end; ++at) {
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
  });
  // The rows an own rule changes are rows of the layout.
  ForEachBlock(blocks, count, [&](const Block& block, const Block*) {
    if (block.op == Op::Own && block.own.changes)
      ForEachSpan(*block.own.changes, [&](Span s) {
        if (s.end > used || owner[s.begin] != s.begin + 1) LayoutErrorOwnRowNotInLayout();
      });
  });
  delete[] owner;
  return true;
}

// A family's layout and the size of the record it describes: only
// CheckedLayout makes one, so every layout that builds has been checked
// against its record. Largest: a settings record's limit, or a side file's
// (kLargestSideFile).
class Layout;
template <uint32_t RecordSize, uint32_t Largest = kLargestRecord, size_t N, size_t M>
consteval Layout CheckedLayout(const Block (&blocks)[N], const uint16_t (&overlaps)[M]);
template <uint32_t RecordSize, uint32_t Largest = kLargestRecord, size_t N>
consteval Layout CheckedLayout(const Block (&blocks)[N]);

class Layout {
 public:
  const Block* blocks;
  uint32_t size;  // the record's bytes
  uint8_t count;

  template <uint32_t RecordSize, uint32_t Largest, size_t N, size_t M>
  friend consteval Layout CheckedLayout(const Block (&blocks)[N], const uint16_t (&overlaps)[M]);
  template <uint32_t RecordSize, uint32_t Largest, size_t N>
  friend consteval Layout CheckedLayout(const Block (&blocks)[N]);

 private:
  constexpr Layout(const Block* b, uint8_t n, uint32_t s) : blocks(b), size(s), count(n) {}
};

template <uint32_t RecordSize, uint32_t Largest, size_t N, size_t M>
consteval Layout CheckedLayout(const Block (&blocks)[N], const uint16_t (&overlaps)[M]) {
  CheckLayout(blocks, N, RecordSize, Largest, overlaps, M);
  return Layout(blocks, static_cast<uint8_t>(N), RecordSize);
}
template <uint32_t RecordSize, uint32_t Largest, size_t N>
consteval Layout CheckedLayout(const Block (&blocks)[N]) {
  CheckLayout(blocks, N, RecordSize, Largest, nullptr, 0);
  return Layout(blocks, static_cast<uint8_t>(N), RecordSize);
}
