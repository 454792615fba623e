#include "frame/record_store.h"

#include <stdio.h>
#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "filesys/atomic_file.h"

namespace {

bool ArgumentsValid(const void* record, int32_t recordSize, const char* filePath) {
  if (record && recordSize > 0 && filePath) return true;
  // The record is not text: print where it is, not what it holds.
  fprintf(stderr,
      "arg is wrong [a_conf:%p , a_confSize:%d , a_filePath=%s\n",
      record,
      static_cast<int>(recordSize),
      filePath ? filePath : "(null)");
  return false;
}

}  // namespace

int ZrCamCtlReadConfFromFile(void* record, int32_t recordSize, const char* filePath) {
  if (!ArgumentsValid(record, recordSize, filePath)) return -1;
  // Never waits: a FIFO without a writer opens at once and, like a device
  // or a directory, is read as holding nothing. A link is not followed: it
  // fails to open, as a missing file does, and the save then replaces it.
  const int fd = open(filePath, O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_NOCTTY | O_CLOEXEC);
  if (fd < 0) {
    fprintf(stderr, "fopen is failed [PATH:%s]\n", filePath);
    return -2;
  }
  struct stat st;
  size_t got = 0;
  if (fstat(fd, &st) == 0 && S_ISREG(st.st_mode)) {
    char* bytes = static_cast<char*>(record);
    for (ssize_t n; got < static_cast<size_t>(recordSize); got += static_cast<size_t>(n)) {
      n = read(fd, bytes + got, static_cast<size_t>(recordSize) - got);
      if (n < 0 && errno == EINTR) n = 0;
      else if (n <= 0) break;
    }
  }
  close(fd);
  if (got != static_cast<size_t>(recordSize)) {
    fprintf(stderr,
        "fread is failed [sizeToRead:%d sizeToReaded:%d]\n",
        static_cast<int>(recordSize),
        static_cast<int>(got));
    return -3;
  }
  return recordSize;
}

int ZrCamCtlWriteConfToFile(const void* record, int32_t recordSize, const char* filePath) {
  if (!ArgumentsValid(record, recordSize, filePath)) return -1;
  Replacement replacement;
  if (!OpenReplacement(replacement, filePath)) {
    fprintf(stderr, "fopen is failed [PATH:%s]\n", filePath);
    return -2;
  }
  const size_t put = fwrite(record, 1, static_cast<size_t>(recordSize), replacement.file);
  if (put != static_cast<size_t>(recordSize)) {
    fprintf(stderr,
        "fwrite is failed [sizeToWrite=%d sizeToWritten=%d]\n",
        static_cast<int>(recordSize),
        static_cast<int>(put));
    AbandonReplacement(replacement);
    return -3;
  }
  // A full file system often shows only when the buffered bytes are
  // flushed; what cannot be replaced (a directory, a mount point) could
  // not be opened.
  switch (CommitReplacement(replacement, filePath)) {
    case 0: return recordSize;
    case -1: fprintf(stderr, "fclose is failed [PATH:%s]\n", filePath); return -3;
    default: fprintf(stderr, "fopen is failed [PATH:%s]\n", filePath); return -2;
  }
}
