#include "app/programs.h"

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include "app/get_program.h"
#include "app/set_program.h"
#include "cgi/cgi_request.h"
#include "cgi/cgi_response.h"
#include "cgi/request_origin.h"
#include "device/device_paths.h"
#include "fisheye/fisheye_settings.h"

int ZrCamCtlApply(Request&) { return 1; }
int ZrCamCtlDefault(Request&) { return 1; }

namespace {

// Reads the pid as "%d" would: blanks, an optional sign, digits. False when
// there are no digits.
bool ReadPid(FILE* file, int32_t* pid) {
  char text[24];
  int c;
  do c = fgetc(file);
  while (c == ' ' || (c >= '\t' && c <= '\r'));
  size_t n = 0;
  if (c == '+' || c == '-') {
    text[n++] = static_cast<char>(c);
    c = fgetc(file);
  }
  const size_t firstDigit = n;
  bool digits = false;
  for (; c >= '0' && c <= '9'; c = fgetc(file)) {
    digits = true;
    if (n == firstDigit && c == '0') continue;  // leading zeros carry no value
    // Twenty digits already saturate; the rest cannot change the value.
    if (n + 1 < sizeof text) text[n++] = static_cast<char>(c);
  }
  text[n] = '\0';
  if (!digits) return false;
  *pid = DecimalToInt32(text, nullptr);
  return true;
}

// False only when /proc tells the process's name and it is not the
// daemon's (as the kernel keeps it: at most 15 characters and a line end).
// Without /proc, the pid file is all there is to go by.
bool NamesDaemon(int32_t pid, const char* name) {
  char path[32], comm[32];
  snprintf(path, sizeof path, "/proc/%d/comm", static_cast<int>(pid));
  const int fd = open(path, O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_NOCTTY | O_CLOEXEC);
  if (fd < 0) return true;
  const ssize_t got = read(fd, comm, sizeof comm - 1);
  close(fd);
  if (got < 0) return true;
  comm[got] = '\0';
  const size_t length = strnlen(name, 15);
  return strncmp(comm, name, length) == 0 && (comm[length] == '\n' || comm[length] == '\0');
}

const char* BaseName(const char* path) {
  const char* slash = strrchr(path, '/');
  return slash ? slash + 1 : path;
}

}  // namespace

int SignalDaemon(const Daemon& daemon, int sig) {
  // Never waits on a FIFO, follows no link, and reads only a regular file.
  const int fd = open(daemon.pidFile, O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_NOCTTY | O_CLOEXEC);
  if (fd < 0 && errno != ELOOP) {
    fprintf(stderr, "[%s] pid file [%s] is not found.\n", daemon.tag, daemon.pidFile);
    return -1;
  }
  struct stat st;
  FILE* file = fd >= 0 && fstat(fd, &st) == 0 && S_ISREG(st.st_mode) ? fdopen(fd, "r") : nullptr;
  int32_t pid = 0;
  const bool havePid = file && ReadPid(file, &pid);
  if (file) fclose(file);
  else if (fd >= 0) close(fd);
  // A pid of 0 or below would signal a process group or every process,
  // pid 1 is init, which some take a SIGUSR2 as an order to power off, and
  // a pid the daemon no longer holds may name any other process.
  if (!havePid || pid <= 1 || !NamesDaemon(pid, daemon.name) ||
      kill(static_cast<pid_t>(pid), sig) != 0) {
    fprintf(stderr, "[%s] Send sig = [%d] to %s. [Error]\n", daemon.tag, sig, daemon.name);
    return -2;
  }
  fprintf(stderr, "[%s] Send sig = [%d] to %s. [OK]\n", daemon.tag, sig, daemon.name);
  return 0;
}

const Daemon kZrCamCtlD = {"SendSignalToZrCamCtlD", "zrcamctld", device::kZrCamCtlDPidFile};
const Daemon kVmfd = {"SendSignalToVmfd", "vmfd", device::kVmfdPidFile};

const CgiProgram CgiProgramTable[] = {
    {"zrcamctlset.cgi", ZrCamCtlSet, &kZrCamCtlD, device::kSignalSettingsChanged},
    {"zrcamctlapply.cgi", ZrCamCtlApply, &kZrCamCtlD, device::kSignalSettingsChanged},
    {"zrcamctldefault.cgi", ZrCamCtlDefault, &kZrCamCtlD, device::kSignalDefault},
    {"zrfisheyeset.cgi", ZrFisheyeSet, &kVmfd, device::kSignalDefault},
    {"zrcamctlget.cgi", ZrCamCtlGet, nullptr, 0},
    {nullptr, nullptr, nullptr, 0},
};

int DispatchCgiProgram(Request& request, int argc, char** argv) {
  const char* name = argc >= 1 && argv[0] ? BaseName(argv[0]) : nullptr;
  const CgiProgram* program = CgiProgramTable;
  while (name && program->name && strcmp(program->name, name) != 0) ++program;
  const bool known = name && program->name && program->function;

  memset(request.errorBuffer, 0, sizeof request.errorBuffer);
  if (const char* refusal = known ? CrossSiteRefusal(request.cgi) : nullptr) {
    snprintf(request.errorBuffer, sizeof request.errorBuffer, "%s", refusal);
    WriteErrorPage(request, name);
    return 0;
  }
  if (ReadCgiForm(request) != 0) return -1;
  if (!name) return 0;
  if (!known) {
    WriteUnknownProgram(request, name);
    return 0;
  }

  const int result = program->function(request);
  if (result < 0) {
    WriteErrorPage(request, name);
    return 0;
  }
  if (program->daemon) SignalDaemon(*program->daemon, program->signal);
  if (result == kProgramAnswered) return 0;
  if (result == 0) {
    WriteBareAnswer(request);
    return 0;
  }
  return WriteReturnPage(request);
}
