// Requests too large to keep as transcripts, and file systems that refuse
// writes: each has a definite answer and no file is damaged. (A pid file
// naming no process is a transcript.)
#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/device/device_root.h"

namespace device_test {
namespace {

// The zoom module's record with its one-shot bytes idle; AwbMode is byte 14.
Bytes ZoomRecord(int awbMode = -1) {
  Bytes b = Pattern(108);
  b[50] = b[66] = 0;
  if (awbMode >= 0) b[14] = static_cast<uint8_t>(awbMode);
  return b;
}

TEST(DeviceFaults, LargeFormsAreReadWhole) {
  DeviceRoot& root = DeviceRoot::Get();
  std::string exactlyOneMiB = "AwbMode=9&x=";
  exactlyOneMiB.resize(1048576, 'x');
  std::string manyEntries;
  for (int i = 0; i < 50000; ++i)
    manyEntries += "k" + std::to_string(i) + "=" + std::to_string(i) + "&";
  manyEntries += "AwbMode=2&AwbMode=3";  // the first occurrence wins
  // The largest single environment string Linux passes to a program (128 KiB).
  std::string query = "AwbMode=4&pad=";
  query.resize(131072 - sizeof("QUERY_STRING="), 'q');
  for (const auto& [method, form, awbMode] :
      {std::tuple{"POST", exactlyOneMiB, 9}, {"POST", manyEntries, 2}, {"GET", query, 4}}) {
    root.Reset();
    root.WriteRecord("0J", ZoomRecord());
    const Answer a = method == std::string("GET") ? root.Get("zrcamctlset.cgi", form)
                                                  : root.Post("zrcamctlset.cgi", form);
    EXPECT_EQ(a.exitStatus, 0) << awbMode;
    EXPECT_EQ(Hex(*root.ReadRecord("0J")), Hex(ZoomRecord(awbMode)));
  }
  Request over;
  over.body = exactlyOneMiB + "x";
  const Answer a = root.Run("zrcamctlset.cgi", over);
  EXPECT_EQ(a.exitStatus, 255);
  EXPECT_EQ(a.out + a.err, "");
}

TEST(DeviceFaults, ReadOnlyFileSystem) {
  DeviceRoot& root = DeviceRoot::Get();
  root.Reset();
  root.WriteRecord("0J", ZoomRecord());
  root.BindReadOnly("/opt/kfp/etc/ZrConf");
  const Answer a = root.Post("zrcamctlset.cgi", "AwbMode=1");
  root.Unmount("/opt/kfp/etc/ZrConf");
  EXPECT_EQ(a.out, ErrorPage("zrcamctlset.cgi", "ZrCamCtlWriteConfToFile is failed\n"));
  EXPECT_EQ(Hex(*root.ReadRecord("0J")), Hex(ZoomRecord()));
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
