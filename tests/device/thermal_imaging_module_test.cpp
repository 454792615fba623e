// Thermal imaging modules: 16- and 32-bit fields, the unsigned decimal AGC
// preset word and the reset/save command word that decides the answer.
#include "tests/device/family_frame.h"

namespace device_test {
namespace {

const FamilyProfile kThermalImagingModule = {
    .family = "ThermalImagingModule",
    .codes = {"0R", "0r"},
    .recordSize = 56,
    .readPolicy = ReadFailure::Continue,
    .handler = ThermalImagingModuleSettings,
    .writeFailureResult = -2,
    .quietBytes = {{36, 0}, {37, 0}, {38, 0}, {39, 0}},  // ResetCamera, SaveCamera
};
INSTANTIATE_TEST_SUITE_P(ThermalImaging, FamilyFrame, ::testing::Values(kThermalImagingModule), PrintFamily);

Bytes Quiet() { return QuietRecord(kThermalImagingModule); }

void Put(Bytes& b, size_t offset, uint32_t v, int width) {
  for (int i = 0; i < width; ++i) b[offset + i] = static_cast<uint8_t>(v >> (8 * i));
}

TEST(ThermalImagingModule, EveryKeyLandsAtItsFieldAndTheUnkeyedBytesStay) {
  DeviceRoot::Get().Reset();
  struct Key {
    const char* name;
    size_t offset;
    int width;
    const char* value;
    uint32_t stored;
  };
  const Key keys[] = {
      {"VideoStandard", 4, 2, "70000", 0x1170},     {"TestPattern", 6, 2, "1", 1},
      {"DynamicDde", 8, 2, "0x1FFFF", 0xFFFF},      {"PolarityPalette", 10, 2, "-1", 0xFFFF},
      {"Orientation", 12, 2, "2", 2},               {"ZoomMode", 14, 2, "3", 3},
      {"PanPosition", 16, 4, "-100", 0xFFFFFF9C},   {"TiltPosition", 20, 4, "0x12345678", 0x12345678},
      {"SpotMeterMode", 24, 2, "4", 4},             {"IsoTherm", 26, 2, "5", 5},
      {"IsoThresLower", 28, 2, "300", 300},         {"IsoThresMiddle", 30, 2, "0x8000", 0x8000},
      {"IsoThresUpper", 32, 2, "65535", 0xFFFF},    {"FfcWarnTime", 34, 2, "60", 60},
      {"ResetCamera", 36, 2, "0", 0},               {"SaveCamera", 38, 2, "65536", 0},
      {"Algorithm", 40, 2, "9", 9},                 {"AgcPresets", 44, 4, "3000000000", 3000000000u},
      {"Contrast", 48, 2, "-2", 0xFFFE},            {"Brightness", 50, 2, "0x101", 0x101},
      {"BrightBias", 52, 2, "-32768", 0x8000},
  };
  std::string form = "RetReDir=/r";
  Bytes expected = Quiet();
  for (const Key& k : keys) {
    form += std::string("&") + k.name + "=" + k.value;
    Put(expected, k.offset, k.stored, k.width);
  }
  // 0..3, 42..43 and 54..55 belong to the daemon.
  const Outcome o = PostToModule("0r", Quiet(), form);
  EXPECT_EQ(Hex(o.record), Hex(expected));
  EXPECT_NE(o.answer.out.find("location.href=\"/r\""), std::string::npos) << o.answer.out;
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
}

TEST(ThermalImagingModule, AgcPresetsIsAnUnsignedDecimalWithoutHexPrefix) {
  DeviceRoot::Get().Reset();
  const std::pair<std::string, uint32_t> cases[] = {
      {"0x10", 0},          {"16", 16},       {"4294967295", 0xFFFFFFFF}, {"99999999999", 0xFFFFFFFF},
      {"-1", 0xFFFFFFFF},   {"12abc", 12},    {"2147483648", 0x80000000},
  };
  for (const auto& [value, stored] : cases) {
    const Outcome o = PostToModule("0R", Quiet(), "AgcPresets=" + value);
    Bytes expected = Quiet();
    Put(expected, 44, stored, 4);
    EXPECT_EQ(Hex(o.record), Hex(expected)) << value;
  }
}

TEST(ThermalImagingModule, AnyResetOrSaveCommandAnswers204) {
  DeviceRoot::Get().Reset();
  struct Case {
    std::string form;
    uint16_t storedReset, storedSave;
    bool returnPage;
  };
  const Case cases[] = {
      {"", 0, 0, true},
      {"", 1, 0, false},
      {"", 0, 1, false},  // the word is 65536
      {"ResetCamera=1", 0, 0, false},
      {"ResetCamera=0", 1, 0, true},
      {"ResetCamera=0&SaveCamera=1", 0, 0, false},
      {"ResetCamera=65536&SaveCamera=0", 5, 5, true},  // both store 0
      {"SaveCamera=0xFFFF", 0, 0, false},
  };
  for (const Case& c : cases) {
    Bytes record = Quiet();
    Put(record, 36, c.storedReset, 2);
    Put(record, 38, c.storedSave, 2);
    const Outcome o = PostToModule("0R", record, c.form);
    EXPECT_EQ(o.answer.out, c.returnPage ? "" : kAnswer204) << c.form << " " << c.storedReset;
    EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
  }
}

}  // namespace
}  // namespace device_test
