// Runs the real executable the way the device does: inside a throwaway
// directory laid out like the device's root, entered with chroot, with
// stand-ins for the daemons (they record the signals they receive) and for
// savecfg (it records its calls).
#pragma once

#include <stdint.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace device_test {

struct Request {
  std::string body;  // standard input
  bool form = true;  // posted as a form: method, content type and length set
  std::vector<std::pair<std::string, std::string>> env;  // further variables
  unsigned uid = 0;  // run as this user and group instead of root
};

struct Answer {
  int exitStatus = -1;  // -1 when the process did not exit normally
  int termSignal = 0;
  std::string out;
  std::string err;
  std::vector<int> zrcamctldSignals;
  std::vector<int> vmfdSignals;
};

// The set program's error page for an error-buffer text, its line breaks as "\\n".
std::string ErrorPage(const std::string& errorText);

using Bytes = std::vector<uint8_t>;

class DeviceRoot {
 public:
  // One root per test process, made on first use and removed at exit.
  static DeviceRoot& Get();

  // Puts the root back to its starting state: empty /tmp and record
  // directory, a product code for module "0J", both daemons running.
  void Reset();

  std::string HostPath(const std::string& devicePath) const;
  void WriteFile(const std::string& devicePath, const std::string& content) const;
  void WriteFile(const std::string& devicePath, const Bytes& content) const;
  std::optional<std::string> ReadFile(const std::string& devicePath) const;
  void RemoveAll(const std::string& devicePath) const;
  // Every directory on the way to devicePath (up to its last "/").
  void MakeDirs(const std::string& devicePath) const;
  // The names of the entries in a device directory, sorted.
  std::vector<std::string> List(const std::string& deviceDirectory) const;

  // A product code whose characters 19 and 20 are the module code.
  void SetModule(const std::string& moduleCode) const;

  static std::string RecordPath(const std::string& moduleCode);
  void WriteRecord(const std::string& moduleCode, const Bytes& record) const;
  std::optional<Bytes> ReadRecord(const std::string& moduleCode) const;

  int DaemonPid(const std::string& daemon) const;

  // Mounts and unmounts inside the root, for fault injection.
  void MountTmpfs(const std::string& deviceDirectory, const std::string& size) const;
  void BindReadOnly(const std::string& devicePath) const;
  void Unmount(const std::string& devicePath) const;

  Answer Post(const std::string& program, const std::string& body) const;
  // argv[0] as given, for the dispatch on names.
  Answer RunAs(const std::string& argv0, const Request& request) const;
  // Many requests at once: all are started before any is waited for. The
  // daemons' signals are collected once, into the first answer.
  std::vector<Answer> RunTogether(
      const std::string& program, const std::vector<Request>& requests) const;
  // A request killed (SIGKILL) when still running after the given time.
  Answer RunKilledAfter(const std::string& program, const Request& request, int microseconds) const;

  ~DeviceRoot();

 private:
  DeviceRoot();
  std::vector<int> CollectSignals(size_t daemon) const;
  struct Started {
    int pid;
    std::string files[3];  // standard input, output and error
    int status = -1;       // when already waited for
  };
  Started Start(const std::string& argv0, const Request& request) const;
  static Answer Finish(const Started& started);

  std::string root_;
  std::string emulator_;
  bool procMounted_ = false;
  bool rootMounted_ = false;  // a tmpfs of its own
  struct StandIn {
    int pid = -1;
    int readFd = -1;
  };
  StandIn daemons_[2];  // zrcamctld, vmfd
  mutable std::vector<std::string> mounts_;
};

// The names in a host directory, sorted.
std::vector<std::string> ListHost(const std::string& directory);

// Record bytes that differ from their neighbours: byte i is seed + 37 i.
inline uint8_t PatternByte(uint8_t seed, size_t i) { return static_cast<uint8_t>(seed + i * 37); }
Bytes Pattern(size_t size, uint8_t seed = 0xA5);

}  // namespace device_test
