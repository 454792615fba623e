// A fisheye file that cannot be replaced: a definite answer, the file kept.
// (Records that cannot be written are the settings families' test; forms
// too large for transcripts are the request's unit cases.)
#include <gtest/gtest.h>

#include "tests/device/device_root.h"

namespace device_test {
namespace {

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
