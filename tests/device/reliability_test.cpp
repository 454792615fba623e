// Overlapping saves keep every update, a reader never sees a short file,
// and a save that fails or is killed leaves the old file whole.
#include <gtest/gtest.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "tests/cases.h"
#include "tests/device/device_root.h"

namespace device_test {
namespace {

// Posts the bodies at once, polling a file's size meanwhile; the answers,
// and the times the file was found short.
std::pair<std::vector<Answer>, int> PostTogether(const std::string& program,
    const std::vector<std::string>& bodies, const std::string& path, off_t size) {
  std::vector<Request> requests;
  for (const std::string& body : bodies) requests.push_back({.body = body});
  std::atomic<bool> stop = false;
  int shortReads = 0;
  std::thread watch([&] {
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), 19);  // the saves go first
    for (struct stat st; !stop; std::this_thread::yield())
      if (stat(path.c_str(), &st) != 0 || st.st_size < size) ++shortReads;
  });
  const std::vector<Answer> answers = DeviceRoot::Get().RunTogether(program, requests);
  stop = true;
  watch.join();
  return {answers, shortReads};
}

// The saves of a test (data/saves.cases): module, record size, and each
// key with the offset of its byte.
struct Saves {
  std::string module;
  size_t size;
  std::vector<std::pair<std::string, size_t>> keys;
};
std::vector<Saves> SavesOf(const std::string& test) {
  std::vector<Saves> all;
  for (const cases::Case& k : cases::Read("device", "saves")) {
    if (k[0] != test) continue;
    Saves& s = all.emplace_back(Saves{k[1], std::stoul(k[2]), {}});
    for (size_t i = 3; i < k.size(); ++i)
      s.keys.push_back(
          {k[i].substr(0, k[i].find('@')), std::stoul(k[i].substr(k[i].find('@') + 1))});
  }
  return all;
}

TEST(Reliability, FiftyOverlappingSavesKeepEveryUpdate) {
  DeviceRoot& root = DeviceRoot::Get();
  for (const Saves& b : SavesOf("fifty")) {
    root.Reset();
    root.SetModule(b.module);
    Bytes record(b.size, 0);
    root.WriteRecord(b.module, record);
    // Request i posts value i+1 to key i % keys; the last of each key's posts is at least keys
    // apart.
    std::vector<std::string> bodies;
    for (size_t i = 0; i < 50; ++i)
      bodies.push_back(b.keys[i % b.keys.size()].first + "=" + std::to_string(i + 1));
    const auto [answers, shortReads] = PostTogether("zrcamctlset.cgi",
        bodies,
        root.HostPath(DeviceRoot::RecordPath(b.module)),
        static_cast<off_t>(b.size));
    EXPECT_EQ(shortReads, 0) << b.module;
    for (const Answer& a : answers) EXPECT_EQ(a.out, "") << b.module << a.err;
    const Bytes after = *root.ReadRecord(b.module);
    ASSERT_EQ(after.size(), b.size);
    for (size_t k = 0; k < b.keys.size(); ++k) {
      // Every post of the key was kept in turn: the value left is one of them.
      const int v = after[b.keys[k].second];
      EXPECT_TRUE(v > 0 && static_cast<size_t>(v - 1) % b.keys.size() == k)
          << b.module << " " << b.keys[k].first;
      record[b.keys[k].second] = after[b.keys[k].second];
    }
    EXPECT_EQ(after, record) << b.module;
    EXPECT_EQ(root.List("/opt/kfp/etc/ZrConf").size(), 1u);
  }
}

TEST(Reliability, OverlappingFisheyeAndPresetLabelSaves) {
  DeviceRoot& root = DeviceRoot::Get();
  root.Reset();
  const char* conf = "/opt/kfp/etc/fish_eye.conf";
  const std::string keys[] = {"CENTER_X", "CENTER_Y", "OUTER_RADIUS", "INNER_RADIUS"};
  root.WriteFile(
      conf, std::string("CENTER_X = 0\nCENTER_Y = 0\nOUTER_RADIUS = 0\nINNER_RADIUS = 0\n"));
  const std::string forms[] = {"CenterX", "CenterY", "OuterRadius", "InnerRadius"};
  std::vector<std::string> bodies;
  for (int i = 0; i < 20; ++i) bodies.push_back(forms[i % 4] + "=" + std::to_string(100 + i));
  EXPECT_EQ(PostTogether("zrfisheyeset.cgi", bodies, root.HostPath(conf), 60).second, 0);
  const std::string text = root.ReadFile(conf).value();
  for (int k = 0; k < 4; ++k) {
    bool one = false;
    for (int i = k; i < 20; i += 4)
      one = one || text.find(keys[k] + " = " + std::to_string(100 + i) + "\n") != std::string::npos;
    EXPECT_TRUE(one) << text;
  }

  // Two labels of the preset file at once: both kept, every other byte too.
  root.SetModule("1C");
  root.WriteRecord("1C", Bytes(1968, 0));
  const std::string presets = "/opt/kfp/etc/ZrConf/PtzConf.bin";
  Bytes expected = Pattern(262760, 0x3C);
  root.WriteFile(presets, expected);
  PostTogether("zrcamctlset.cgi",
      {"PresetSetId=3&PresetSetLabel=Gate", "PresetSetId=7&PresetSetLabel=Yard"},
      root.HostPath(presets),
      262760);
  for (const auto& [slot, label] : {std::pair{20 + 64 * 2, "Gate"}, {20 + 64 * 6, "Yard"}})
    std::copy(label, label + 5, expected.begin() + slot);
  EXPECT_TRUE(root.ReadFile(presets) == std::string(expected.begin(), expected.end()));
}

// A lock held elsewhere is waited for about 2 s; then the save goes on.
TEST(Reliability, HeldLockDelaysThenSaves) {
  DeviceRoot& root = DeviceRoot::Get();
  root.Reset();
  root.WriteRecord("0J", Bytes(108, 0));
  const int fd = open(root.HostPath("/var/run/zrcamctl.lock").c_str(), O_RDWR);
  ASSERT_EQ(flock(fd, LOCK_EX), 0);
  const auto start = std::chrono::steady_clock::now();
  const Answer answer = root.Post("zrcamctlset.cgi", "AwbMode=3");
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1900));
  close(fd);
  EXPECT_EQ(answer.err,
      "[TakeSettingsLock] lock not taken, saving unlocked\n"
      "[SendSignalToZrCamCtlD] Send sig = [10] to zrcamctld. [OK]\n");
  EXPECT_EQ(root.ReadRecord("0J")->at(14), 3);
}

// The lock covers the read, merge and write only, and any user can take it:
// saves overlapping behind a slow savecfg, or saves by the web server's
// user after one by root, all take it in turn and keep every update.
TEST(Reliability, EverySaveTakesTheLockBriefly) {
  const Saves words = SavesOf("lock").at(0);  // module 0y's
  DeviceRoot& root = DeviceRoot::Get();
  const std::string saveCfg = root.ReadFile("/usr/sbin/savecfg").value();
  const std::string lock = root.HostPath("/var/run/zrcamctl.lock");
  for (const cases::Case& turn : cases::Read("device", "saves")) {
    if (turn[0] != "turns") continue;
    const std::string& name = turn[1];
    root.Reset();
    root.SetModule("0y");
    // Saves take turns, each syncing its file: on a RAM file system, so that
    // 17 turns fit the 2 s a save waits even on a busy machine.
    root.MountTmpfs("/opt/kfp/etc/ZrConf", "1m,mode=0777");
    root.WriteRecord("0y", Bytes(128, 0));
    unlink(lock.c_str());
    root.Post("zrcamctlset.cgi", "Hue=0");  // root's save makes the lock file
    struct stat st;
    EXPECT_TRUE(stat(lock.c_str(), &st) == 0 && (st.st_mode & 07777) == 0644) << name;
    root.WriteFile("/usr/sbin/savecfg", "#!/bin/sh\n" + turn[2] + "\n");
    std::vector<Request> saves;
    Bytes expected(128, 0);
    for (size_t i = 0; i < words.keys.size(); ++i) {
      const auto& [key, offset] = words.keys[i];
      saves.push_back({.body = key + "=" + std::to_string(i + 1) + turn[3],
          .uid = static_cast<unsigned>(std::stoul(turn[4]))});
      expected[offset] = static_cast<uint8_t>(i + 1);
    }
    for (const Answer& a : root.RunTogether("zrcamctlset.cgi", saves))
      EXPECT_EQ(a.err.find("lock not taken"), std::string::npos) << name << a.err;
    EXPECT_EQ(root.ReadRecord("0y"), expected) << name;
    root.Unmount("/opt/kfp/etc/ZrConf");
  }
  root.WriteFile("/usr/sbin/savecfg", saveCfg);
}

TEST(Reliability, KilledSavesAndLinksLeaveFilesWhole) {
  DeviceRoot& root = DeviceRoot::Get();
  root.Reset();
  root.SetModule("3T");
  const Bytes before = Pattern(28682);
  const Request save = {.body = "PresetAllClear=1&PresetSetId=2"};
  root.WriteRecord("3T", before);
  root.RunAs("/web/cgi-bin/zrcamctlset.cgi", save);
  const Bytes saved = *root.ReadRecord("3T");  // the save's whole image
  ASSERT_NE(saved, before);
  for (int delay = 0; delay < 30000; delay += 1500) {
    root.WriteRecord("3T", before);
    root.RunKilledAfter("zrcamctlset.cgi", save, delay);
    const Bytes after = *root.ReadRecord("3T");
    EXPECT_TRUE(after == before || after == saved) << delay;
    // A kill between the temporary's link and the rename leaves it (the next
    // save removes it): the record and at most that one.
    const auto names = root.List("/opt/kfp/etc/ZrConf");
    EXPECT_TRUE(names.size() == 1 || (names.size() == 2 && names[1].ends_with(".new"))) << delay;
  }
  // Another account's setuid file at the record's path, or a link to one:
  // a link reads as a missing record (0y's family then saves); either is
  // replaced by root's file with read and write bits only, and what the link
  // pointed to is untouched.
  for (const bool link : {false, true}) {
    root.Reset();
    root.SetModule("0y");
    const Bytes target(128, 0);
    const std::string record = root.HostPath(DeviceRoot::RecordPath("0y")),
                      planted = link ? root.HostPath("/opt/kfp/etc/target") : record;
    root.WriteFile(link ? "/opt/kfp/etc/target" : DeviceRoot::RecordPath("0y"), target);
    ASSERT_EQ(chown(planted.c_str(), 65534, 65534) | chmod(planted.c_str(), 04755), 0);
    if (link) ASSERT_EQ(symlink("../target", record.c_str()), 0);
    EXPECT_EQ(root.Post("zrcamctlset.cgi", "Hue=1").out, "");
    Bytes expected = target;
    expected[4] = 1;
    EXPECT_EQ(root.ReadRecord("0y"), expected) << link;
    struct stat st, was;
    ASSERT_EQ(lstat(record.c_str(), &st) | (link ? stat(planted.c_str(), &was) : 0), 0);
    EXPECT_TRUE(st.st_uid == 0 && (st.st_mode & ~0644u) == S_IFREG) << link;
    if (link)
      EXPECT_TRUE(was.st_mode == (S_IFREG | 04755) &&
                  *root.ReadFile("/opt/kfp/etc/target") == std::string(128, '\0'));
  }
}

}  // namespace
}  // namespace device_test
