#include "filesys/atomic_file.h"

#include <fcntl.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// The directory part of path ("." when it has none), into out.
void DirectoryOf(const char* path, char* out, size_t size) {
  const char* slash = strrchr(path, '/');
  if (!slash) {
    snprintf(out, size, ".");
  } else {
    snprintf(out, size, "%.*s", slash == path ? 1 : static_cast<int>(slash - path), path);
  }
}

}  // namespace

bool OpenReplacement(Replacement& r, const char* path) {
  r = {};
  snprintf(r.temporary, sizeof r.temporary, "%s.%d.new", path, static_cast<int>(getpid()));
  char directory[sizeof r.temporary];
  DirectoryOf(path, directory, sizeof directory);
  // An unnamed file is named later through its descriptor, which takes
  // either the right to link by descriptor or /proc.
  const bool canName = geteuid() == 0 || access("/proc/self/fd", X_OK) == 0;
  int fd = canName ? open(directory, O_WRONLY | O_TMPFILE | O_CLOEXEC, 0666) : -1;
  if (fd < 0) {
    r.named = true;
    unlink(r.temporary);
    fd = open(r.temporary, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
    if (fd < 0) return false;
  }
  struct stat st;
  if (stat(path, &st) == 0 && S_ISREG(st.st_mode)) fchmod(fd, st.st_mode & 07777);
  r.file = fdopen(fd, "wb");
  if (!r.file) {
    close(fd);
    if (r.named) unlink(r.temporary);
  }
  return r.file != nullptr;
}

int CommitReplacement(Replacement& r, const char* path) {
  const int fd = fileno(r.file);
  bool written = fflush(r.file) == 0 && !ferror(r.file) && fsync(fd) == 0;
  bool nameable = r.named;
  if (written && !r.named) {
    char self[64];
    snprintf(self, sizeof self, "/proc/self/fd/%d", fd);
    unlink(r.temporary);
    r.named = nameable = linkat(fd, "", AT_FDCWD, r.temporary, AT_EMPTY_PATH) == 0 ||
                         linkat(AT_FDCWD, self, AT_FDCWD, r.temporary, AT_SYMLINK_FOLLOW) == 0;
  }
  if (fclose(r.file) != 0) written = false;
  r.file = nullptr;
  int result = !written ? -1 : !nameable || rename(r.temporary, path) != 0 ? -2 : 0;
  if (result != 0 && r.named) unlink(r.temporary);
  return result;
}

void AbandonReplacement(Replacement& r) {
  if (r.file) fclose(r.file);
  r.file = nullptr;
  if (r.named) unlink(r.temporary);
}
