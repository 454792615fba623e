// Whole-record reads and writes with their results and messages.
#include <gtest/gtest.h>
#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <fstream>
#include <string>
#include <vector>

#include "frame/record_store.h"

namespace {

class RecordStore : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_NE(mkdtemp(dir.data()), nullptr); }
  void TearDown() override { (void)!system(("rm -rf " + dir).c_str()); }
  std::string ReadRaw(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  }
  std::string dir = "/tmp/zrstore.XXXXXX";
};

TEST_F(RecordStore, ReadsAndWrites) {
  // The file before ("-": none, "/": a directory), the call, its result, the
  // record or the file afterwards, and what went to stderr ("@" is the path).
  struct Case {
    const char* name;
    const char* before;
    char op;
    int size;
    int want;
    std::string after, err;
  };
  const Case cases[] = {
      {"write", "old", 'w', 4, 4, "abcd", ""},
      {"write 1", "-", 'w', 1, 1, "a", ""},
      {"read", "wxyz", 'r', 4, 4, "wxyz", ""},
      {"read of a longer file", "wxyz!", 'r', 4, 4, "wxyz", ""},
      {"short read", "wxy", 'r', 4, -3, "wxy", "fread is failed [sizeToRead:4 sizeToReaded:3]\n"},
      {"no file", "-", 'r', 4, -2, "abcd", "fopen is failed [PATH:@]\n"},
      {"no directory", "-", 'W', 4, -2, "", "fopen is failed [PATH:@/no/such.bin]\n"},
      {"a directory", "/", 'w', 4, -2, "", "fopen is failed [PATH:@]\n"},
      {"write size 0", "old", 'w', 0, -1, "old", " , a_confSize:0 , a_filePath=@\n"},
      {"write size -1", "-", 'w', -1, -1, "", " , a_confSize:-1 , a_filePath=@\n"},
      {"read size 0", "wxyz", 'r', 0, -1, "abcd", " , a_confSize:0 , a_filePath=@\n"},
      {"null record", "wxyz", 'n', 4, -1, "wxyz", " , a_confSize:4 , a_filePath=@\n"},
      {"null path", "wxyz", 'p', 4, -1, "wxyz", " , a_confSize:4 , a_filePath=(null)\n"},
  };
  for (const Case& k : cases) {
    const std::string path = dir + "/" + k.name;
    if (k.before[0] == '/') mkdir(path.c_str(), 0755);
    if (k.before[0] != '/' && k.before[0] != '-') std::ofstream(path, std::ios::binary) << k.before;
    char record[8] = "abcd";
    testing::internal::CaptureStderr();
    int r = 0;
    if (k.op == 'w') r = ZrCamCtlWriteConfToFile(record, k.size, path.c_str());
    if (k.op == 'W') r = ZrCamCtlWriteConfToFile(record, k.size, (path + "/no/such.bin").c_str());
    if (k.op == 'r') r = ZrCamCtlReadConfFromFile(record, k.size, path.c_str());
    if (k.op == 'n')
      r = ZrCamCtlReadConfFromFile(nullptr, k.size, path.c_str()) +
          ZrCamCtlWriteConfToFile(nullptr, k.size, path.c_str()) + 1;
    if (k.op == 'p')
      r = ZrCamCtlReadConfFromFile(record, k.size, nullptr) +
          ZrCamCtlWriteConfToFile(record, k.size, nullptr) + 1;
    std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(r, k.want) << k.name;
    EXPECT_EQ(k.op == 'r'          ? std::string(record, 4).substr(0, k.after.size())
              : k.before[0] == '/' ? ""
                                   : ReadRaw(path),
        k.after)
        << k.name;
    if (err.rfind("arg is wrong [a_conf:", 0) == 0)
      err = err.substr(err.find(" , "), err.find('\n') - err.find(" , ") + 1);
    for (size_t at; (at = err.find(path)) != std::string::npos;) err.replace(at, path.size(), "@");
    EXPECT_EQ(err, k.err) << k.name;
  }
}

TEST_F(RecordStore, KeepsPermissions) {
  const std::string path = dir + "/rec.bin";
  std::ofstream(path, std::ios::binary) << "old";
  chmod(path.c_str(), 0604);
  EXPECT_EQ(ZrCamCtlWriteConfToFile("abcd", 4, path.c_str()), 4);
  struct stat st = {};
  EXPECT_EQ(stat(path.c_str(), &st) == 0 ? st.st_mode & 07777 : 0u, 0604u);
}

TEST_F(RecordStore, FullDiskKeepsTheOldFile) {
  // A file size limit stands in for a full disk: the bytes fit the stream's
  // buffer and fail at the flush; larger ones fail at the write. Either way
  // the old file stays whole and no temporary is left.
  const std::string path = dir + "/rec.bin";
  std::ofstream(path, std::ios::binary) << "old";
  signal(SIGXFSZ, SIG_IGN);
  rlimit old;
  getrlimit(RLIMIT_FSIZE, &old);
  const rlimit tiny = {100, old.rlim_max};  // room for the diagnostics, not the record
  setrlimit(RLIMIT_FSIZE, &tiny);
  const std::vector<uint8_t> small(200), big(300000);
  testing::internal::CaptureStderr();
  EXPECT_EQ(ZrCamCtlWriteConfToFile(small.data(), 200, path.c_str()), -3);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "fclose is failed [PATH:" + path + "]\n");
  testing::internal::CaptureStderr();
  EXPECT_EQ(ZrCamCtlWriteConfToFile(big.data(), 300000, path.c_str()), -3);
  EXPECT_EQ(testing::internal::GetCapturedStderr().rfind(
                "fwrite is failed [sizeToWrite=300000 sizeToWritten=", 0),
      0u);
  setrlimit(RLIMIT_FSIZE, &old);
  EXPECT_EQ(ReadRaw(path), "old");
  EXPECT_EQ(system(("test $(ls -A " + dir + " | wc -l) -eq 1").c_str()), 0);
}

}  // namespace
