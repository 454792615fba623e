// Whole-record reads and writes with their results and messages.
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <string>
#include <vector>

#include "frame/record_store.h"

namespace {

class RecordStore : public ::testing::Test {
 protected:
  void SetUp() override {
    char dir[] = "/tmp/zrstore.XXXXXX";
    ASSERT_NE(mkdtemp(dir), nullptr);
    dir_ = dir;
    path_ = dir_ + "/rec.bin";
  }
  void TearDown() override { (void)!system(("rm -rf " + dir_).c_str()); }
  void WriteRaw(const std::string& bytes) { std::ofstream(path_, std::ios::binary) << bytes; }
  std::string ReadRaw() {
    std::ifstream in(path_, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  }
  std::string dir_, path_;
};

TEST_F(RecordStore, BadArgumentsTouchNothing) {
  char record[4] = {1, 2, 3, 4};
  for (int size : {0, -1}) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(ZrCamCtlWriteConfToFile(record, size, path_.c_str()), -1);
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(err.rfind("arg is wrong [a_conf:", 0), 0u) << err;
    EXPECT_NE(err.find(" , a_confSize:" + std::to_string(size) + " , a_filePath=" + path_ + "\n"), std::string::npos);
    EXPECT_EQ(ZrCamCtlReadConfFromFile(record, size, path_.c_str()), -1);
  }
  testing::internal::CaptureStderr();
  EXPECT_EQ(ZrCamCtlReadConfFromFile(nullptr, 4, path_.c_str()), -1);
  EXPECT_EQ(ZrCamCtlReadConfFromFile(record, 4, nullptr), -1);
  testing::internal::GetCapturedStderr();
  EXPECT_NE(access(path_.c_str(), F_OK), 0);
}

TEST_F(RecordStore, FailedWritesAreReported) {
  uint8_t record[20] = {};
  testing::internal::CaptureStderr();
  const std::string inMissingDir = dir_ + "/no/such.bin";
  EXPECT_EQ(ZrCamCtlWriteConfToFile(record, 20, inMissingDir.c_str()), -2);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "fopen is failed [PATH:" + inMissingDir + "]\n");

  // No room (a file size limit stands in for a full disk): the bytes fit
  // the stream's buffer and fail at the flush; larger ones fail at the
  // write. Either way the old file stays whole and no temporary is left.
  WriteRaw("old");
  signal(SIGXFSZ, SIG_IGN);
  rlimit old;
  getrlimit(RLIMIT_FSIZE, &old);
  const rlimit tiny = {100, old.rlim_max};  // room for the diagnostics, not the record
  setrlimit(RLIMIT_FSIZE, &tiny);
  testing::internal::CaptureStderr();
  const std::vector<uint8_t> small(200);
  EXPECT_EQ(ZrCamCtlWriteConfToFile(small.data(), 200, path_.c_str()), -3);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "fclose is failed [PATH:" + path_ + "]\n");
  std::vector<uint8_t> big(300000);
  testing::internal::CaptureStderr();
  EXPECT_EQ(ZrCamCtlWriteConfToFile(big.data(), 300000, path_.c_str()), -3);
  EXPECT_EQ(testing::internal::GetCapturedStderr().rfind("fwrite is failed [sizeToWrite=300000 sizeToWritten=", 0),
            0u);
  setrlimit(RLIMIT_FSIZE, &old);
  EXPECT_EQ(ReadRaw(), "old");
  // A directory at the path cannot be replaced.
  const std::string directory = dir_ + "/directory";
  mkdir(directory.c_str(), 0755);
  testing::internal::CaptureStderr();
  EXPECT_EQ(ZrCamCtlWriteConfToFile(record, 20, directory.c_str()), -2);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "fopen is failed [PATH:" + directory + "]\n");
  rmdir(directory.c_str());
  EXPECT_EQ(system(("test $(ls -A " + dir_ + " | wc -l) -eq 1").c_str()), 0);
}

}  // namespace
