// zrcamctl-inspect: a settings record as the camera-control daemon reads
// it, key by key, from the same layouts the set program merges by.
//
//   zrcamctl-inspect [--json] MODULE RECORD_FILE
//   zrcamctl-inspect [--json] --diff MODULE OLD NEW
//   zrcamctl-inspect --reference
//
// Exit status: 0, or 1 when --diff found differences; 2 for bad input or
// usage, with one line on standard error.
#include <errno.h>
#include <fcntl.h>
#include <stdarg.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "inspect/key_reference.h"
#include "frame/record_keys.h"
#include "modules/module_table.h"

namespace {

constexpr char kUsage[] =
    "usage: zrcamctl-inspect [--json] MODULE RECORD_FILE | [--json] --diff MODULE OLD NEW | "
    "--reference\n";

// One line on standard error; the exit status for bad input.
__attribute__((format(printf, 1, 2))) int Fail(const char* format, ...) {
  va_list args;
  va_start(args, format);
  fputs("zrcamctl-inspect: ", stderr);
  vfprintf(stderr, format, args);
  fputs("\n", stderr);
  va_end(args);
  return 2;
}

// The record file, which must hold exactly `size` bytes.
bool ReadRecordFile(const char* path, uint8_t* bytes, uint32_t size) {
  const int fd = open(path, O_RDONLY);
  if (fd < 0) return Fail("%s: %s", path, strerror(errno)), false;
  uint32_t got = 0;
  for (;;) {  // one byte past the record tells a longer file
    const ssize_t n = read(fd, bytes + got, size + 1 - got);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) {
      Fail("%s: %s", path, strerror(errno));
      close(fd);
      return false;
    }
    got += static_cast<uint32_t>(n);
    if (n == 0 || got == size + 1) break;
  }
  close(fd);
  if (got == size) return true;
  if (got > size)
    return Fail("%s: longer than the %u-byte record", path, static_cast<unsigned>(size)), false;
  return Fail("%s: %u bytes, not the %u-byte record",
             path,
             static_cast<unsigned>(got),
             static_cast<unsigned>(size)),
         false;
}

void PrintKey(
    const RecordKey& key, bool json, const KeyValue& value, const KeyValue* now, bool& first) {
  char name[kShownKeySize], type[16], shown[kShownValueSize], shownNow[kShownValueSize] = "";
  TypeName(key.field, type, sizeof type);
  ShowValue(value, json, shown, sizeof shown);
  if (now) ShowValue(*now, json, shownNow, sizeof shownNow);
  const unsigned offset = key.field.offset;
  if (!json) {
    ShownKey(key, name, sizeof name);
    if (now) printf("%5u %s %s %s -> %s\n", offset, name, type, shown, shownNow);
    else printf("%5u %s %s %s\n", offset, name, type, shown);
    return;
  }
  PostedKey(key, name, sizeof name);
  printf("%s{\"offset\": %u, \"key\": \"%s\"", first ? "" : ",\n", offset, name);
  first = false;
  if (key.group) printf(", \"group\": \"%s\"", key.group->key);
  if (key.kind == KeyKind::Slot) printf(", \"slot\": %u", static_cast<unsigned>(key.index));
  if (key.field.Type() == FieldType::Checkbox) fputs(", \"checkbox\": true", stdout);
  if (now) printf(", \"type\": \"%s\", \"old\": %s, \"new\": %s}", type, shown, shownNow);
  else printf(", \"type\": \"%s\", \"value\": %s}", type, shown);
}

int Inspect(bool json, const char* module, const char* path, const char* newPath) {
  const ModuleRow* row = nullptr;
  if (strlen(module) == 2) row = FindModuleRow(ModuleCode(module));
  if (!row) return Fail("unknown module code \"%s\"", module);
  if (!row->family) return Fail("module %s has no settings family", module);
  const SettingsFamily& family = *row->family;

  static uint8_t bytes[2][kLargestRecord + 1];
  const uint32_t size = family.layout.size;
  if (!ReadRecordFile(path, bytes[0], size)) return 2;
  if (newPath && !ReadRecordFile(newPath, bytes[1], size)) return 2;
  const RecordView old = {bytes[0], size}, now = {bytes[1], size};

  static RecordKey keys[kMaxRecordKeys];
  const int count = ListRecordKeys(family.layout, keys, kMaxRecordKeys);
  if (count < 0) return Fail("module %s: more keys than the inspector has room for", module);
  bool first = true;
  int differ = 0;
  if (json) fputs("[\n", stdout);
  for (int k = 0; k < count; ++k) {
    const KeyValue value = ReadKey(keys[k], old);
    if (!newPath) {
      PrintKey(keys[k], json, value, nullptr, first);
      continue;
    }
    const KeyValue changed = ReadKey(keys[k], now);
    if (SameValue(value, changed)) continue;
    PrintKey(keys[k], json, value, &changed, first);
    ++differ;
  }
  if (json) fputs(first ? "]\n" : "\n]\n", stdout);
  return differ ? 1 : 0;
}

}  // namespace

int main(int argc, char** argv) {
  bool json = false, diff = false;
  int a = 1;
  for (; a < argc && argv[a][0] == '-' && argv[a][1] == '-'; ++a) {
    if (strcmp(argv[a], "--json") == 0) {
      json = true;
    } else if (strcmp(argv[a], "--diff") == 0) {
      diff = true;
    } else if (strcmp(argv[a], "--reference") == 0 && argc == 2) {
      if (!WriteKeyReference(stdout))
        return Fail("a family of the module table is missing from the reference");
      a = argc;
      break;
    } else {
      fputs(kUsage, stderr);
      return 2;
    }
  }
  int status = 0;
  if (argc > 1 && strcmp(argv[1], "--reference") == 0) {
    status = 0;
  } else if (argc - a == (diff ? 3 : 2)) {
    status = Inspect(json, argv[a], argv[a + 1], diff ? argv[a + 2] : nullptr);
  } else {
    fputs(kUsage, stderr);
    return 2;
  }
  if (fflush(stdout) != 0 || ferror(stdout)) return Fail("standard output: %s", strerror(errno));
  return status;
}
