// Lens and image processing modules: bytes and halfwords, three-attempt
// read, the KeyValue answer.
#include "tests/device/family_frame.h"

namespace device_test {
namespace {

const FamilyProfile kLensImageModule = {
    .family = "LensImageModule",
    .codes = {"1G", "1g", "1e"},
    .recordSize = 76,
    .readPolicy = ReadFailure::Retry,
    .handler = LensImageModuleSettings,
    .writeFailureResult = -2,
    .quietBytes = {{75, 0}},  // KeyValue
};
INSTANTIATE_TEST_SUITE_P(LensImage, FamilyFrame, ::testing::Values(kLensImageModule), PrintFamily);

Bytes Quiet() { return QuietRecord(kLensImageModule); }

TEST(LensImageModule, EveryKeyLandsAtItsFieldAndByte65Stays) {
  DeviceRoot::Get().Reset();
  struct Key {
    const char* name;
    size_t offset;
    int width;
  };
  const Key keys[] = {
      {"LensType", 0, 1},    {"ShutSpd", 1, 1},      {"AgcMax", 2, 1},       {"SensUp", 3, 1},
      {"BlcType", 4, 1},     {"HlcAreaSel", 5, 1},   {"HlcAe", 6, 1},        {"HlcMask", 7, 1},
      {"HlcAreaX", 8, 2},    {"HlcAreaY", 10, 2},    {"HlcAreaW", 12, 2},    {"HlcAreaH", 14, 2},
      {"HlcMaskThr", 16, 1}, {"HlcMaskColor", 17, 1}, {"WdrMode", 18, 1},    {"DefogMode", 19, 1},
      {"DayNightMode", 20, 1}, {"DnAutoDelay", 21, 1}, {"DnAutoAgc", 22, 1}, {"NdAutoAgc", 23, 1},
      {"DnAutoCds", 24, 1},  {"NdAutoCds", 25, 1},   {"AwbMode", 26, 1},     {"AwbRGain", 27, 1},
      {"AwbBGain", 28, 1},   {"Dnr2D", 29, 1},       {"Dnr3D", 30, 1},       {"SmartNr", 31, 1},
      {"Bpc", 32, 1},        {"Bpd", 33, 1},         {"Bpt", 34, 1},         {"PmGlobalEn", 35, 1},
      {"PmAreaSel", 36, 1},  {"PmLocalEn", 37, 1},   {"PmAreaAX", 38, 2},    {"PmAreaAY", 40, 2},
      {"PmAreaBX", 42, 2},   {"PmAreaBY", 44, 2},    {"PmAreaCX", 46, 2},    {"PmAreaCY", 48, 2},
      {"PmAreaDX", 50, 2},   {"PmAreaDY", 52, 2},    {"PmColor", 54, 1},     {"PmTrans", 55, 1},
      {"Lsc", 56, 1},        {"Flip", 57, 1},        {"DZoomMode", 58, 1},   {"DZoomRatio", 59, 1},
      {"DZoomPTX", 60, 2},   {"DZoomPTY", 62, 2},    {"PipMode", 64, 1},     {"PipPosX", 66, 2},
      {"PipPosY", 68, 2},    {"Hrm", 70, 1},         {"Sharpness", 71, 1},   {"Contrast", 72, 1},
      {"Brightness", 73, 1}, {"Hue", 74, 1},         {"KeyValue", 75, 1},
  };
  std::string form = "RetReDir=/r";
  Bytes expected = Quiet();
  uint32_t value = 0x30000;
  for (const Key& k : keys) {
    // Each value carries bits above the field's width: they are dropped.
    value += 0x0101;
    const uint32_t stored = k.name == std::string("KeyValue") ? 0x30000 : value;
    form += std::string("&") + k.name + "=" + std::to_string(stored);
    for (int i = 0; i < k.width; ++i) expected[k.offset + i] = static_cast<uint8_t>(stored >> (8 * i));
  }
  const Outcome o = PostToModule("1e", Quiet(), form);
  EXPECT_EQ(Hex(o.record), Hex(expected));
  EXPECT_NE(o.answer.out.find("location.href=\"/r\""), std::string::npos) << o.answer.out;
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
}

TEST(LensImageModule, HalfwordsKeepTheLowSixteenBitsAndKeyValueDecidesTheAnswer) {
  DeviceRoot::Get().Reset();
  struct Case {
    std::string form;
    uint8_t storedKey;
    std::vector<std::pair<size_t, uint8_t>> changes;
    bool returnPage;
  };
  const Case cases[] = {
      {"PmAreaAX=70000", 0, {{38, 0x70}, {39, 0x11}}, true},  // 4464
      {"PipPosY=-1", 0, {{68, 0xFF}, {69, 0xFF}}, true},
      {"KeyValue=0", 1, {{75, 0}}, true},
      {"KeyValue=1", 0, {{75, 1}}, false},
      {"KeyValue=2", 0, {{75, 2}}, false},
      {"KeyValue=0x100", 3, {{75, 0}}, true},
      {"Hue=1", 1, {{74, 1}, {75, 1}}, false},  // the stored key decides
  };
  for (const Case& c : cases) {
    Bytes record = Quiet();
    record[75] = c.storedKey;
    Bytes expected = Quiet();
    for (const auto& [offset, value] : c.changes) expected[offset] = value;
    const Outcome o = PostToModule("1G", record, c.form);
    EXPECT_EQ(Hex(o.record), Hex(expected)) << c.form;
    EXPECT_EQ(o.answer.out, c.returnPage ? "" : kAnswer204) << c.form;
  }
}

}  // namespace
}  // namespace device_test
