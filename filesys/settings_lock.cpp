#include "filesys/settings_lock.h"

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

int TakeSettingsLock(const char* path) {
  // Children (the shell commands) do not inherit it. A FIFO is not waited
  // on, a link not followed, and only a regular file is locked.
  const int fd =
      open(path, O_RDONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0644);
  struct stat st;
  if (fd >= 0 && fstat(fd, &st) == 0 && S_ISREG(st.st_mode)) {
    for (int waited = 0; waited < 2000; waited += 10) {
      if (flock(fd, LOCK_EX | LOCK_NB) == 0) return fd;
      if (errno != EWOULDBLOCK && errno != EINTR) break;
      usleep(10000);
    }
  }
  if (fd >= 0) close(fd);
  fputs("[TakeSettingsLock] lock not taken, saving unlocked\n", stderr);
  return -1;
}

void ReleaseSettingsLock(int lock) {
  if (lock >= 0) close(lock);
}
