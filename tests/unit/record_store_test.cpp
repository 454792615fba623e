// Whole-record reads and writes with their results and messages.
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <fstream>
#include <string>
#include <vector>

#include "frame/record_store.h"
#include "tests/cases.h"

namespace {

using RecordStore = cases::InTempDir;

TEST_F(RecordStore, ReadsAndWrites) {
  for (const cases::Case& k : cases::Read("unit", "record_store")) {
    const std::string path = dir + "/" + k[0], &before = k[1];
    const char op = k[2][0];
    const int size = std::stoi(k[3]);
    if (before == "/") mkdir(path.c_str(), 0755);
    if (before != "/" && before != "-") std::ofstream(path, std::ios::binary) << before;
    char record[8] = "abcd";
    testing::internal::CaptureStderr();
    void* const buffer = op == 'n' ? nullptr : record;
    const char* const file = op == 'p' ? nullptr : path.c_str();
    std::string r;  // a read's result, a write's, or both
    if (op != 'w' && op != 'W') r = std::to_string(ZrCamCtlReadConfFromFile(buffer, size, file));
    if (op != 'r')
      r += (r.empty() ? "" : " ") +
           std::to_string(ZrCamCtlWriteConfToFile(
               buffer, size, op == 'W' ? (path + "/no/such.bin").c_str() : file));
    std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(r, k[4]) << k[0];
    EXPECT_EQ(op == 'r'       ? std::string(record, 4).substr(0, k[5].size())
              : before == "/" ? ""
                              : cases::ReadAll(path),
        k[5])
        << k[0];
    for (size_t at = 0; (at = err.find("[a_conf:", at)) != std::string::npos; ++at)
      err.erase(at + 8, err.find(" , ", at) - at - 8);  // where the record is
    for (size_t at; (at = err.find(path)) != std::string::npos;) err.replace(at, path.size(), "@");
    EXPECT_EQ(err, k[6]) << k[0];
  }
}

TEST_F(RecordStore, KeepsPermissions) {
  const std::string path = dir + "/rec.bin";
  std::ofstream(path, std::ios::binary) << "old";
  chmod(path.c_str(), 04705);  // the read and write bits only
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
  EXPECT_EQ(cases::ReadAll(path), "old");
  EXPECT_EQ(system(("test $(ls -A " + dir + " | wc -l) -eq 1").c_str()), 0);
}

}  // namespace
