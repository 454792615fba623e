// What a hostile request or a hostile file system puts in the way: special
// files at the saved paths, the lock path and the pid files, stale pids,
// files the fisheye library would cut, leftovers of killed saves, and forms
// built to collide in the form index.
#include <gtest/gtest.h>
#include <signal.h>
#include <string.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <random>

#include "tests/device/device_root.h"

namespace device_test {
namespace {

constexpr char kFisheye[] = "/opt/kfp/etc/fish_eye.conf";

// Makes a FIFO, a character device or a socket at a host path.
void MakeSpecial(char kind, const std::string& path) {
  if (kind == 'p') ASSERT_EQ(mkfifo(path.c_str(), 0644), 0);
  if (kind == 'c') ASSERT_EQ(mknod(path.c_str(), S_IFCHR | 0666, makedev(1, 5)), 0);  // zero
  if (kind == 's') {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path.size(), sizeof address.sun_path);
    memcpy(address.sun_path, path.c_str(), path.size());
    const int fd = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    close(fd);
  }
}

mode_t TypeAt(const std::string& path) {
  struct stat st;
  return lstat(path.c_str(), &st) == 0 ? st.st_mode & S_IFMT : 0;
}

// A second, plus four times what an ordinary save takes here: a request that
// waits on a FIFO never ends, while a loaded or emulated host only adds the
// time every request takes on it.
int SecondOnThisHost(DeviceRoot& root) {
  root.Reset();
  root.SetModule("0y");
  const auto start = std::chrono::steady_clock::now();
  root.Post("zrcamctlset.cgi", "Brightness=7");
  const auto took = std::chrono::duration_cast<std::chrono::microseconds>(
      std::chrono::steady_clock::now() - start);
  return 1000000 + static_cast<int>(std::min<long long>(4 * took.count(), 30000000));
}

// A FIFO, socket or device at the record path is answered as a failed save
// at once and stays as it was. (A directory there is a transcript; a link is
// replaced, a reliability test.)
TEST(HostileInput, SpecialFileAtTheRecordPath) {
  DeviceRoot& root = DeviceRoot::Get();
  const struct {
    const char *module, *error, *tail;
  } families[] = {
      {"0y",
          "ZrCamCtlWriteConfToFile is failed\\n",
          "fopen is failed [PATH:/opt/kfp/etc/ZrConf/ZrCamCtlConf0y.bin]\n"
          "ZrCamCtlWriteConfToFile is failed\n"},
      {"0O", "", "ZrCamCtlReadConfFromFile is finally failed\n"},
  };
  const int limit = SecondOnThisHost(root);
  for (const auto& f : families) {
    for (const char kind : {'p', 's', 'c'}) {
      SCOPED_TRACE(std::string(f.module) + " " + kind);
      root.Reset();
      root.SetModule(f.module);
      const std::string path = root.HostPath(DeviceRoot::RecordPath(f.module));
      MakeSpecial(kind, path);
      const mode_t before = TypeAt(path);
      const Answer a = root.RunKilledAfter("zrcamctlset.cgi", {.body = "Brightness=7"}, limit);
      ASSERT_EQ(a.exitStatus, 0) << "not answered within " << limit << " us";
      EXPECT_EQ(a.out, ErrorPage(f.error));
      const std::string tail = f.tail;
      EXPECT_EQ(a.err.substr(a.err.size() - std::min(a.err.size(), tail.size())), tail);
      EXPECT_EQ(TypeAt(path), before);
      EXPECT_EQ(root.List("/opt/kfp/etc/ZrConf").size(), 1u);
    }
  }
}

// A file of more lines than the library holds is left byte for byte (one
// with a NUL byte, the other it would cut, is a transcript).
TEST(HostileInput, FisheyeFileNotCut) {
  DeviceRoot& root = DeviceRoot::Get();
  std::string manyLines = "CENTER_X = 320\n";
  for (int i = 0; i < 40001; ++i) manyLines += "L" + std::to_string(i) + " = 1\n";
  root.Reset();
  root.WriteFile(kFisheye, manyLines);
  const Answer a = root.Post("zrfisheyeset.cgi", "CenterX=400");
  EXPECT_EQ(root.ReadFile(kFisheye), manyLines);
  EXPECT_EQ(a.err,
      "[ZrFisheyeSet] fish_eye.conf not saved: too many lines\n"
      "[SendSignalToVmfd] Send sig = [12] to vmfd. [OK]\n");
  EXPECT_EQ(a.vmfdSignals, std::vector<int>{12});
}

// A FIFO at fish_eye.conf, the lock path or a pid file is not waited on:
// nothing is saved over it, no lock is taken, no signal is sent.
TEST(HostileInput, FifoNotWaitedOn) {
  DeviceRoot& root = DeviceRoot::Get();
  const int limit = SecondOnThisHost(root);
  for (const auto& [path, program, line] :
      {std::tuple{kFisheye, "zrfisheyeset.cgi", "fail to read"},
          {"/var/run/zrcamctl.lock", "zrcamctlset.cgi", "lock not taken"},
          {"/var/run/zrcamctl.lock", "zrfisheyeset.cgi", "lock not taken"},
          {"/var/run/zrcamctld.pid", "zrcamctlapply.cgi", "zrcamctld. [Error]"},
          {"/var/run/zrcamctld.pid", "zrcamctlset.cgi", "zrcamctld. [Error]"},
          {"/var/run/vmfd.pid", "zrfisheyeset.cgi", "vmfd. [Error]"}}) {
    root.Reset();
    root.SetModule("0y");
    root.WriteFile(kFisheye, std::string("CENTER_X = 320\n"));
    root.RemoveAll(path);
    MakeSpecial('p', root.HostPath(path));
    const Answer a = root.RunKilledAfter(program, {.body = "Hue=1&CenterX=400"}, limit);
    EXPECT_EQ(a.exitStatus, 0) << path << " " << program << " not answered within " << limit;
    EXPECT_NE(a.err.find(line), std::string::npos) << a.err;
    EXPECT_EQ(TypeAt(root.HostPath(path)), S_IFIFO);
  }
}

// A pid file naming another process (a pid reused after the daemon ended)
// signals nothing. The name is /proc's; where the root has no /proc, the
// test writes it there.
TEST(HostileInput, PidFileNamingAnotherProcess) {
  DeviceRoot& root = DeviceRoot::Get();
  for (const std::string daemon : {"vmfd", "zrcamctld"}) {
    root.Reset();
    const std::string pid = std::to_string(root.DaemonPid(daemon)), comm = "/proc/" + pid + "/comm";
    if (!root.ReadFile(comm)) root.WriteFile(comm, daemon + "\n");
    root.WriteFile("/var/run/zrcamctld.pid", pid);
    const Answer a = root.Post("zrcamctlapply.cgi", "RetReDir=/x");
    const bool named = daemon == "zrcamctld";
    EXPECT_EQ(a.err,
        "[SendSignalToZrCamCtlD] Send sig = [10] to zrcamctld. [" +
            std::string(named ? "OK" : "Error") + "]\n");
    EXPECT_EQ(a.zrcamctldSignals, std::vector<int>(named ? 1 : 0, 10));
    EXPECT_EQ(a.vmfdSignals, std::vector<int>());
  }
}

// The named temporaries of killed saves are removed by the next save of
// the same file; another file's, and a running save's, stay.
TEST(HostileInput, LeftoversRemovedByTheNextSave) {
  DeviceRoot& root = DeviceRoot::Get();
  root.Reset();
  const pid_t gone = fork();
  if (gone == 0) _exit(0);
  waitpid(gone, nullptr, 0);
  const std::string dir = "/opt/kfp/etc/ZrConf/", record = "ZrCamCtlConf0J.bin";
  const std::string dead = record + "." + std::to_string(gone) + ".new";
  const std::string running = record + "." + std::to_string(getpid()) + ".new";
  const std::string other = "ZrCamCtlConf0y.bin." + std::to_string(gone) + ".new";
  for (const std::string& name : {dead, running, other, record + ".x.new"})
    root.WriteFile(dir + name, std::string(108, 'x'));
  root.WriteFile(dir + record, std::string(108, '\0'));
  EXPECT_EQ(root.Post("zrcamctlset.cgi", "AwbMode=1").exitStatus, 0);
  std::vector<std::string> kept = {record, record + ".x.new", running, other};
  std::sort(kept.begin(), kept.end());
  EXPECT_EQ(root.List(dir), kept);
}

// Names that all share one slot under the cheap fixed hash of the small form
// index, as an attacker can compute from the program: 12 letters, then the
// 4 bytes (escaped) that bring the hash of every name to one value; random
// bytes in their place for names that do not collide.
std::string CollidingForm(size_t size, bool collide) {
  std::mt19937 random(7);
  std::string form;
  while (form.size() + 32 < size) {
    uint8_t name[16];
    uint32_t h = 16, word;  // the hash starts from the length
    for (int i = 0; i < 12; ++i) name[i] = static_cast<uint8_t>('a' + random() % 26);
    for (int i = 0; i < 12; i += 4) memcpy(&word, name + i, 4), h = (h ^ word) * 0x9e3779b1u;
    word = collide ? h ^ 0x5a5a5a5au : static_cast<uint32_t>(random());
    memcpy(name + 12, &word, 4);
    char escaped[13];
    for (int i = 0; i < 4; ++i) snprintf(escaped + 3 * i, 4, "%%%02X", name[12 + i]);
    if (!memchr(name + 12, 0, 4)) form += std::string(name, name + 12) + escaped + "=&";
  }
  return form;
}

// The processor time the children that ended so far took.
double ChildSeconds() {
  rusage u;
  getrusage(RUSAGE_CHILDREN, &u);
  return static_cast<double>(u.ru_utime.tv_sec + u.ru_stime.tv_sec) +
         (u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
}

// The large form index takes a hash under a key of its own: names colliding
// under the small index's hash cost no more than random ones.
TEST(HostileInput, NamesCollidingUnderTheSmallIndexHashParseInLinearTime) {
  DeviceRoot& root = DeviceRoot::Get();
  root.Reset();
  const std::string forms[2] = {CollidingForm(1048576, false), CollidingForm(1048576, true)};
  double seconds[2] = {1e9, 1e9};
  for (int round = 0; round < 3; ++round) {
    for (const bool collide : {false, true}) {
      const double start = ChildSeconds();
      EXPECT_EQ(root.Post("zrcamctlapply.cgi", forms[collide] + "RetReDir=/x").exitStatus, 0);
      seconds[collide] = std::min(seconds[collide], ChildSeconds() - start);
    }
  }
  EXPECT_LT(seconds[1], 2 * seconds[0]) << "random " << seconds[0] << " s";
}

// The program's own files in /tmp. Links to a root-only file or FIFOs,
// planted again and again at the next pids' copy names, are neither written
// through nor waited on; with them, or with /tmp full or missing, the product
// code is read from the driver and every save happens.
TEST(HostileInput, TmpPlantedFullOrMissing) {
  DeviceRoot& root = DeviceRoot::Get();
  const int limit = SecondOnThisHost(root);
  for (const std::string tmp : {"link", "FIFO", "full", "missing"}) {
    SCOPED_TRACE(tmp);
    root.Reset();
    root.WriteFile("/etc/shadow", std::string("root only\n"));
    root.WriteRecord("0J", Bytes(108));
    if (tmp == "full") root.MountTmpfs("/tmp", "4k"), root.WriteFile("/tmp/fill", Pattern(4096));
    if (tmp == "missing") root.RemoveAll("/tmp");
    const int requests = tmp == "link" || tmp == "FIFO" ? 4 : 1;
    const pid_t planter = requests > 1 ? fork() : -1;
    if (planter == 0) prctl(PR_SET_PDEATHSIG, SIGKILL), alarm(120);
    for (int i = 0; planter == 0; i = (i + 1) % 1000) {
      const std::string at =
          root.HostPath("/tmp/qell_conf_" + std::to_string(getpid() + 1 + i) + ".txt");
      (void)!(tmp == "FIFO" ? mkfifo(at.c_str(), 0666) : symlink("/etc/shadow", at.c_str()));
    }
    for (int i = 1; i <= requests; ++i) {
      const Answer a =
          root.RunKilledAfter("zrcamctlset.cgi", {.body = "AwbMode=" + std::to_string(i)}, limit);
      EXPECT_EQ(a.exitStatus, 0) << "not answered within " << limit << " us";
      EXPECT_EQ(root.ReadRecord("0J").value_or(Bytes(15)).at(14), i) << "not saved";
    }
    if (planter > 0) kill(planter, SIGKILL), waitpid(planter, nullptr, 0);
    EXPECT_EQ(
        root.Post("zrcamctlset.cgi", "").zrcamctldSignals, std::vector<int>(requests + 1, 10));
    EXPECT_EQ(root.ReadFile("/etc/shadow"), "root only\n");
    EXPECT_EQ(root.List("/etc").size(), 1u);
  }
}

}  // namespace
}  // namespace device_test
