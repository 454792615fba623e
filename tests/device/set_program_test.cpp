// The set program: product code, module identification and the table.
#include <gtest/gtest.h>

#include "tests/device/device_root.h"

namespace device_test {
namespace {

std::string NoHandler(const std::string& id, int index, const std::string& pFunc) {
  return "[zrcamctlset.cgi] not exist function for control zrcamctld[ExtCamId:0x" + id +
         ",Index=" + std::to_string(index) + " pFunc=0x" + pFunc + "]\n";
}

const std::string kSignalOk = "[SendSignalToZrCamCtlD] Send sig = [10] to zrcamctld. [OK]\n";

std::string Times(int n, const std::string& s) {
  std::string out;
  for (int i = 0; i < n; ++i) out += s;
  return out;
}

class SetProgram : public ::testing::Test {
 protected:
  void SetUp() override { root.Reset(); }
  // Every answer without a handler: 204 and a wake-up all the same.
  void ExpectNoHandler(const Answer& a, const std::string& err) {
    EXPECT_EQ(a.exitStatus, 0);
    EXPECT_EQ(a.out, kAnswer204);
    EXPECT_EQ(a.err, err);
    EXPECT_EQ(a.zrcamctldSignals, std::vector<int>{10});
    EXPECT_EQ(root.List("/tmp"), std::vector<std::string>{});  // the copy is removed
    EXPECT_EQ(root.List("/opt/kfp/etc/ZrConf"), std::vector<std::string>{});
  }
  DeviceRoot& root = DeviceRoot::Get();
};

TEST_F(SetProgram, UnknownAndUnbuiltModules) {
  root.SetModule("9Q");
  ExpectNoHandler(root.Post("zrcamctlset.cgi", "RetReDir=/r"), NoHandler("00003951", -1, "00020001") + kSignalOk);
  // Rows of the family that has no handler: the row's own index.
  root.SetProductCode("ABCDEFGHIJKLMNOPQRS1Y");
  ExpectNoHandler(root.Post("zrcamctlset.cgi", ""), NoHandler("00003159", 68, "00000000") + kSignalOk);
  root.SetProductCode("ABCDEFGHIJKLMNOPQRS1y");
  ExpectNoHandler(root.Post("zrcamctlset.cgi", ""), NoHandler("00003179", 77, "00000000") + kSignalOk);
}

TEST_F(SetProgram, ProductCodeOfTwentyCharactersFailsFiveTimes) {
  root.SetProductCode("ABCDEFGHIJKLMNOPQRS0");
  ExpectNoHandler(root.Post("zrcamctlset.cgi", "AwbMode=1"),
                  Times(5, "pnCodeLength is not correct[pnCodeLength=20]\n") + NoHandler("fffffffe", -1, "00020001") +
                      kSignalOk);
}

TEST_F(SetProgram, UnreadableBasicConfiguration) {
  const std::string readFailed = "PnCodeUtilRead is failed\n";
  root.SetBasicConf("QEF_STR1=\"ABCDEFGHIJKLMNOPQRS0J\"\n");  // no closing quote and semicolon
  ExpectNoHandler(root.Post("zrcamctlset.cgi", ""),
                  Times(5, "qet_get_and_init_pn_code():strstr(\";) error for end\n" + readFailed) +
                      NoHandler("ffffffff", -1, "00020001") + kSignalOk);

  // No basic configuration at all: cat says so, the copy is empty.
  root.Remove("/proc/driver/qe_basic_conf");
  ExpectNoHandler(root.Post("zrcamctlset.cgi", ""),
                  Times(5, "cat: can't open '/proc/driver/qe_basic_conf': No such file or directory\n"
                           "qet_get_and_init_pn_code():strstr(QEF_STR1=\") error for start\n" +
                               readFailed) +
                      NoHandler("ffffffff", -1, "00020001") + kSignalOk);

  root.SetBasicConf("");
  ExpectNoHandler(root.Post("zrcamctlset.cgi", ""),
                  Times(5, "qet_get_and_init_pn_code():strstr(QEF_STR1=\") error for start\n" + readFailed) +
                      NoHandler("ffffffff", -1, "00020001") + kSignalOk);

  // Without /bin/cat the shell still creates the copy, empty.
  root.SetModule("0J");
  root.Remove("/bin/cat");
  const Answer a = root.Post("zrcamctlset.cgi", "");
  ExpectNoHandler(a, Times(5, "sh: /bin/cat: not found\n"
                              "qet_get_and_init_pn_code():strstr(QEF_STR1=\") error for start\n" +
                                  readFailed) +
                         NoHandler("ffffffff", -1, "00020001") + kSignalOk);
}

TEST_F(SetProgram, ProductCodeIsFoundAnywhereInTheFirst1023Bytes) {
  // The code is read after other strings, and one longer than 63
  // characters is cut to 63: characters 19 and 20 still name the module.
  root.SetBasicConf("QEF_STR0=\"x\";\nQEF_STR1=\"ABCDEFGHIJKLMNOPQRS0y" + std::string(200, 'z') + "\";\n");
  root.WriteRecord("0y", Bytes(128, 0));
  Answer a = root.Post("zrcamctlset.cgi", "Hue=1");
  EXPECT_EQ(a.err, kSignalOk);
  EXPECT_EQ(root.ReadRecord("0y").value().size(), 128u);

  // Past the first 1023 bytes nothing is seen.
  root.SetBasicConf(std::string(1000, '#') + "QEF_STR1=\"ABCDEFGHIJKLMNOPQRS0y\";\n");
  a = root.Post("zrcamctlset.cgi", "");
  EXPECT_EQ(a.out, kAnswer204);
  EXPECT_NE(a.err.find("error for end"), std::string::npos);
}

}  // namespace
}  // namespace device_test
