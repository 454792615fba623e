// What the transcripts cannot show: each family's own write-failure code
// (the handler runs in a child chrooted into the device root, on a full
// file system), a record on a read-only mount, the retry's pauses, and the
// handler no module routes to.
#include <gtest/gtest.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>

#include "modules/module_table.h"
#include "cgi/cgi_request.h"
#include "families/families.h"
#include "inspect/family_notes.h"
#include "tests/device/device_root.h"

namespace device_test {
namespace {

// Runs a handler in a child chrooted into the root, on the form; returns
// "result\n" and the error page's message; leaves
// its diagnostics in /tmp/handler.err.
std::string RunHandler(
    DeviceRoot& root, const SettingsFamily* family, const std::string& form, const char* path) {
  const pid_t pid = fork();
  if (pid == 0) {
    if (chroot(root.HostPath("").c_str()) != 0 || chdir("/") != 0 ||
        !freopen("/tmp/handler.err", "w", stderr))
      _exit(126);
    ::Request request = {};
    ParseUrlEncodedForm(request.form, form.data(), form.size());
    const FrameResult frame = RunSettingsFrame(request.form, *family, path);
    FILE* out = fopen("/tmp/handler.out", "w");
    if (!out) _exit(126);
    fprintf(out, "%d\n%s", frame.result, frame.message);
    _exit(fclose(out) == 0 && fflush(stderr) == 0 ? 0 : 126);
  }
  int status = 0;
  waitpid(pid, &status, 0);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  return root.ReadFile("/tmp/handler.out").value_or("");
}

TEST(SettingsFamilies, WriteFailuresAndReadOnlyRecords) {
  DeviceRoot& root = DeviceRoot::Get();
  const std::string failed = "ZrCamCtlWriteConfToFile is failed\n";
  for (int n = 0; n < kFamilyNoteCount; ++n) {  // every family of the list
    const SettingsFamily* family = kFamilyNotes[n].family;
    const size_t recordSize = family->layout.size;
    std::string code = "ZZ";  // the first module code that routes to it, if any
    for (const ModuleRow& row : ModuleTable) {
      if (row.family != family) continue;
      code = {static_cast<char>(row.code >> 8), static_cast<char>(row.code & 0xFF)};
      break;
    }
    root.Reset();
    const std::string path = DeviceRoot::RecordPath(code);
    root.MountTmpfs("/opt/kfp/etc/ZrConf", "64k");
    if (code != "ZZ") root.WriteRecord(code, Pattern(recordSize));
    (void)!system(
        ("cat /dev/zero 2>/dev/null >" + root.HostPath("/opt/kfp/etc/ZrConf/filler")).c_str());
    EXPECT_EQ(RunHandler(root, family, "", path.c_str()),
        std::to_string(family->writeFailure.result) + "\n" + failed)
        << code;
    EXPECT_NE(root.ReadFile("/tmp/handler.err").value_or("").find(failed), std::string::npos)
        << code;
    EXPECT_EQ(root.List("/opt/kfp/etc/ZrConf").size(), code == "ZZ" ? 1u : 2u) << code;
    if (code != "ZZ") EXPECT_EQ(*root.ReadRecord(code), Pattern(recordSize)) << code;
    root.Unmount("/opt/kfp/etc/ZrConf");
    if (code == "ZZ") continue;
    // A record on a read-only mount: the error page, no signal, the file kept.
    root.SetModule(code);
    root.WriteRecord(code, Pattern(recordSize));
    root.BindReadOnly(path);
    const Answer a = root.Post("zrcamctlset.cgi", "RetReDir=/r");
    root.Unmount(path);
    EXPECT_EQ(a.out, ErrorPage("ZrCamCtlWriteConfToFile is failed\\n")) << code;
    EXPECT_EQ(a.zrcamctldSignals, std::vector<int>{}) << code;
    EXPECT_EQ(root.ReadRecord(code), Pattern(recordSize)) << code;
    EXPECT_EQ(root.List("/opt/kfp/etc/ZrConf").size(), 1u) << code;  // no temporary left
  }
}

TEST(SettingsFamilies, RetryPausesBetweenItsThreeReads) {
  DeviceRoot& root = DeviceRoot::Get();
  root.Reset();
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(root.Post("zrcamctlset.cgi", "AwbMode=1").out, ErrorPage(""));
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(300));
}

TEST(SettingsFamilies, UnroutedZoomModuleMergesItsKeysAndNoRowSelectsIt) {
  DeviceRoot& root = DeviceRoot::Get();
  root.Reset();
  const std::string path = "/opt/kfp/etc/ZrConf/ZrCamCtlConfZZ.bin";
  // Missing: created at its size. Longer: cut to it. Near misses change nothing.
  EXPECT_EQ(
      RunHandler(root, &kUnroutedZoomModule, "Gamma=-1&FocusMode=0x1FF", path.c_str()), "1\n");
  EXPECT_EQ(root.ReadFile("/tmp/handler.err"),
      "fopen is failed [PATH:" + path + "]\nZrCamCtlReadConfFromFile is failed\n");
  Bytes expected(21, 0);
  expected[2] = expected[20] = 0xff;
  EXPECT_EQ(root.ReadRecord("ZZ"), expected);
  root.WriteFile(path, Pattern(30));
  const std::string form =
      "FocusMode=512&AwbMode=513&AwbRGain=514&AwbBGain=515&ExpMode=516&ExpSlowShutter=517&"
      "ExpeIris=518&ExpShutter=519&ExpBrightness=520&ExpDayNight=521&ExpWdrMode=522&"
      "ExpWdrValue=523&ImgSharpness=524&MaxDigitalZoom=525&PwrFrequency=526&Chroma=527&"
      "DnrLevel=528&FlipMode=529&Gamma=530&ExpIris=1&PwrFreq=2&Flip=3&DnrMode=4&ExpGamma=5";
  EXPECT_EQ(RunHandler(root, &kUnroutedZoomModule, form, path.c_str()), "1\n");
  expected = {0xa5, 0xca};
  for (uint8_t v = 0; v <= 0x12; ++v) expected.push_back(v);
  EXPECT_EQ(root.ReadRecord("ZZ"), expected);
  for (const ModuleRow& row : ModuleTable) EXPECT_NE(row.family, &kUnroutedZoomModule) << row.code;
}

}  // namespace
}  // namespace device_test
