#include "tests/device/device_root.h"

#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/cases.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace device_test {
namespace {

constexpr int kFlushSignal = SIGWINCH;  // numbered above SIGUSR1/2, so it is taken after them
const char* const kDaemonNames[2] = {"zrcamctld", "vmfd"};

[[noreturn]] void Die(const std::string& what) {
  perror(what.c_str());
  abort();
}

// The build's settings, which the environment may override.
std::string Setting(const char* name, const char* built) {
  const char* v = getenv(name);
  return v ? v : built;
}

// A daemon stand-in, by the daemon's name: records each SIGUSR1/SIGUSR2 as
// one byte on its pipe, and the flush signal as a byte that ends a collection.
[[noreturn]] void StandInLoop(int writeFd, const char* name) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  prctl(PR_SET_NAME, name);
  sigset_t set;
  sigemptyset(&set);
  for (const int sig : {SIGUSR1, SIGUSR2, kFlushSignal}) sigaddset(&set, sig);
  for (;;) {
    const int sig = sigwaitinfo(&set, nullptr);
    if (sig < 0) continue;
    const unsigned char b = static_cast<unsigned char>(sig);
    if (write(writeFd, &b, 1) != 1) _exit(1);
  }
}

}  // namespace

std::string ErrorPage(const std::string& errorText) {
  return "Content-type: text/html\r\n\r\n<html>\n<head>\n<script language=javascript>\n"
         "alert(\"zrcamctlset.cgi Cgi Func:[" +
         errorText + "] return ERROR!!!\");\nhistory.go(-1);\n</script>\n</head>\n</html>\n";
}

Bytes Pattern(size_t size, uint8_t seed) {
  Bytes b(size);
  for (size_t i = 0; i < size; ++i) b[i] = PatternByte(seed, i);
  return b;
}

std::vector<std::string> ListHost(const std::string& directory) {
  std::vector<std::string> names;
  std::error_code missing;  // lists nothing
  for (const auto& entry : std::filesystem::directory_iterator(directory, missing))
    names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

DeviceRoot& DeviceRoot::Get() {
  static DeviceRoot root;
  return root;
}

DeviceRoot::DeviceRoot() {
  char dir[] = "/tmp/zrcamctl-root.XXXXXX";
  if (!mkdtemp(dir)) Die("mkdtemp");
  root_ = dir;
  // In memory where it can be: a case's files are made, read and removed
  // whole, and a save's syncs reach no disk.
  rootMounted_ = mount("tmpfs", dir, "tmpfs", 0, "size=512m") == 0;
  chmod(dir, 0755);  // like a device's /: other users enter it too
  emulator_ = Setting("ZRCAMCTL_EMULATOR", ZRCAMCTL_EMULATOR);
  std::string command = "/bin/sh";
  for (const std::string& arg : {Setting("ZRCAMCTL_ROOT_SCRIPT", ZRCAMCTL_ROOT_SCRIPT),
           root_,
           Setting("ZRCAMCTL_EXE", ZRCAMCTL_EXE),
           emulator_,
           Setting("ZRCAMCTL_SYSROOT", ZRCAMCTL_SYSROOT)})
    command += " '" + arg + "'";
  if (system(command.c_str()) != 0) Die("command failed: " + command);

  // A real /proc lets sanitizer runtimes read their own maps; the driver's
  // directory is replaced by a small file system holding the stand-in
  // basic configuration.
  const std::string proc = root_ + "/proc";
  if (mount("proc", proc.c_str(), "proc", 0, nullptr) == 0) {
    procMounted_ = true;
    if (mount("tmpfs", (proc + "/driver").c_str(), "tmpfs", 0, "size=64k") != 0)
      Die("mount /proc/driver");
  } else {
    mkdir((proc + "/driver").c_str(), 0755);
  }
  WriteFile("/web/setup/cam.htm", std::string("<p>camera page</p>\n"));
  // The daemons' stand-ins, the signals they take blocked until they wait for them.
  sigset_t set, old;
  sigemptyset(&set);
  for (const int sig : {SIGUSR1, SIGUSR2, kFlushSignal}) sigaddset(&set, sig);
  sigprocmask(SIG_BLOCK, &set, &old);
  for (StandIn& d : daemons_) {
    int fds[2];
    if (pipe(fds) != 0) Die("pipe");
    d.pid = fork();
    if (d.pid < 0) Die("fork");
    if (d.pid == 0) {
      close(fds[0]);
      StandInLoop(fds[1], kDaemonNames[&d - daemons_]);
    }
    close(fds[1]);
    d.readFd = fds[0];
  }
  sigprocmask(SIG_SETMASK, &old, nullptr);
  Reset();
}

DeviceRoot::~DeviceRoot() {
  for (StandIn& d : daemons_) {
    kill(d.pid, SIGKILL);
    waitpid(d.pid, nullptr, 0);
    close(d.readFd);
  }
  for (auto it = mounts_.rbegin(); it != mounts_.rend(); ++it)
    umount2(HostPath(*it).c_str(), MNT_DETACH);
  bool clean = true;
  if (procMounted_) {
    clean = umount2((root_ + "/proc/driver").c_str(), MNT_DETACH) == 0 &&
            umount2((root_ + "/proc").c_str(), MNT_DETACH) == 0;
  }
  std::error_code ignored;
  if (clean) std::filesystem::remove_all(root_, ignored);
  if (clean && rootMounted_ && umount2(root_.c_str(), MNT_DETACH) == 0) rmdir(root_.c_str());
}

std::vector<int> DeviceRoot::CollectSignals(size_t daemon) const {
  std::vector<int> seen;
  const StandIn& d = daemons_[daemon];
  kill(d.pid, kFlushSignal);
  unsigned char b;
  while (read(d.readFd, &b, 1) == 1 && b != kFlushSignal) seen.push_back(b);
  return seen;
}

void DeviceRoot::Reset() {
  for (auto it = mounts_.rbegin(); it != mounts_.rend(); ++it)
    umount2(HostPath(*it).c_str(), MNT_DETACH);
  mounts_.clear();
  for (const char* p : {"/tmp", "/opt/kfp/etc", "/var/run", "/var/savecfg.calls", "/bin/cat"})
    RemoveAll(p);
  MakeDirs("/opt/kfp/etc/ZrConf/");
  MakeDirs("/tmp/");
  chmod(HostPath("/tmp").c_str(), 01777);
  for (size_t i = 0; i < 2; ++i) {
    CollectSignals(i);  // drops what killed requests sent
    WriteFile("/var/run/" + std::string(kDaemonNames[i]) + ".pid",
        std::to_string(daemons_[i].pid) + "\n");
  }
  SetModule("0J");
  WriteFile("/var/run/zrcamctl.lock", std::string());  // as after the device's first save
  (void)!symlink("busybox", HostPath("/bin/cat").c_str());
}

void DeviceRoot::RemoveAll(const std::string& devicePath) const {
  std::error_code missing;  // nothing to remove
  std::filesystem::remove_all(HostPath(devicePath), missing);
}

void DeviceRoot::MakeDirs(const std::string& devicePath) const {
  const std::string path = HostPath(devicePath);
  for (size_t at = root_.size() + 1; (at = path.find('/', at)) != std::string::npos; ++at)
    mkdir(path.substr(0, at).c_str(), 0755);
}

std::string DeviceRoot::HostPath(const std::string& devicePath) const { return root_ + devicePath; }

void DeviceRoot::WriteFile(const std::string& devicePath, const std::string& content) const {
  const std::string path = HostPath(devicePath);
  MakeDirs(devicePath);
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out << content;
  if (!out) Die("write " + path);
}

void DeviceRoot::WriteFile(const std::string& devicePath, const Bytes& content) const {
  WriteFile(devicePath, std::string(content.begin(), content.end()));
}

std::optional<std::string> DeviceRoot::ReadFile(const std::string& devicePath) const {
  struct stat st;
  if (lstat(HostPath(devicePath).c_str(), &st) != 0) return std::nullopt;
  return cases::ReadAll(HostPath(devicePath));
}

std::vector<std::string> DeviceRoot::List(const std::string& deviceDirectory) const {
  return ListHost(HostPath(deviceDirectory));
}

void DeviceRoot::SetModule(const std::string& moduleCode) const {
  WriteFile("/proc/driver/qe_basic_conf",
      "QEF_STR0=\"NVS\";\nQEF_STR1=\"ABCDEFGHIJKLMNOPQRS" + moduleCode +
          "-A1\";\nQEF_STR2=\"1.0.3\";\n");
}

std::string DeviceRoot::RecordPath(const std::string& moduleCode) {
  return "/opt/kfp/etc/ZrConf/ZrCamCtlConf" + moduleCode + ".bin";
}

void DeviceRoot::WriteRecord(const std::string& moduleCode, const Bytes& record) const {
  WriteFile(RecordPath(moduleCode), record);
}

std::optional<Bytes> DeviceRoot::ReadRecord(const std::string& moduleCode) const {
  const auto content = ReadFile(RecordPath(moduleCode));
  if (!content) return std::nullopt;
  return Bytes(content->begin(), content->end());
}

int DeviceRoot::DaemonPid(const std::string& daemon) const {
  return daemons_[daemon == "vmfd" ? 1 : 0].pid;
}

void DeviceRoot::MountTmpfs(const std::string& deviceDirectory, const std::string& size) const {
  const std::string opts = "size=" + size;
  if (mount("tmpfs", HostPath(deviceDirectory).c_str(), "tmpfs", 0, opts.c_str()) != 0)
    Die("mount tmpfs");
  mounts_.push_back(deviceDirectory);
}

void DeviceRoot::BindReadOnly(const std::string& devicePath) const {
  const std::string path = HostPath(devicePath);
  if (mount(path.c_str(), path.c_str(), nullptr, MS_BIND, nullptr) != 0) Die("bind mount");
  mounts_.push_back(devicePath);
  if (mount(nullptr, path.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr) != 0)
    Die("remount ro");
}

void DeviceRoot::Unmount(const std::string& devicePath) const {
  umount2(HostPath(devicePath).c_str(), MNT_DETACH);
  mounts_.erase(std::remove(mounts_.begin(), mounts_.end(), devicePath), mounts_.end());
}

Answer DeviceRoot::Post(const std::string& program, const std::string& body) const {
  return RunAs("/web/cgi-bin/" + program, {.body = body});
}

Answer DeviceRoot::RunAs(const std::string& argv0, const Request& request) const {
  Answer a = Finish(Start(argv0, request));
  a.zrcamctldSignals = CollectSignals(0);
  a.vmfdSignals = CollectSignals(1);
  return a;
}

std::vector<Answer> DeviceRoot::RunTogether(
    const std::string& program, const std::vector<Request>& requests) const {
  std::vector<Started> started;
  for (const Request& r : requests) started.push_back(Start("/web/cgi-bin/" + program, r));
  std::vector<Answer> answers;
  for (const Started& s : started) answers.push_back(Finish(s));
  if (!answers.empty()) {
    answers[0].zrcamctldSignals = CollectSignals(0);
    answers[0].vmfdSignals = CollectSignals(1);
  }
  return answers;
}

Answer DeviceRoot::RunKilledAfter(
    const std::string& program, const Request& request, int microseconds) const {
  Started started = Start("/web/cgi-bin/" + program, request);
  // Looked at every 10 ms, so that a request that ends sooner answers at once.
  for (int left = microseconds; left > 0 && started.status < 0; left -= 10000) {
    usleep(static_cast<useconds_t>(std::min(left, 10000)));
    if (waitpid(started.pid, &started.status, WNOHANG) != started.pid) started.status = -1;
  }
  if (started.status < 0) kill(started.pid, SIGKILL);
  return Finish(started);
}

DeviceRoot::Started DeviceRoot::Start(const std::string& argv0, const Request& request) const {
  // The program file: the name's own link when it exists, else the executable.
  std::string file = argv0;
  struct stat st;
  if (file.empty() || file[0] != '/' || lstat(HostPath(file).c_str(), &st) != 0)
    file = "/web/cgi-bin/zrcamctlset.cgi";

  // Standard input, output and error: files of the host's /tmp.
  Started started;
  int fds[3];
  for (int i = 0; i < 3; ++i) {
    char path[] = "/tmp/zrcamctl-io.XXXXXX";
    if ((fds[i] = mkstemp(path)) < 0) Die("mkstemp");
    started.files[i] = path;
  }
  if (!request.body.empty() && write(fds[0], request.body.data(), request.body.size()) !=
                                   static_cast<ssize_t>(request.body.size())) {
    Die("write body");
  }
  lseek(fds[0], 0, SEEK_SET);

  std::vector<std::string> env = {"PATH=/bin:/usr/bin:/usr/sbin"};
  if (request.form) {
    env.push_back("REQUEST_METHOD=POST");
    env.push_back("CONTENT_TYPE=application/x-www-form-urlencoded");
    env.push_back("CONTENT_LENGTH=" + std::to_string(request.body.size()));
  }
  for (const auto& [k, v] : request.env) env.push_back(k + "=" + v);
  for (const char* pass : {"ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS"}) {
    if (getenv(pass)) env.push_back(std::string(pass) + "=" + getenv(pass));
  }

  std::vector<std::string> args = {argv0};
  std::string exec = file;
  if (!emulator_.empty()) {
    exec = "/usr/bin/qemu-arm-static";
    args = {"qemu-arm-static", "-0", argv0, file};
  }
  std::vector<char*> argv, envp;
  for (auto& a : args) argv.push_back(a.data());
  argv.push_back(nullptr);
  for (auto& e : env) envp.push_back(e.data());
  envp.push_back(nullptr);

  // vfork: a sanitized test process is slow to copy, and the child only
  // makes system calls before it execs.
  started.pid = vfork();
  if (started.pid < 0) Die("vfork");
  if (started.pid == 0) {
    for (int i = 0; i < 3; ++i) dup2(fds[i], i);
    if (chroot(root_.c_str()) != 0 || chdir("/") != 0) _exit(126);
    if (request.uid != 0 && (setgid(request.uid) != 0 || setuid(request.uid) != 0)) _exit(126);
    execve(exec.c_str(), argv.data(), envp.data());
    _exit(127);
  }
  for (const int fd : fds) close(fd);
  return started;
}

Answer DeviceRoot::Finish(const Started& started) {
  int status = started.status;
  if (status < 0) waitpid(started.pid, &status, 0);
  Answer a;
  if (WIFEXITED(status)) a.exitStatus = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) a.termSignal = WTERMSIG(status);
  a.out = cases::ReadAll(started.files[1]);
  a.err = cases::ReadAll(started.files[2]);
  for (const std::string& file : started.files) unlink(file.c_str());
  return a;
}

}  // namespace device_test
