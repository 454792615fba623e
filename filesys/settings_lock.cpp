#include "filesys/settings_lock.h"

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/file.h>
#include <unistd.h>

int TakeSettingsLock(const char* path) {
  // Children (the shell commands) do not inherit it.
  const int fd = open(path, O_RDONLY | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0644);
  if (fd >= 0) {
    for (int waited = 0; waited < 2000; waited += 10) {
      if (flock(fd, LOCK_EX | LOCK_NB) == 0) return fd;
      if (errno != EWOULDBLOCK && errno != EINTR) break;
      usleep(10000);
    }
    close(fd);
  }
  fputs("[TakeSettingsLock] lock not taken, saving unlocked\n", stderr);
  return -1;
}

void ReleaseSettingsLock(int lock) {
  if (lock >= 0) close(lock);
}
