// "zrfisheyeset.cgi": the fisheye geometry in /opt/kfp/etc/fish_eye.conf,
// the answer and the signal to vmfd.
#include <gtest/gtest.h>

#include "tests/device/device_root.h"

namespace device_test {
namespace {

constexpr int kSigUsr2 = 12;
using Signals = std::vector<int>;

constexpr char kConf[] = "/opt/kfp/etc/fish_eye.conf";
constexpr char kVmfdOk[] = "[SendSignalToVmfd] Send sig = [12] to vmfd. [OK]\n";

// The file as installed: CR LF line ends, blank lines, comments, quoted and
// unquoted values, and the height line no form key reaches.
constexpr char kInstalled[] =
    "# fisheye correction\r\n"
    "\r\n"
    "CENTER_X = 320 # pixels\r\n"
    "CENTER_Y=\"240\";\r\n"
    "OUTER_RADIUS\t300\r\n"
    "INNER_RADIUS = '40'\r\n"
    "\r\n"
    "CENTER_RECT=0\r\n"
    "SRC_START_X = 0\r\n"
    "SRC_START_Y = 0\r\n"
    "SRC_WIDTH = 1920\r\n"
    "SRC_HEIGHT = 1080\r\n";

// The same file as the program writes it back when nothing changes.
constexpr char kNormalised[] =
    "# fisheye correction\n"
    "CENTER_X = 320 # pixels\n"
    "CENTER_Y=\"240\";\n"
    "OUTER_RADIUS\t300\n"
    "INNER_RADIUS = '40'\n"
    "CENTER_RECT=0\n"
    "SRC_START_X = 0\n"
    "SRC_START_Y = 0\n"
    "SRC_WIDTH = 1920\n"
    "SRC_HEIGHT = 1080\n";

std::string Replace(std::string text, const std::string& from, const std::string& to) {
  const size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  if (at != std::string::npos) text.replace(at, from.size(), to);
  return text;
}

class Fisheye : public ::testing::Test {
 protected:
  void SetUp() override {
    root.Reset();
    root.WriteFile(kConf, std::string(kInstalled));
  }
  std::string Conf() const { return root.ReadFile(kConf).value_or("<missing>"); }
  DeviceRoot& root = DeviceRoot::Get();
};

TEST_F(Fisheye, OnlyThePostedValueChanges) {
  Answer a = root.Post("zrfisheyeset.cgi", "CenterX=400");
  EXPECT_EQ(Conf(), Replace(kNormalised, "320 #", "400 #"));
  EXPECT_EQ(a.exitStatus, 0);
  EXPECT_EQ(a.out, "");  // no return-page keys
  EXPECT_EQ(a.err, kVmfdOk);
  EXPECT_EQ(a.vmfdSignals, Signals{kSigUsr2});
  EXPECT_EQ(a.zrcamctldSignals, Signals{});
}

TEST_F(Fisheye, AllEightKeysKeepTheirLayoutAndTheHeightIsNeverTouched) {
  Answer a = root.Post("zrfisheyeset.cgi",
                       "SrcHeight=720&SRC_HEIGHT=720&CenterX=1&CenterY=2&OuterRadius=3&InnerRadius=4"
                       "&CenterRect=5&SrcStartX=6&SrcStartY=7&SrcWidth=8&RetReDir=/fisheye.htm");
  EXPECT_EQ(Conf(),
            "# fisheye correction\n"
            "CENTER_X = 1 # pixels\n"
            "CENTER_Y=\"2\";\n"
            "OUTER_RADIUS\t3\n"
            "INNER_RADIUS = '4'\n"
            "CENTER_RECT=5\n"
            "SRC_START_X = 6\n"
            "SRC_START_Y = 7\n"
            "SRC_WIDTH = 8\n"
            "SRC_HEIGHT = 1080\n");
  EXPECT_EQ(a.out,
            "<html>\n<head>\n<script language=javascript>\nlocation.href=\"/fisheye.htm\";\n"
            "</script>\n</head>\n<body>\n</body>\n</html>\n");
  EXPECT_EQ(a.vmfdSignals, Signals{kSigUsr2});

  // Keys missing from the file are skipped, never added.
  root.WriteFile(kConf, std::string("CENTER_Y = 9\n"));
  root.Post("zrfisheyeset.cgi", "CenterX=1&CenterY=2&SrcWidth=3");
  EXPECT_EQ(Conf(), "CENTER_Y = 2\n");
}

TEST_F(Fisheye, EmptyOrOverlongValuesCountAsNotPosted) {
  const std::string v127(127, '7');
  Answer a = root.Post("zrfisheyeset.cgi",
                       "CenterX=&CenterY=%0D%0A&OuterRadius=" + std::string(128, '8') +
                           "&SrcWidth=" + v127);
  // The file is still rewritten: line ends and blank lines normalised.
  EXPECT_EQ(Conf(), Replace(kNormalised, "SRC_WIDTH = 1920", "SRC_WIDTH = " + v127));
  EXPECT_EQ(a.vmfdSignals, Signals{kSigUsr2});

  root.WriteFile(kConf, std::string(kInstalled));
  a = root.Post("zrfisheyeset.cgi", "");
  EXPECT_EQ(Conf(), kNormalised);
  EXPECT_EQ(a.err, kVmfdOk);
}

TEST_F(Fisheye, ValuesAreWrittenAsPosted) {
  root.Post("zrfisheyeset.cgi", "SrcWidth=abc&CenterX=-1%202&CenterY=0x10&InnerRadius=4%0D%0A2");
  std::string expected = Replace(kNormalised, "SRC_WIDTH = 1920", "SRC_WIDTH = abc");
  expected = Replace(expected, "320 #", "-1 2 #");
  expected = Replace(expected, "\"240\"", "\"0x10\"");
  expected = Replace(expected, "'40'", "'42'");  // line breaks never reach the file
  EXPECT_EQ(Conf(), expected);

  // Through GET as well.
  Answer a = root.Get("zrfisheyeset.cgi", "CenterRect=1");
  EXPECT_EQ(Conf(), Replace(expected, "CENTER_RECT=0", "CENTER_RECT=1"));
  EXPECT_EQ(a.vmfdSignals, Signals{kSigUsr2});
}

TEST_F(Fisheye, MissingFileIsReportedNotCreatedAndVmfdIsStillSignalled) {
  root.Remove(kConf);
  Answer a = root.Post("zrfisheyeset.cgi", "CenterX=400&RetReDir=/fisheye.htm");
  EXPECT_FALSE(root.Exists(kConf));
  EXPECT_EQ(root.List("/opt/kfp/etc"), std::vector<std::string>{"ZrConf"});
  EXPECT_EQ(a.err,
            "[new_cfg:tcfg_util(129)]\t/opt/kfp/etc/fish_eye.conf does not exist\n"
            "Failed to create cfg [/opt/kfp/etc/fish_eye.conf]\n" +
                std::string(kVmfdOk));
  EXPECT_EQ(a.exitStatus, 0);
  EXPECT_EQ(a.out,
            "<html>\n<head>\n<script language=javascript>\nlocation.href=\"/fisheye.htm\";\n"
            "</script>\n</head>\n<body>\n</body>\n</html>\n");
  EXPECT_EQ(a.vmfdSignals, Signals{kSigUsr2});
}

TEST_F(Fisheye, FailedSaveIsNotReported) {
  root.BindReadOnly(kConf);
  Answer a = root.Post("zrfisheyeset.cgi", "CenterX=400&RetReDir=/a");
  EXPECT_EQ(Conf(), kInstalled);
  EXPECT_EQ(a.err, "open error: Read-only file system\n" + std::string(kVmfdOk));
  EXPECT_EQ(a.exitStatus, 0);
  EXPECT_NE(a.out.find("location.href=\"/a\""), std::string::npos);
  EXPECT_EQ(a.vmfdSignals, Signals{kSigUsr2});
}

TEST_F(Fisheye, WithoutVmfdTheFileIsStillWritten) {
  root.SetPidFile("vmfd", "");
  Answer a = root.Post("zrfisheyeset.cgi", "CenterX=400");
  EXPECT_EQ(Conf(), Replace(kNormalised, "320 #", "400 #"));
  EXPECT_EQ(a.err, "[SendSignalToVmfd] pid file [/var/run/vmfd.pid] is not found.\n");
  EXPECT_EQ(a.exitStatus, 0);
  EXPECT_EQ(a.vmfdSignals, Signals{});
}

}  // namespace
}  // namespace device_test
