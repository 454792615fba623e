#include "filesys/atomic_file.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
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

// Only these are ever replaced; anything else at the path (a device, a FIFO,
// a socket) is not ours to swap out, and a directory makes the rename fail.
bool Replaceable(const char* path) {
  struct stat st;
  if (lstat(path, &st) != 0) return errno == ENOENT;
  return S_ISREG(st.st_mode) || S_ISLNK(st.st_mode) || S_ISDIR(st.st_mode);
}

// The pid in "<base>.<pid>.new", or 0 when name is not a temporary of base.
pid_t TemporaryPid(const char* name, const char* base) {
  const size_t length = strlen(base);
  if (strncmp(name, base, length) != 0 || name[length] != '.') return 0;
  const char* digits = name + length + 1;
  char* end;
  const long pid = strtol(digits, &end, 10);
  if (end == digits || *digits < '1' || *digits > '9' || strcmp(end, ".new") != 0) return 0;
  return pid > 0 && pid <= 0x3FFFFFFF ? static_cast<pid_t>(pid) : 0;
}

// Removes the named temporaries that saves of path killed before their
// rename left behind. One whose process still runs is another save under
// way (a save that had to go on without the lock), and stays.
void RemoveLeftovers(const char* directory, const char* path) {
  const char* slash = strrchr(path, '/');
  const char* base = slash ? slash + 1 : path;
  const int fd = open(directory, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return;
  alignas(dirent64) char entries[2048];
  ssize_t got;
  while ((got = getdents64(fd, entries, sizeof entries)) > 0) {
    for (ssize_t at = 0; at < got;) {
      const dirent64* entry = reinterpret_cast<const dirent64*>(entries + at);
      at += entry->d_reclen;
      const pid_t pid = TemporaryPid(entry->d_name, base);
      if (pid != 0 && (pid == getpid() || (kill(pid, 0) != 0 && errno == ESRCH))) {
        unlinkat(fd, entry->d_name, 0);
      }
    }
  }
  close(fd);
}

// Makes a rename in directory durable.
bool SyncDirectory(const char* directory) {
  const int fd = open(directory, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return false;
  const bool synced = fsync(fd) == 0;
  return close(fd) == 0 && synced;
}

}  // namespace

bool OpenReplacement(Replacement& r, const char* path) {
  r = {};
  snprintf(r.temporary, sizeof r.temporary, "%s.%d.new", path, static_cast<int>(getpid()));
  if (!Replaceable(path)) return false;
  char directory[sizeof r.temporary];
  DirectoryOf(path, directory, sizeof directory);
  RemoveLeftovers(directory, path);
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
  // The old file's read and write bits, never more: a file someone else
  // planted with setuid, setgid, sticky or execute bits, or the file a link
  // names, shapes no file this save makes.
  const int old = open(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  struct stat st;
  if (old >= 0 && fstat(old, &st) == 0 && S_ISREG(st.st_mode)) fchmod(fd, st.st_mode & 0666);
  if (old >= 0) close(old);
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
  const int result = !written ? -1 : !nameable || rename(r.temporary, path) != 0 ? -2 : 0;
  if (result != 0 && r.named) unlink(r.temporary);
  if (result != 0) return result;
  char directory[sizeof r.temporary];
  DirectoryOf(path, directory, sizeof directory);
  return SyncDirectory(directory) ? 0 : -1;
}

void AbandonReplacement(Replacement& r) {
  if (r.file) fclose(r.file);
  r.file = nullptr;
  if (r.named) unlink(r.temporary);
}
