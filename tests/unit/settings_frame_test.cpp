// The frame's read policies, write path and named patterns, on a small
// test family.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <fstream>
#include <string>
#include <vector>

#include "cgi/cgi_request.h"
#include "handlers/settings_frame.h"

namespace {

constexpr Field kFields[] = {
    U8("Byte", 0),
    U16("Half", 1),
    U32("Word", 3),
    U8("Rev", 7, Reversed<15>),
    U16("Low", 8, LowByte),
    Text("Name", 10, 4),
    PaddedText("Code", 14, 3),
};

void Merge(const FormValue& form, const RecordView& record) {
  if (KeyValueLocked(form, record, 17)) return;
  MergeFields(form, record, kFields);
  MergeIndexedField(form, record, {"Slot%d", 1, 3, 20, 2, FieldType::U16, nullptr});
  if (SetIdGateOpen(form, record, "PresetSetId", 26, 4)) MergeField(form, record, U8("PresetSpeed", 27));
}

int Result(const RecordView& record) { return KeyValueResult(record, 17); }

SettingsFamily gFamily = {28, ReadPolicy::Continue, {-7, false}, Merge, Result};

using Bytes = std::vector<uint8_t>;

class Frame : public ::testing::Test {
 protected:
  void SetUp() override {
    char dir[] = "/tmp/zrframe.XXXXXX";
    ASSERT_NE(mkdtemp(dir), nullptr);
    dir_ = dir;
    path_ = dir_ + "/rec.bin";
  }
  void TearDown() override {
    FreeForm();
    (void)!system(("rm -rf " + dir_).c_str());
  }
  void Post(const std::string& form) { ASSERT_EQ(ParseUrlEncodedForm(form.data(), form.size()), 0); }
  void Store(const Bytes& b) { std::ofstream(path_, std::ios::binary).write(reinterpret_cast<const char*>(b.data()), b.size()); }
  Bytes Load() {
    std::ifstream in(path_, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(in), {});
  }
  int Run() {
    uint8_t record[28];
    testing::internal::CaptureStderr();
    const int r = RunSettingsFrameOn(gFamily, RecordView{record, 28}, error_, path_.c_str());
    err_ = testing::internal::GetCapturedStderr();
    return r;
  }
  static Bytes Filled() { return Bytes(28, 0xAA); }
  std::string dir_, path_, err_;
  char error_[256] = {};
};

TEST_F(Frame, FieldsAreStoredTruncatedToTheirWidths) {
  Bytes stored = Filled();
  stored[17] = 0;  // unlocked
  stored[26] = 9;  // gate closed
  Store(stored);
  Post("Byte=0x1FF&Half=-1&Word=-3&Rev=3&Low=300&Name=abcdef&Code=x&Slot1=0x102&Slot3=7&Slot4=9&Slot0=9"
       "&PresetSpeed=5&Other=1");
  EXPECT_EQ(Run(), 1);
  Bytes expected = stored;
  expected[0] = 0xFF;
  expected[1] = 0xFF, expected[2] = 0xFF;
  expected[3] = 0xFD, expected[4] = 0xFF, expected[5] = 0xFF, expected[6] = 0xFF;
  expected[7] = 12;
  expected[8] = 44, expected[9] = 0;
  expected[10] = 'a', expected[11] = 'b', expected[12] = 'c', expected[13] = 0;
  expected[14] = 'x', expected[15] = 0, expected[16] = 0;
  expected[20] = 2, expected[21] = 1;
  expected[24] = 7, expected[25] = 0;
  EXPECT_EQ(Load(), expected);
}

TEST_F(Frame, WriteFailureFillsTheErrorBufferWithItsNul) {
  // The directory does not exist: the read fails and merging goes on,
  // the write fails.
  path_ = dir_ + "/missing/rec.bin";
  memset(error_, 'z', sizeof error_);
  EXPECT_EQ(Run(), -7);
  EXPECT_EQ(std::string(error_, 35), std::string("ZrCamCtlWriteConfToFile is failed\n", 35));
  EXPECT_EQ(error_[35], 'z');  // 35 bytes, nothing more
  EXPECT_EQ(err_, "fopen is failed [PATH:" + path_ + "]\nZrCamCtlReadConfFromFile is failed\nfopen is failed [PATH:" +
                      path_ + "]\nZrCamCtlWriteConfToFile is failed\n");
}

}  // namespace
