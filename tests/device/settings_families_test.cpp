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
#include "tests/device/device_root.h"

namespace device_test {
namespace {

struct Family {
  const SettingsFamily* family;
  const char* code;
  size_t recordSize;
  int writeFailure;
};

const Family kFamilies[] = {
    {&kAutoBrightnessCamera, "0v", 17, -2},
    {&kBasicColourCamera, "0H", 20, -3},
    {&kBasicImageModule, "1M", 16, -2},
    {&kChromaAccCamera, "0M", 32, -1},
    {&kColourCamera, "0N", 10, -2},
    {&kDayNightCamera, "3A", 140, -1},
    {&kDayNightIrCamera, "0y", 128, -1},
    {&kDcIrisCamera, "0h", 24, -2},
    {&kEmissivityThermalCamera, "10", 182, -2},
    {&kEnvironmentModeCamera, "0C", 6, -1},
    {&kFlickerlessCamera, "0j", 12, -1},
    {&kFullHdWdrCamera, "0O", 130, -2},
    {&kInfraredSwitchingCamera, "7A", 116, -1},
    {&kIrPtzModule, "1I", 764, -2},
    {&kKeyPowerFrequencyModule, "1B", 3, -2},
    {&kTwoByteKeyPowerFrequencyModule, "1X", 2, -2},
    {&kLensImageModule, "1G", 76, -2},
    {&kMainsFrequencyFlagCamera, "0l", 41, -2},
    {&kNoiseSharpnessDefogCamera, "6A", 64, -1},
    {&kOsdMenuKeyCamera, "1m", 69, -2},
    {&kPtzAlarmChannelCamera, "03", 440, -2},
    {&kPtzAlarmInputModule, "08", 788, -2},
    {&kPtzAlarmIoModule, "1K", 484, -2},
    {&kPtzDomeCamera, "0L", 508, -2},
    {&kPtzDomeNamedPresetCamera, "3I", 5562, -2},
    {&kPtzDomePresetFileModule, "1C", 1968, -2},
    {&kPtzModule1D, "1D", 328, -2},
    {&kPtzWiperHeaterModule, "18", 718, -2},
    {&kReversedThresholdCamera, "0G", 9, -1},
    {&kSensUpCamera, "0o", 16, -1},
    {&kSensorImageProcessing, "5A", 296, -1},
    {&kSingleKeyModule, "1A", 4, -2},
    {&kThermalCamera, "0D", 22, -2},
    {&kThermalImagingModule, "0R", 56, -2},
    {&kThermalPtzPositioner, "3T", 28682, -2},
    {&kTwoSetImageTuning, "1d", 153, -2},
    {&kTwoStreamEncodingCamera, "3Z", 252, -1},
    {&kWdrIspCamera, "0c", 91, -2},
    {&kZoomCameraModule, "0J", 108, -2},
    {&kUnroutedZoomModule, "ZZ", 21, -2},
};

// Runs a handler in a child chrooted into the root, on the form; returns
// "result\n", the error buffer's text, its NUL and the byte after; leaves its diagnostics in
// /tmp/handler.err.
std::string RunHandler(
    DeviceRoot& root, const SettingsFamily* family, const std::string& form, const char* path) {
  const pid_t pid = fork();
  if (pid == 0) {
    if (chroot(root.HostPath("").c_str()) != 0 || chdir("/") != 0 ||
        !freopen("/tmp/handler.err", "w", stderr))
      _exit(126);
    ::Request request = {};
    ParseUrlEncodedForm(request.form, form.data(), form.size());
    char* const errorBuffer = request.errorBuffer;
    memset(errorBuffer, 'z', kErrorBufferSize);  // to show how many bytes the handler wrote
    const int result = RunSettingsFrame(request, *family, kNoOption, path);
    FILE* out = fopen("/tmp/handler.out", "w");
    if (!out) _exit(126);
    fprintf(out, "%d\n", result);
    if (const char* nul = static_cast<const char*>(memchr(errorBuffer, 0, 255)))
      fwrite(errorBuffer, 1, nul - errorBuffer + 2, out);
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
  for (const Family& f : kFamilies) {
    root.Reset();
    const std::string path = DeviceRoot::RecordPath(f.code);
    root.MountTmpfs("/opt/kfp/etc/ZrConf", "64k");
    if (f.code != std::string("ZZ")) root.WriteRecord(f.code, Pattern(f.recordSize));
    root.FillUp("/opt/kfp/etc/ZrConf/filler");
    EXPECT_EQ(RunHandler(root, f.family, "", path.c_str()),
        std::to_string(f.writeFailure) + "\n" + failed + '\0' + 'z')
        << f.code;
    EXPECT_NE(root.ReadFile("/tmp/handler.err").value_or("").find(failed), std::string::npos)
        << f.code;
    EXPECT_EQ(root.List("/opt/kfp/etc/ZrConf").size(), f.code == std::string("ZZ") ? 1u : 2u)
        << f.code;
    if (f.code != std::string("ZZ"))
      EXPECT_EQ(Hex(*root.ReadRecord(f.code)), Hex(Pattern(f.recordSize))) << f.code;
    root.Unmount("/opt/kfp/etc/ZrConf");
    if (f.code == std::string("ZZ")) continue;
    // A record on a read-only mount: the error page, no signal, the file kept.
    root.SetModule(f.code);
    root.WriteRecord(f.code, Pattern(f.recordSize));
    root.BindReadOnly(path);
    const Answer a = root.Post("zrcamctlset.cgi", "RetReDir=/r");
    root.Unmount(path);
    EXPECT_EQ(a.out, ErrorPage("zrcamctlset.cgi", failed)) << f.code;
    EXPECT_EQ(a.zrcamctldSignals, std::vector<int>{}) << f.code;
    EXPECT_EQ(Hex(root.ReadRecord(f.code).value()), Hex(Pattern(f.recordSize))) << f.code;
  }
}

TEST(SettingsFamilies, RetryPausesBetweenItsThreeReads) {
  DeviceRoot& root = DeviceRoot::Get();
  root.Reset();
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(root.Post("zrcamctlset.cgi", "AwbMode=1").out, ErrorPage("zrcamctlset.cgi", ""));
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
  EXPECT_EQ(Hex(*root.ReadRecord("ZZ")),
      "00 00 ff 00 00 00 00 00 00 00 00 00 00 00 00 00\n00 00 00 00 ff");
  root.WriteFile(path, Pattern(30));
  const std::string form =
      "FocusMode=512&AwbMode=513&AwbRGain=514&AwbBGain=515&ExpMode=516&ExpSlowShutter=517&ExpeIris="
      "518&"
      "ExpShutter=519&ExpBrightness=520&ExpDayNight=521&ExpWdrMode=522&ExpWdrValue=523&"
      "ImgSharpness=524&"
      "MaxDigitalZoom=525&PwrFrequency=526&Chroma=527&DnrLevel=528&FlipMode=529&Gamma=530&"
      "ExpIris=1&PwrFreq=2&Flip=3&DnrMode=4&ExpGamma=5";
  EXPECT_EQ(RunHandler(root, &kUnroutedZoomModule, form, path.c_str()), "1\n");
  EXPECT_EQ(Hex(*root.ReadRecord("ZZ")),
      "a5 ca 00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d\n0e 0f 10 11 12");
  for (const ModuleRow& row : ModuleTable) EXPECT_NE(row.family, &kUnroutedZoomModule) << row.code;
}

}  // namespace
}  // namespace device_test
