// The "zrcamctlget.cgi" program: the attached module's settings record read
// back, as JSON or, with "format=form", its settings as a form the set
// program takes back. It reads only: no lock, no write, no signal (a save
// replaces a file whole, so a read sees one whole file).
#include "app/get_program.h"

#include <stdio.h>
#include <string.h>

#include "app/programs.h"
#include "app/set_program.h"
#include "cgi/cgi_request.h"
#include "frame/record_keys.h"
#include "frame/record_store.h"
#include "modules/module_table.h"

namespace {

// The family constants' names, as the family list gives them.
struct FamilyName {
  const SettingsFamily* family;
  const char* name;
};
#define ZRCAMCTL_FAMILY_NAME(name, file) {&k##name, #name},
constexpr FamilyName kFamilyNames[] = {ZRCAMCTL_FAMILIES(ZRCAMCTL_FAMILY_NAME)};
#undef ZRCAMCTL_FAMILY_NAME

const char* NameOf(const SettingsFamily* family) {
  for (const FamilyName& f : kFamilyNames)
    if (f.family == family) return f.name;
  return "";
}

// The record and the side file, read whole.
uint8_t gRecord[kLargestRecord];
uint8_t gSideFile[kLargestSideFile];

// Side files are rare: at most one a family.
const SideFile* SideFileOf(const Layout& layout) {
  const SideFile* file = nullptr;
  VisitBlocks(layout, [&](const Block& block, const Block*) {
    if (block.op == Op::SideFile) file = block.side.file;
  });
  return file;
}

// Every key of the record's layout, then every key of the side file's
// (with the gate that holds its block), each with the bytes it is read from.
using KeyVisit = FunctionRef<void(const RecordKey&, const Layout&, const RecordView&)>;
void ForEachKey(const SettingsFamily& family, const RecordView& record, const RecordView& side,
    KeyVisit visit) {
  const Layout& layout = family.layout;
  ForEachRecordKey(layout, [&](const RecordKey& key) { visit(key, layout, record); });
  VisitBlocks(layout, [&](const Block& block, const Block* holder) {
    if (block.op != Op::SideFile) return;
    const Layout& sideLayout = block.side.file->layout;
    ForEachRecordKey(
        sideLayout, [&](const RecordKey& key) { visit(key, sideLayout, side); }, holder);
  });
}

// An array's key: its format with "<n>" for the index.
void WriteKeyName(const RecordKey& key) {
  char name[kShownKeySize];
  if (key.kind == KeyKind::Element) KeyPattern(key.name, name, sizeof name);
  else PostedKey(key, name, sizeof name);
  printf("\"%s\":", name);
}

// A form value's bytes: every byte outside A-Z a-z 0-9 - _ . ~ as %XX.
void WriteFormBytes(const uint8_t* bytes, size_t length) {
  for (size_t i = 0; i < length; ++i) {
    const unsigned c = bytes[i];
    if ((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
        (c && strchr("-_.~", static_cast<int>(c))))
      putchar(static_cast<int>(c));
    else if (c != '\r' && c != '\n')  // a form value cannot carry a line break
      printf("%%%02X", c);
  }
}

// The keys of one role. As JSON: one of the answer's three objects, arrays
// and slot tables as JSON arrays that an element's index (a slot's id)
// indexes. As a form (the settings): a body the set program stores back as
// it is, a reversed row's value as it is posted, a checkbox only when set.
void WriteKeys(const char* title, KeyRole role, const SettingsFamily& family,
    const RecordView& record, const RecordView& side) {
  const bool form = !title;
  if (!form) printf(",\"%s\":{", title);
  bool first = true;
  const char* array = nullptr;  // the key of the JSON array being written
  ForEachKey(family,
      record,
      side,
      [&](const RecordKey& key, const Layout& layout, const RecordView& bytes) {
        if (RoleOf(key, layout, family.layout) != role) return;
        const KeyValue value = ReadKey(key, bytes);
        if (form) {
          if (key.field.Type() == FieldType::Checkbox && value.number == 0) return;
          char name[kShownKeySize];
          PostedKey(key, name, sizeof name);
          printf("%s%s=", first ? "" : "&", name);
          first = false;
          if (value.isText) WriteFormBytes(value.text, value.length);
          else
            printf("%lld",
                static_cast<long long>(key.field.Rule() == ValueRule::Reversed
                                           ? key.field.arg - value.number
                                           : value.number));
          return;
        }
        const bool element = key.kind == KeyKind::Element || key.kind == KeyKind::Slot;
        if (array && (!element || key.name != array)) putchar(']'), array = nullptr;
        if (array) {
          putchar(',');
        } else {
          if (!first) putchar(',');
          first = false;
          WriteKeyName(key);
          if (element) {  // indexed as its keys are: null below the first index
            putchar('[');
            for (int i = 0; i < key.index; ++i) fputs("null,", stdout);
            array = key.name;
          }
        }
        char shown[kShownValueSize];
        ShowValue(value, true, shown, sizeof shown);
        fputs(shown, stdout);
      });
  if (!form) fputs(array ? "]}" : "}", stdout);
}

int Fail(Request& request, const char* message) {
  snprintf(request.errorBuffer, sizeof request.errorBuffer, "%s", message);
  return -1;
}

}  // namespace

int ZrCamCtlGet(Request& request) {
  const AttachedModule module = FindAttachedModule(request);
  if (!module.row) return Fail(request, "unknown module");
  if (!module.row->family) {
    snprintf(request.errorBuffer,
        sizeof request.errorBuffer,
        "no settings family for module %c%c",
        module.row->code >> 8,
        module.row->code & 0xFF);
    return -1;
  }
  const SettingsFamily& family = *module.row->family;
  const SideFile* sideFile = SideFileOf(family.layout);
  const RecordView record = {gRecord, family.layout.size},
                   side = {gSideFile, sideFile ? sideFile->layout.size : 0};
  if (module.path[0] == '\0' ||
      ZrCamCtlReadConfFromFile(record.bytes, static_cast<int32_t>(record.size), module.path) < 0 ||
      (sideFile && ZrCamCtlReadConfFromFile(
                       side.bytes, static_cast<int32_t>(side.size), sideFile->path) < 0))
    return Fail(request, "settings record not readable");

  char format[8] = "";
  const bool form = FormLookup(request.form, "format", format, sizeof format) == LookupOk &&
                    strcmp(format, "form") == 0;
  printf("Content-type: %s\r\nCache-Control: no-store\r\n\r\n",
      form ? "application/x-www-form-urlencoded" : "application/json");
  if (form) {
    WriteKeys(nullptr, KeyRole::Setting, family, record, side);
    return kProgramAnswered;
  }
  printf("{\"module\":\"%c%c\",\"family\":\"%s\",\"recordBytes\":%u",
      module.row->code >> 8,
      module.row->code & 0xFF,
      NameOf(&family),
      static_cast<unsigned>(record.size));
  if (sideFile) printf(",\"sideFileBytes\":%u", static_cast<unsigned>(side.size));
  WriteKeys("settings", KeyRole::Setting, family, record, side);
  WriteKeys("commands", KeyRole::Command, family, record, side);
  WriteKeys("edits", KeyRole::Edit, family, record, side);
  putchar('}');
  return kProgramAnswered;
}
