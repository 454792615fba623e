#include "inspect/key_reference.h"

#include <string.h>

#include "inspect/family_notes.h"
#include "frame/record_keys.h"
#include "modules/module_table.h"

namespace {

const char* ReadPolicyText(ReadPolicy policy) {
  switch (policy) {
    case ReadPolicy::Continue:
      return "a failed read is reported and the zeroed record merged and written";
    case ReadPolicy::ContinueInCgi: return "as a continued read, reported \"in Cgi\"";
    case ReadPolicy::Abort:
      return "a failed read is reported on the error page (-1); nothing is written";
    case ReadPolicy::Retry: return "three reads 100 ms apart, then -2; nothing is written";
  }
  return "";
}

const char* ResultText(Answer answer) {
  switch (answer) {
    case Answer::ReturnPage: return "the return page";
    case Answer::Bare: return "the bare 204";
    case Answer::UnlessPending: return "204 while a row's command is pending, else the return page";
  }
  return "";
}

// What a key's trait and block say of it.
void RuleText(const RecordKey& key, char* out, size_t size) {
  const Field& f = key.field;
  const unsigned arg = f.arg;
  size_t at = 0;
  auto add = [&](const char* format, unsigned n = 0) {
    if (at > 0 && at < size) at += static_cast<size_t>(snprintf(out + at, size - at, "; "));
    if (at < size) at += static_cast<size_t>(snprintf(out + at, size - at, format, n));
  };
  out[0] = '\0';
  switch (f.Rule()) {
    case ValueRule::LowByte: add("only the low 8 bits"); break;
    case ValueRule::Reversed: add("stored as %u minus the value", arg); break;
    case ValueRule::Unsigned: add("an unsigned decimal"); break;
    case ValueRule::AtLeastOne: add("0 or below stored as 1"); break;
    case ValueRule::Action: add("action: the camera acts on the value stored"); break;
    case ValueRule::Stored: break;
  }
  switch (f.PendingWhile()) {
    case Pending::UntilIdle:
      add(f.Type() == FieldType::U16 ? "command: pending until 65535"
                                     : "command: pending until 255");
      break;
    case Pending::UntilZero: add("request flag: pending while not 0"); break;
    case Pending::Below: add("object id: acts (pending) while below %u", arg + 1); break;
    case Pending::Never: break;
  }
  if (f.Type() == FieldType::Checkbox) add("checkbox: 1 when posted, 0 when not");
  if (f.Type() == FieldType::Text) add("at most %u characters and a NUL", arg - 1);
  if (f.Type() == FieldType::PaddedText) add("up to %u characters, NUL-padded", arg);
  if (f.Type() == FieldType::Bit) add("a bit: set by a value whose low 16 bits are not 0");
  if (key.kind == KeyKind::Slot) {
    const SlotTable& table = *key.block->slot.table;
    if (table.idLimit > table.first + table.slots)
      add("ids up to %u reach past the table; a store past the record's end is skipped",
          table.idLimit - 1u);
    if (table.clearWidth)
      add("absent or empty: the slot's first %u bytes cleared", table.clearWidth);
  }
  if (key.plainSave)
    add("only by a plain save (no gate open, nothing pending), written after the rest");
  switch (key.block->op) {
    case Op::Gate:
      add("set id: the blocks it holds are merged only while it is below its limit");
      break;
    case Op::ClearedText: add("cleared whole when absent or empty"); break;
    case Op::KeyValueLock: add("while not 0, nothing after it is merged"); break;
    case Op::OneShot: add("idle (255) when not posted"); break;
    default: break;
  }
}

// The keys of a layout, block by block in merge order, its own rules among
// them, and the side files it edits (listed after it).
struct SideEntry {
  const SideFile* file;
  const Block* gate;  // the gate that holds its block, or null
};
constexpr int kMaxSideFiles = 4;

const char* const kRoleNames[] = {"setting", "command", "edit"};

// record: the family's record layout (layout itself, or the layout of a
// side file of it).
void WriteKeys(FILE* out, const FamilyNotes* notes, const Layout& layout, const Layout& record,
    const Block* gate, SideEntry* sideFiles, int& sideCount) {
  static RecordKey keys[kMaxRecordKeys];
  const int count = ListRecordKeys(layout, keys, kMaxRecordKeys, false, gate);
  fputs("\n| offset | key | width | gate | rule | read back |\n|---:|---|---|---|---|---|\n", out);
  int own = 0;
  ForEachBlock(layout.blocks, layout.count, [&](const Block& block, const Block* holder) {
    if (block.op == Op::SideFile && sideCount < kMaxSideFiles)
      sideFiles[sideCount++] = {block.side.file, holder};
    if (block.op == Op::Own) {
      char type[16] = "", offset[16] = "", on[kShownKeySize] = "";
      const char* text = notes ? OwnRuleText(*notes, own) : "";
      ++own;
      if (const Field* row = block.own.row) {
        TypeName(*row, type, sizeof type);
        snprintf(offset, sizeof offset, "%u", static_cast<unsigned>(row->offset));
        snprintf(on, sizeof on, " on `%s`", row->key);
      }
      fprintf(out,
          "| %s | *own rule*%s | %s | | the family's own rule%s%s | |\n",
          offset,
          on,
          type,
          text[0] ? ": " : "",
          text);
      return;
    }
    for (int k = 0; k < count; ++k) {
      const RecordKey& key = keys[k];
      if (key.block != &block) continue;
      char name[3 * kShownKeySize], type[16], rule[320], offset[48], gateText[2 * kShownKeySize];
      TypeName(key.field, type, sizeof type);
      RuleText(key, rule, sizeof rule);
      snprintf(offset, sizeof offset, "%u", static_cast<unsigned>(key.field.offset));
      gateText[0] = '\0';
      if (key.group && key.kind != KeyKind::Slot)
        snprintf(gateText,
            sizeof gateText,
            "`%s` below %u",
            key.group->key,
            static_cast<unsigned>(key.limit));
      else if (gate && key.kind == KeyKind::Slot)
        snprintf(gateText,
            sizeof gateText,
            "`%s` below %u",
            gate->gate.setId->key,
            static_cast<unsigned>(gate->gate.limit));
      if (key.kind == KeyKind::Element || key.kind == KeyKind::Slot) {
        // An array or a slot table on one line: its first element and its last.
        int last = k;
        while (
            last + 1 < count && keys[last + 1].block == &block && keys[last + 1].name == key.name)
          ++last;
        if (key.field.Type() == FieldType::Bit)
          snprintf(offset,
              sizeof offset,
              "%u..%u, a bit each",
              static_cast<unsigned>(key.field.offset),
              static_cast<unsigned>(keys[last].field.offset));
        else
          snprintf(offset,
              sizeof offset,
              "%u..%u step %u",
              static_cast<unsigned>(key.field.offset),
              static_cast<unsigned>(keys[last].field.offset),
              last > k ? keys[k + 1].field.offset - key.field.offset : 0u);
        char pattern[kShownKeySize];
        KeyPattern(key.name, pattern, sizeof pattern);
        if (key.kind == KeyKind::Element)
          snprintf(name,
              sizeof name,
              "`%s`, n = %u..%u",
              pattern,
              static_cast<unsigned>(key.index),
              static_cast<unsigned>(keys[last].index));
        else
          snprintf(name,
              sizeof name,
              "`%s` in slot `%s` (%u..%u)",
              pattern,
              key.group->key,
              static_cast<unsigned>(key.index),
              static_cast<unsigned>(keys[last].index));
        k = last;
      } else {
        char posted[kShownKeySize];
        PostedKey(key, posted, sizeof posted);
        snprintf(name, sizeof name, "`%s`", posted);
      }
      fprintf(out,
          "| %s | %s | %s | %s | %s | %s |\n",
          offset,
          name,
          type,
          gateText,
          rule,
          kRoleNames[static_cast<int>(RoleOf(key, layout, record))]);
    }
  });
}

void WriteFamily(FILE* out, const SettingsFamily& family) {
  const FamilyNotes* notes = FindFamilyNotes(&family);
  char ownKeys[512] = "";
  if (notes) OwnKeys(*notes, ownKeys, sizeof ownKeys);
  fprintf(out, "\n## %s\n\n", notes ? notes->text->name : "(a family without notes)");
  if (notes) fprintf(out, "- File: `families/%s.cpp`\n", notes->file);
  fputs("- Module codes:", out);
  int codes = 0;
  for (const ModuleRow& row : ModuleTable) {
    if (row.family != &family) continue;
    fprintf(out, " %c%c", row.code >> 8, row.code & 0xFF);
    ++codes;
  }
  fprintf(out, "%s\n", codes ? "" : " none (no module code routes to it)");
  fprintf(out,
      "- Record: %u bytes; form values up to %u bytes\n",
      static_cast<unsigned>(family.layout.size),
      static_cast<unsigned>(family.valueBufferSize - 1));
  fprintf(out, "- Read: %s\n", ReadPolicyText(family.readPolicy));
  fprintf(out,
      "- Failed write: %d%s\n",
      family.writeFailure.result,
      family.writeFailure.syncFirst ? ", after the file systems are synced" : "");
  fprintf(out, "- Result: %s\n", ResultText(family.result.answer));
  if (ownKeys[0]) fprintf(out, "- Keys of its own rules: `%s`\n", ownKeys);
  SideEntry sideFiles[kMaxSideFiles] = {};
  int sideCount = 0;
  WriteKeys(out, notes, family.layout, family.layout, nullptr, sideFiles, sideCount);
  for (int f = 0; f < sideCount; ++f) {
    const SideFile& file = *sideFiles[f].file;
    const Block* gate = sideFiles[f].gate;
    fprintf(out, "\n### Side file `%s`\n\n", file.path);
    fprintf(out,
        "- Edited where the record's merge reaches it%s%s%s; %u bytes, the bytes no key holds "
        "carried through\n",
        gate ? " (while `" : "",
        gate ? gate->gate.setId->key : "",
        gate ? "` is open)" : "",
        static_cast<unsigned>(file.layout.size));
    fprintf(out, "- Read: %s\n", ReadPolicyText(file.readPolicy));
    fprintf(out, "- Failed write: %d; the record is not written\n", file.writeFailure.result);
    int none = 0;
    WriteKeys(out, notes, file.layout, family.layout, gate, sideFiles, none);
  }
}

}  // namespace

bool WriteKeyReference(FILE* out) {
  fputs(
      "# Settings record keys\n\n"
      "Every key the settings back end stores, per camera-module family, in the order the merge "
      "takes them,\n"
      "read from the families' layouts. Generated: do not edit; after changing a layout run\n\n"
      "    build/host/zrcamctl-inspect --reference > docs/keys.md\n\n"
      "Widths: `u8`, `u16`, `i32` (a word read as signed), `u32` (a word stored unsigned), all "
      "little-endian;\n"
      "`text[N]`: a NUL-terminated text in N bytes; `chars[N]`: up to N characters, NUL-padded; "
      "`bit`: "
      "one bit\n"
      "of a byte.\n"
      "A gate's keys are merged only while its set id is stored below the limit; a slot table's "
      "key goes to\n"
      "the slot its id row selects. Rows marked *own rule* are the family's own code. A side "
      "file's\n"
      "keys follow the record's.\n"
      "Read back (`zrcamctlget.cgi`): a *setting* is restored by posting its value and makes the "
      "camera do\n"
      "nothing but take it (the form the program answers carries the settings); a *command* asks "
      "the camera\n"
      "to act or marks something pending (a command, an object id, a request flag, an action, the "
      "key-value\n"
      "lock, a set id); an *edit* is reached only through a gate or a slot, kept by the family's "
      "own rule\n"
      "or merged only by a plain save.\n",
      out);
  for (const ModuleRow& row : ModuleTable)
    if (row.family && !FindFamilyNotes(row.family)) return false;
  for (int f = 0; f < kFamilyNoteCount; ++f) {
    const SettingsFamily& family = *kFamilyNotes[f].family;
    static RecordKey keys[kMaxRecordKeys];
    if (ListRecordKeys(family.layout, keys, kMaxRecordKeys) < 0) return false;
    WriteFamily(out, family);
  }
  fputs("\nModule codes without a family:", out);
  for (const ModuleRow& row : ModuleTable)
    if (!row.family) fprintf(out, " %c%c", row.code >> 8, row.code & 0xFF);
  fputs("\n", out);
  return true;
}
