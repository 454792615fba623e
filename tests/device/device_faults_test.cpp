// File systems that refuse writes: each save has a definite answer and no
// file is damaged. (Forms too large for transcripts are the request's unit
// cases; a pid file naming no process is a transcript.)
#include <gtest/gtest.h>

#include "tests/device/device_root.h"

namespace device_test {
namespace {

TEST(DeviceFaults, ReadOnlyFileSystem) {
  DeviceRoot& root = DeviceRoot::Get();
  root.Reset();
  Bytes record = Pattern(108);
  record[50] = record[66] = 0;  // the zoom module's one-shots idle
  root.WriteRecord("0J", record);
  root.BindReadOnly("/opt/kfp/etc/ZrConf");
  const Answer a = root.Post("zrcamctlset.cgi", "AwbMode=1");
  root.Unmount("/opt/kfp/etc/ZrConf");
  EXPECT_EQ(a.out, ErrorPage("ZrCamCtlWriteConfToFile is failed\\n"));
  EXPECT_EQ(*root.ReadRecord("0J"), record);
  EXPECT_EQ(root.List("/opt/kfp/etc/ZrConf").size(), 1u);
}

TEST(DeviceFaults, ReadOnlyFisheyeFile) {
  DeviceRoot& root = DeviceRoot::Get();
  // Answered as a success, vmfd still woken.
  root.Reset();
  const char* conf = "/opt/kfp/etc/fish_eye.conf";
  root.WriteFile(conf, std::string("CENTER_X = 320\n"));
  root.BindReadOnly(conf);
  const Answer a = root.Post("zrfisheyeset.cgi", "CenterX=400&RetReDir=/a");
  root.Unmount(conf);
  EXPECT_EQ(root.ReadFile(conf), "CENTER_X = 320\n");
  // The new text is in place but cannot replace the mounted file.
  EXPECT_EQ(a.err,
      "open error: Device or resource busy\n[SendSignalToVmfd] Send sig = [12] to vmfd. [OK]\n");
  EXPECT_NE(a.out.find("location.href=\"/a\""), std::string::npos);
  EXPECT_EQ(a.vmfdSignals, std::vector<int>{12});
}

}  // namespace
}  // namespace device_test
