// The four program names, the answers and the daemon signals.
#include <gtest/gtest.h>

#include "tests/device/device_root.h"

namespace device_test {
namespace {

constexpr int kSigUsr1 = 10;
constexpr int kSigUsr2 = 12;
using Signals = std::vector<int>;

class CgiPrograms : public ::testing::Test {
 protected:
  void SetUp() override { root.Reset(); }
  DeviceRoot& root = DeviceRoot::Get();
};

TEST_F(CgiPrograms, ApplyAndDefaultSignalTheCameraDaemonAndAnswerWithTheReturnPage) {
  Answer a = root.Post("zrcamctlapply.cgi", "");
  EXPECT_EQ(a.exitStatus, 0);
  EXPECT_EQ(a.out, "");  // no return-page keys: empty body, no header
  EXPECT_EQ(a.zrcamctldSignals, Signals{kSigUsr1});
  EXPECT_EQ(a.vmfdSignals, Signals{});
  EXPECT_EQ(a.err, "[SendSignalToZrCamCtlD] Send sig = [10] to zrcamctld. [OK]\n");

  a = root.Post("zrcamctldefault.cgi", "RetReDir=/index.htm");
  EXPECT_EQ(a.exitStatus, 0);
  EXPECT_EQ(a.out,
            "<html>\n<head>\n<script language=javascript>\nlocation.href=\"/index.htm\";\n"
            "</script>\n</head>\n<body>\n</body>\n</html>\n");
  EXPECT_EQ(a.zrcamctldSignals, Signals{kSigUsr2});
  EXPECT_EQ(a.err, "[SendSignalToZrCamCtlD] Send sig = [12] to zrcamctld. [OK]\n");
}

TEST_F(CgiPrograms, NamesAreMatchedExactlyOnTheBaseName) {
  Request r;
  Answer a = root.RunAs("ZrCamCtlSet.cgi", r);
  EXPECT_EQ(a.exitStatus, 0);
  EXPECT_EQ(a.out, "NOT Found Cgi Func: ZrCamCtlSet.cgi<br>\n");
  EXPECT_EQ(a.err, "");
  EXPECT_EQ(a.zrcamctldSignals, Signals{});

  a = root.RunAs("/some/where/zrcamctlset", r);
  EXPECT_EQ(a.out, "NOT Found Cgi Func: zrcamctlset<br>\n");

  // Without any "/" the whole argv[0] is the name.
  a = root.RunAs("zrcamctlapply.cgi", r);
  EXPECT_EQ(a.exitStatus, 0);
  EXPECT_EQ(a.zrcamctldSignals, Signals{kSigUsr1});
}

TEST_F(CgiPrograms, ReturnPageCopiesThePageAfterTheScriptVariables) {
  Answer a = root.Post("zrcamctlapply.cgi", "RetPage=/setup/cam.htm&ZrModId=3&PortId=1");
  EXPECT_EQ(a.out,
            "<script language=javascript>\nvar ZRMODID = 3;\nvar PORTID = 1;\n</script>\n"
            "<p>camera page</p>\n");

  root.WriteFile("/web/cam.htm", std::string("relative"));
  a = root.Post("zrcamctlapply.cgi", "RetPage=cam.htm&ZrModId=");
  EXPECT_EQ(a.out, "<script language=javascript>\n</script>\nrelative");

  // Both: the page, then the redirect document.
  a = root.Post("zrcamctlapply.cgi", "RetPage=cam.htm&RetReDir=x");
  EXPECT_EQ(a.out,
            "<script language=javascript>\n</script>\nrelative<html>\n<head>\n<script language=javascript>\n"
            "location.href=\"x\";\n</script>\n</head>\n<body>\n</body>\n</html>\n");
}

TEST_F(CgiPrograms, ReturnPageThatCannotOrMustNotBeOpened) {
  const std::string script = "<script language=javascript>\n</script>\n";
  EXPECT_EQ(root.Post("zrcamctlapply.cgi", "RetPage=nope.htm").out, script + "Page Open Error (/web/nope.htm)");
  // Outside the web root.
  EXPECT_EQ(root.Post("zrcamctlapply.cgi", "RetPage=../etc/passwd").out,
            script + "Page Open Error (/web/../etc/passwd)");
  EXPECT_EQ(root.Post("zrcamctlapply.cgi", "RetPage=/setup/..").out, script + "Page Open Error (/web/setup/..)");
  // "..x" is an ordinary name.
  root.WriteFile("/web/..x", std::string("dots"));
  EXPECT_EQ(root.Post("zrcamctlapply.cgi", "RetPage=..x").out, script + "dots");
  // A directory opens and copies nothing.
  EXPECT_EQ(root.Post("zrcamctlapply.cgi", "RetPage=setup").out, script);

  // 123 characters make a 128-character path: cut to 127, not opened.
  const std::string name(123, 'p');
  root.WriteFile("/web/" + name.substr(0, 122), std::string("must not be shown"));
  EXPECT_EQ(root.Post("zrcamctlapply.cgi", "RetPage=" + name).out,
            script + "Page Open Error (/web/" + name.substr(0, 122) + ")");
  // 122 characters fit.
  EXPECT_EQ(root.Post("zrcamctlapply.cgi", "RetPage=" + name.substr(0, 122)).out, script + "must not be shown");
}

TEST_F(CgiPrograms, SaveAndChangeFlagCommandsRunOnlyForYes) {
  root.Post("zrcamctlapply.cgi", "SaveCfg=yes&ZrMkChg=Yes");
  EXPECT_EQ(root.SaveCfgCalls(), "");
  EXPECT_FALSE(root.Exists("/tmp/ZrConfChg"));

  root.Post("zrcamctlapply.cgi", "SaveCfg=YES&ZrMkChg=YES");
  EXPECT_EQ(root.SaveCfgCalls(), "savecfg \n");
  EXPECT_TRUE(root.Exists("/tmp/ZrConfChg"));

  Answer a = root.Post("zrcamctlapply.cgi", "ZrRmChg=YES");
  EXPECT_FALSE(root.Exists("/tmp/ZrConfChg"));

  // Mark and clear together: the flag ends removed.
  a = root.Post("zrcamctlapply.cgi", "ZrMkChg=YES&ZrRmChg=YES&RetReDir=/a");
  EXPECT_FALSE(root.Exists("/tmp/ZrConfChg"));
  EXPECT_EQ(a.out.substr(0, 7), "<html>\n");
}

TEST_F(CgiPrograms, PidFilesThatNameNoProcessSendNothing) {
  const std::string error = "[SendSignalToZrCamCtlD] Send sig = [10] to zrcamctld. [Error]\n";
  for (const std::string content : {"garbage\n", "0\n", "-1\n", "  \n", "99999999999\n"}) {
    root.SetPidFile("zrcamctld", content);
    Answer a = root.Post("zrcamctlapply.cgi", "RetReDir=/a");
    EXPECT_EQ(a.err, error) << content;
    EXPECT_EQ(a.zrcamctldSignals, Signals{}) << content;
    EXPECT_EQ(a.out.substr(0, 7), "<html>\n") << content;  // the answer is unchanged
  }

  root.WriteFile("/var/run/zrcamctld.pid", std::string());  // empty
  EXPECT_EQ(root.Post("zrcamctlapply.cgi", "").err, error);

  root.SetPidFile("zrcamctld", "");
  Answer a = root.Post("zrcamctlapply.cgi", "");
  EXPECT_EQ(a.err, "[SendSignalToZrCamCtlD] pid file [/var/run/zrcamctld.pid] is not found.\n");
  EXPECT_EQ(a.exitStatus, 0);

  // Leading blanks, a sign and leading zeros read as "%d" would.
  root.SetPidFile("zrcamctld", "\n +000" + std::to_string(root.DaemonPid("zrcamctld")) + "xyz");
  a = root.Post("zrcamctlapply.cgi", "");
  EXPECT_EQ(a.zrcamctldSignals, Signals{kSigUsr1});
}

TEST_F(CgiPrograms, UnreadableFormsEndWithStatus255AndNoAnswer) {
  Request shortBody;
  shortBody.body = "RetReDir=/a";
  shortBody.contentLength = "12";
  Request tooLarge;
  tooLarge.contentLength = "1048577";
  Request negative;
  negative.contentLength = "-1";
  for (const Request& r : {shortBody, tooLarge, negative}) {
    Answer a = root.Run("zrcamctlapply.cgi", r);
    EXPECT_EQ(a.exitStatus, 255) << *r.contentLength;
    EXPECT_EQ(a.out, "");
    EXPECT_EQ(a.err, "");
    EXPECT_EQ(a.zrcamctldSignals, Signals{});
  }
}

TEST_F(CgiPrograms, MethodsAndContentTypes) {
  Request r;
  r.method = "PoSt";
  r.contentType = "Application/X-WWW-Form-Urlencoded";
  r.body = "RetReDir=/p";
  EXPECT_NE(root.Run("zrcamctlapply.cgi", r).out.find("location.href=\"/p\""), std::string::npos);

  // Another content type: the body is not read, the program runs on an empty form.
  r.contentType = "multipart/form-data";
  Answer a = root.Run("zrcamctlapply.cgi", r);
  EXPECT_EQ(a.out, "");
  EXPECT_EQ(a.exitStatus, 0);

  EXPECT_NE(root.Get("zrcamctlapply.cgi", "RetReDir=/q").out.find("location.href=\"/q\""), std::string::npos);

  r.method = "PUT";
  r.contentType = "application/x-www-form-urlencoded";
  a = root.Run("zrcamctlapply.cgi", r);
  EXPECT_EQ(a.out, "");
  EXPECT_EQ(a.zrcamctldSignals, Signals{kSigUsr1});
}

}  // namespace
}  // namespace device_test
