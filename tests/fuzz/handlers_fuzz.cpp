// Every family's handler over a fuzzed form and fuzzed record bytes, in
// process, against a record file in a temporary directory.
//
// Input: one byte choosing the family (in the order of families.h), two
// bytes of record length, the record bytes, then the urlencoded form.
#include <fcntl.h>
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "cgi/cgi_request.h"
#include "inspect/family_notes.h"

namespace {

// Longer than every record: reads never come up short, so the retrying
// handlers never pause.
constexpr size_t kRecordFileSize = 32768;

const char* RecordPath() {
  // Saves are synced: on a RAM file system that costs nothing.
  static char dir[] = "/dev/shm/zrfuzz.XXXXXX", path[64];
  if (!path[0]) {
    if (!mkdtemp(dir) && !mkdtemp(strcpy(dir, "/tmp/zrfuzz.XXXXXX"))) abort();
    snprintf(path, sizeof path, "%s/record.bin", dir);
    atexit([] { unlink(path), rmdir(dir); });
  }
  return path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 3) return 0;
  const SettingsFamily& family = *kFamilyNotes[data[0] % kFamilyNoteCount].family;
  size_t recordLength = static_cast<size_t>(data[1] | data[2] << 8);
  data += 3;
  size -= 3;
  if (recordLength > size) recordLength = size;

  // The rest of the file is a hole: it reads as zeros and costs no write.
  const int fd = open(RecordPath(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (fd < 0 || write(fd, data, recordLength) != static_cast<ssize_t>(recordLength) ||
      ftruncate(fd, kRecordFileSize) != 0)
    abort();
  close(fd);

  Request request = {};
  if (ParseUrlEncodedForm(request.form,
          reinterpret_cast<const char*>(data + recordLength),
          size - recordLength) == 0) {
    const FrameResult frame = RunSettingsFrame(request.form, family, RecordPath());
    if (strlen(frame.message) >= kErrorBufferSize) __builtin_trap();
  }
  FreeForm(request.form);
  return 0;
}
