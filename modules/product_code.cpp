#include "modules/product_code.h"

#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include "device/device_paths.h"

namespace {

constexpr int kWorkBufferSize = 1024;
constexpr int kMinPnCodeLength = 21;  // characters 19 and 20 are the module code

enum class Got { Text, NoOpen, NoRead };

// At most kWorkBufferSize - 1 bytes of a regular file into work, NULs after
// them; a link is not followed, a FIFO not waited on. Work is left as it
// was when nothing is read.
Got ReadText(const char* path, char* work) {
  const int fd = open(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  struct stat st;
  if (fd < 0 || fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
    if (fd >= 0) close(fd);
    return Got::NoOpen;
  }
  const ssize_t length = read(fd, work, kWorkBufferSize - 1);
  close(fd);
  if (length < 0) return Got::NoRead;
  memset(work + length, 0, static_cast<size_t>(kWorkBufferSize - length));
  return Got::Text;
}

// The basic configuration through a copy the shell makes in /tmp, read
// from there. The file is created here,
// exclusively, so that the shell never writes through a link or into a FIFO
// another account planted at the name. whole: the copy was made and read.
Got ReadCopy(char* work, bool& whole) {
  char copyPath[64];
  snprintf(copyPath, sizeof copyPath, device::kBasicConfCopyFormat, static_cast<int>(getpid()));
  char command[160];
  snprintf(
      command, sizeof command, device::kCatCommandFormat, device::kBasicConfProcFile, copyPath);
  remove(copyPath);
  const int fd = open(copyPath, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
  if (fd < 0) {
    fprintf(stderr, "qet_get_and_init_pn_code():open(%s) error \n", copyPath);
    return Got::NoOpen;
  }
  close(fd);
  const bool copied = system(command) == 0;
  const Got got = ReadText(copyPath, work);
  if (got != Got::Text) {
    const char* call = got == Got::NoOpen ? "open" : "read";
    fprintf(stderr, "qet_get_and_init_pn_code():%s(%s) error \n", call, copyPath);
  }
  unlink(copyPath);
  whole = copied && got == Got::Text;
  return got;
}

}  // namespace

int ParseQefString(char* text, int keyOffset, char* out) {
  char key[32];
  snprintf(key, sizeof key, "QEF_STR%d=\"", keyOffset);
  char* start = strstr(text, key);
  if (!start) {
    fprintf(stderr, "qet_get_and_init_pn_code():strstr(%s) error for start\n", key);
    return -1;
  }
  start += strlen(key);
  char* end = strstr(start, "\";");
  if (!end) {
    fprintf(stderr, "qet_get_and_init_pn_code():strstr(%s) error for end\n", "\";");
    return -1;
  }
  *end = '\0';
  snprintf(out, kProductCodeSize, "%s", start);
  return static_cast<int>(strlen(out));
}

int PnCodeUtilRead(char (&pnCode)[kProductCodeSize]) {
  memset(pnCode, 0, sizeof pnCode);
  char* work = static_cast<char*>(malloc(kWorkBufferSize));
  if (!work) {
    fprintf(stderr, "PnCodeUtilQefStrRead():malloc error\n");
    return -1;
  }
  // Without a whole copy (/tmp full or missing, a name another account
  // took, no cat) the driver's file is read directly; when that fails too,
  // whatever was read of the copy is parsed.
  int length = -1;
  bool whole = false;
  const Got copy = ReadCopy(work, whole);
  if (whole || ReadText(device::kBasicConfProcFile, work) == Got::Text || copy == Got::Text)
    length = ParseQefString(work, 1, pnCode);
  free(work);
  return length;
}

int32_t GetExtCamId(const char* pnCode, int length) {
  if (length < 0) {
    fprintf(stderr, "PnCodeUtilRead is failed\n");
    return -1;
  }
  if (length < kMinPnCodeLength) {
    fprintf(stderr, "pnCodeLength is not correct[pnCodeLength=%d]\n", length);
    return -2;
  }
  return ModuleCode(pnCode + 19);
}

int MakeCamCtlConfPath(char* pathBuffer, int bufferLength, const char* pnCode) {
  if (!pathBuffer || !pnCode) {
    fprintf(stderr, "a_filePath or a_pnCode is null\n");
    return -1;
  }
  const int length = static_cast<int>(strlen(pnCode));
  if (length < kMinPnCodeLength) {
    fprintf(stderr, "pnCodeLength is not correct[pnCodeLength=%d]\n", length);
    return -2;
  }
  char value[kRecordPathBufferSize];
  snprintf(value, sizeof value, device::kRecordPathFormat, pnCode[19], pnCode[20]);
  const int valueLength = static_cast<int>(strlen(value));
  if (valueLength >= bufferLength) {
    fprintf(stderr,
        "strlen(value)>=a_filePathBufferLength [strlen(value)=%d a_filePathBufferLength=%d]\n",
        valueLength,
        bufferLength);
    return -3;
  }
  memcpy(pathBuffer, value, static_cast<size_t>(valueLength) + 1);
  return 0;
}
