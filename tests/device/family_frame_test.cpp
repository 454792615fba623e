#include "tests/device/family_frame.h"

#include <stdio.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>

namespace device_test {

Bytes QuietRecord(const FamilyProfile& profile) {
  Bytes record = Pattern(profile.recordSize);
  for (const auto& [offset, value] : profile.quietBytes) record.at(offset) = value;
  return record;
}

Outcome PostToModule(const std::string& code, const Bytes& record, const std::string& form) {
  DeviceRoot& root = DeviceRoot::Get();
  root.SetModule(code);
  root.WriteRecord(code, record);
  Outcome o;
  o.answer = root.Post("zrcamctlset.cgi", form);
  o.record = root.ReadRecord(code).value_or(Bytes{});
  return o;
}

namespace {

const std::string kRedirect =
    "<html>\n<head>\n<script language=javascript>\nlocation.href=\"/r\";\n</script>\n</head>\n<body>\n"
    "</body>\n</html>\n";

TEST_P(FamilyFrame, EveryModuleCodeRewritesAnUntouchedRecordByteForByte) {
  const FamilyProfile& p = GetParam();
  const Bytes quiet = QuietRecord(p);
  for (const std::string& code : p.codes) {
    // A longer file is read for its first bytes and rewritten at its size.
    Bytes longer = quiet;
    longer.resize(quiet.size() + 10, 0xEE);
    const Outcome o = PostToModule(code, longer, "RetReDir=/r");
    EXPECT_EQ(o.answer.exitStatus, 0) << code;
    EXPECT_EQ(o.answer.out, p.quietResult == 1 ? kRedirect : kAnswer204) << code << "\n" << o.answer.err;
    EXPECT_EQ(Hex(o.record), Hex(quiet)) << code;
    EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10}) << code;
  }
}

TEST_P(FamilyFrame, MissingRecordFollowsTheReadPolicy) {
  const FamilyProfile& p = GetParam();
  const std::string& code = p.codes.front();
  root.SetModule(code);
  const auto start = std::chrono::steady_clock::now();
  const Answer a = root.Post("zrcamctlset.cgi", "RetReDir=/r");
  const auto elapsed = std::chrono::steady_clock::now() - start;
  const std::string notFound = "fopen is failed [PATH:" + DeviceRoot::RecordPath(code) + "]\n";
  const auto record = root.ReadRecord(code);
  EXPECT_EQ(a.exitStatus, 0);
  switch (p.readPolicy) {
    case ReadFailure::Continue:
    case ReadFailure::ContinueInCgi: {
      const std::string report = p.readPolicy == ReadFailure::Continue
                                     ? "ZrCamCtlReadConfFromFile is failed\n"
                                     : "ZrCamCtlReadConfFromFile is failed in Cgi\n";
      EXPECT_EQ(a.err.substr(0, notFound.size() + report.size()), notFound + report);
      ASSERT_TRUE(record.has_value());
      EXPECT_EQ(record->size(), p.recordSize);
      EXPECT_EQ(a.zrcamctldSignals, std::vector<int>{10});
      break;
    }
    case ReadFailure::Abort:
      EXPECT_EQ(a.out, ErrorPage("zrcamctlset.cgi", "ZrCamCtlReadConfFromFile is failed\n"));
      EXPECT_EQ(a.err, notFound + "ZrCamCtlReadConfFromFile is failed\n");
      EXPECT_FALSE(record.has_value());
      EXPECT_EQ(a.zrcamctldSignals, std::vector<int>{});
      break;
    case ReadFailure::Retry:
      EXPECT_EQ(a.out, ErrorPage("zrcamctlset.cgi", ""));
      EXPECT_EQ(a.err, notFound + "ZrCamCtlReadConfFromFile is failed. Retry.\n" + notFound +
                           "ZrCamCtlReadConfFromFile is failed. Retry\n" + notFound +
                           "ZrCamCtlReadConfFromFile is failed. Retry\n"
                           "ZrCamCtlReadConfFromFile is finally failed\n");
      EXPECT_GE(elapsed, std::chrono::milliseconds(300));
      EXPECT_FALSE(record.has_value());
      EXPECT_EQ(a.zrcamctldSignals, std::vector<int>{});
      break;
  }
}

TEST_P(FamilyFrame, UnwritableRecordGivesTheErrorPageAndKeepsTheFile) {
  const FamilyProfile& p = GetParam();
  const std::string& code = p.codes.back();
  const Bytes quiet = QuietRecord(p);
  root.SetModule(code);
  root.WriteRecord(code, quiet);
  root.BindReadOnly(DeviceRoot::RecordPath(code));
  const Answer a = root.Post("zrcamctlset.cgi", "RetReDir=/r");
  root.Unmount(DeviceRoot::RecordPath(code));
  EXPECT_EQ(a.out, ErrorPage("zrcamctlset.cgi", "ZrCamCtlWriteConfToFile is failed\n"));
  EXPECT_NE(a.err.find("ZrCamCtlWriteConfToFile is failed\n"), std::string::npos) << a.err;
  EXPECT_EQ(a.zrcamctldSignals, std::vector<int>{});
  EXPECT_EQ(Hex(root.ReadRecord(code).value()), Hex(quiet));
}

TEST_P(FamilyFrame, WriteFailureReturnsTheFamilysOwnCode) {
  // The handler runs in this process, chrooted into the device root so that
  // every fixed path it uses is the root's; /dev/full reads as zeros and
  // refuses every write.
  const FamilyProfile& p = GetParam();
  ASSERT_NE(p.handler, nullptr);
  const pid_t pid = fork();
  ASSERT_GE(pid, 0);
  if (pid == 0) {
    if (chroot(root.HostPath("").c_str()) != 0 || chdir("/") != 0) _exit(126);
    if (!freopen("/tmp/handler.err", "w", stderr)) _exit(126);
    char errorBuffer[256] = {};
    const int result = p.handler(errorBuffer, "/dev/full");
    FILE* out = fopen("/tmp/handler.out", "w");
    if (!out) _exit(126);
    fprintf(out, "%d\n%s", result, errorBuffer);
    fclose(out);
    fflush(stderr);
    _exit(0);
  }
  int status = 0;
  waitpid(pid, &status, 0);
  ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  EXPECT_EQ(root.ReadFile("/tmp/handler.out").value_or(""),
            std::to_string(p.writeFailureResult) + "\nZrCamCtlWriteConfToFile is failed\n");
  EXPECT_NE(root.ReadFile("/tmp/handler.err").value_or("").find("ZrCamCtlWriteConfToFile is failed\n"),
            std::string::npos);
}

}  // namespace
}  // namespace device_test
