#include "modules/product_code.h"

#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "device/device_paths.h"

namespace {

constexpr int kWorkBufferSize = 1024;
constexpr int kMinPnCodeLength = 21;  // characters 19 and 20 are the module code

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
  snprintf(out, kPnCodeBufferSize, "%s", start);
  return static_cast<int>(strlen(out));
}

int PnCodeUtilQefStrRead(char* out, int keyOffset) {
  if (keyOffset > 7) {
    fprintf(stderr, "PnCodeUtilQefStrRead():KeyOffset=%d error\n", keyOffset);
    return -1;
  }
  char* work = static_cast<char*>(malloc(kWorkBufferSize));
  if (!work) {
    fprintf(stderr, "PnCodeUtilQefStrRead():malloc error\n");
    return -1;
  }

  // The proc file is copied to a regular file first, then read from there.
  char copyPath[64];
  snprintf(copyPath, sizeof copyPath, device::kBasicConfCopyFormat, static_cast<int>(getpid()));
  char command[160];
  snprintf(
      command, sizeof command, device::kCatCommandFormat, device::kBasicConfProcFile, copyPath);
  // Whatever another user may have planted at the copy path (a link to a
  // file of ours) goes first, and the copy is read without following links.
  remove(copyPath);
  (void)!system(command);

  const int fd = open(copyPath, O_RDONLY | O_NOFOLLOW);
  if (fd < 0) {
    fprintf(stderr, "qet_get_and_init_pn_code():open(%s) error \n", copyPath);
    free(work);
    return -1;
  }

  int length = -1;
  memset(work, 0, kWorkBufferSize);
  // One byte stays NUL so that the text always ends inside the buffer.
  if (read(fd, work, kWorkBufferSize - 1) < 0) {
    fprintf(stderr, "qet_get_and_init_pn_code():read(%s) error \n", copyPath);
  } else {
    length = ParseQefString(work, keyOffset, out);
  }
  free(work);
  close(fd);
  unlink(copyPath);
  return length;
}

int PnCodeUtilRead(char* out) { return PnCodeUtilQefStrRead(out, 1); }

int32_t GetExtCamId(char (&pnCode)[kPnCodeBufferSize]) {
  memset(pnCode, 0, sizeof pnCode);
  const int length = PnCodeUtilRead(pnCode);
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
