// Thermal cameras with an emissivity table: 182-byte record, continue read,
// the emissivity slot chosen by the mode byte, and the answer that depends
// on the module.
#include "tests/device/family_frame.h"

namespace device_test {
namespace {

const FamilyProfile kEmissivityThermalCamera = {
    .family = "EmissivityThermalCamera",
    .codes = {"10", "12", "1Z", "1z"},
    .recordSize = 182,
    .readPolicy = ReadFailure::Continue,
    .handler = EmissivityThermalCameraSettings,
    .writeFailureResult = -2,
    // DZoomTeleStart, DZoomWideStart, DZoomStop, CalibrationExecute, OsdMenu
    .quietBytes = {{5, 0xFF}, {6, 0xFF}, {7, 0xFF}, {28, 0xFF}, {163, 0xFF}},
};
INSTANTIATE_TEST_SUITE_P(EmissivityThermal, FamilyFrame, ::testing::Values(kEmissivityThermalCamera),
                         PrintFamily);

Bytes Quiet() { return QuietRecord(kEmissivityThermalCamera); }

void Put(Bytes& b, size_t offset, int width, uint32_t v) {
  for (int i = 0; i < width; ++i) b[offset + i] = static_cast<uint8_t>(v >> (8 * i));
}

struct Key {
  const char* name;
  size_t offset;
  int width;
};

// Every plain key; the command keys are posted as 255 so the answer stays
// the return page on every module.
const Key kPlainKeys[] = {
    {"Version", 0, 1}, {"VideoMode", 3, 1}, {"DZoomEnable", 4, 1}, {"DZoomDirect", 8, 1},
    {"AgcMode", 9, 1}, {"Contrast", 10, 1}, {"Brightness", 11, 1}, {"AgcCenterPos", 12, 1},
    {"AgcLevel", 13, 1}, {"AgcRoiSelect", 14, 1}, {"AgcRoi", 15, 1}, {"AgcRoiPosLeftTopX", 16, 2},
    {"AgcRoiPosLeftTopY", 18, 2}, {"AgcRoiPosRightBottX", 20, 2}, {"AgcRoiPosRightBottY", 22, 2},
    {"CalibrationMode", 24, 1}, {"CalibrationInterval", 26, 2}, {"LevelMode", 29, 1}, {"MideLevel", 30, 1},
    {"SharpnessLevel", 31, 1}, {"ColorMode", 32, 1}, {"MirrorMode", 33, 1}, {"FlipMode", 34, 1},
    {"FreezMode", 35, 1}, {"InverseMode", 36, 1}, {"OsdEnable", 37, 1}, {"OsdMode", 38, 1},
    {"TempMode", 39, 1}, {"AlarmMode", 40, 1}, {"AlarmSelect", 41, 1}, {"AlarmHTemp", 42, 2},
    {"AlarmLTemp", 44, 2}, {"DetectMode", 46, 1}, {"CenterSetEnable", 47, 1}, {"TempOsd", 161, 1},
    {"BaudRate", 162, 1}, {"FocusMode", 164, 1}, {"AutoFocusMode", 165, 1}, {"ManualFocusDirect", 166, 2},
    {"BlcMode", 168, 1}, {"WhiteBalanceMode", 169, 1}, {"Defog", 170, 1}, {"DssMode", 171, 1},
    {"ShutterSpeed", 172, 1}, {"Flicker", 173, 1}, {"Aperture", 174, 1}, {"DigitalZoom", 175, 1},
    {"DayNightMode", 176, 1}, {"HighResolutionMode", 177, 1}, {"ImageStabilizer", 178, 1},
    {"NoiseRedution", 179, 1}, {"CamCtlPage", 180, 1},
};

TEST(EmissivityThermalCamera, EveryKeyLandsAtItsFieldAndUnkeyedBytesStay) {
  DeviceRoot::Get().Reset();
  std::string form = "DZoomTeleStart=255&DZoomWideStart=0x1FF&DZoomStop=-1&CalibrationExecute=255&OsdMenu=255";
  Bytes expected = Quiet();
  uint32_t value = 0x10203;
  for (const Key& k : kPlainKeys) {
    form += std::string("&") + k.name + "=" + std::to_string(value);
    Put(expected, k.offset, k.width, value);
    value += 0x10101;
  }
  // Boxes 0..10 and one past the end; 11 has no slot.
  const char* edges[] = {"TempPosTop", "TempPosLeft", "TempPosBottom", "TempPosRight"};
  for (int e = 0; e < 4; ++e) {
    for (int box = 0; box <= 11; ++box) {
      const uint32_t v = 0x7000 + e * 0x100 + box;
      form += std::string("&") + edges[e] + std::to_string(box) + "=" + std::to_string(v);
      if (box <= 10) Put(expected, 60 + 22 * e + 2 * box, 2, v);
    }
  }
  form += "&EmissivityMode=0x10B&EmissivityData=-2";  // mode 11: the last slot, byte 160
  expected[148] = 11;
  expected[160] = 0xFE;
  const Outcome o = PostToModule("12", Quiet(), form);
  EXPECT_EQ(Hex(o.record), Hex(expected));
  EXPECT_EQ(o.answer.out, "");
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
}

TEST(EmissivityThermalCamera, EmissivityDataGoesToTheSlotOfTheModeAfterTheMerge) {
  DeviceRoot::Get().Reset();
  struct Case {
    uint8_t storedMode;
    std::string form;
    uint8_t modeAfter;
    int dataOffset;  // -1: not stored
  };
  const Case cases[] = {
      {9, "EmissivityData=95", 9, 158},                       // the stored mode
      {9, "EmissivityMode=3&EmissivityData=95", 3, 152},      // the mode of the same request
      {5, "EmissivityData=95&EmissivityMode=0", 0, 149},      // posted order does not matter
      {11, "EmissivityData=95", 11, 160},
      {12, "EmissivityData=95", 12, -1},                      // no slot: nothing stored
      {0, "EmissivityMode=12&EmissivityData=95", 12, -1},
      {255, "EmissivityData=95", 255, -1},
      {4, "EmissivityMode=7", 7, -1},
  };
  for (const Case& c : cases) {
    Bytes record = Quiet();
    record[148] = c.storedMode;
    Bytes expected = record;
    expected[148] = c.modeAfter;
    if (c.dataOffset >= 0) expected[c.dataOffset] = 95;
    const Outcome o = PostToModule("1z", record, c.form);
    EXPECT_EQ(Hex(o.record), Hex(expected)) << c.form << " stored " << int(c.storedMode);
  }
}

TEST(EmissivityThermalCamera, PendingCommandsAnswer204OnlyOnModules10And12) {
  DeviceRoot::Get().Reset();
  struct Case {
    std::string form;
    size_t storedOffset;  // 0: none
    uint8_t stored;
    bool idle;
  };
  const Case cases[] = {
      {"", 0, 0, true},
      {"DZoomTeleStart=1", 0, 0, false},
      {"DZoomWideStart=254", 0, 0, false},
      {"DZoomStop=0", 0, 0, false},
      {"CalibrationExecute=1", 0, 0, false},
      {"OsdMenu=1", 0, 0, false},
      {"", 7, 0xFE, false},
      {"", 28, 0, false},
      {"OsdMenu=255", 163, 1, true},
      {"DZoomEnable=1&Version=0", 0, 0, true},  // not commands
  };
  for (const std::string code : {"10", "12", "1Z", "1z"}) {
    const bool commandModule = code == "10" || code == "12";
    for (const Case& c : cases) {
      Bytes record = Quiet();
      if (c.storedOffset) record[c.storedOffset] = c.stored;
      const Outcome o = PostToModule(code, record, c.form);
      const bool returnPage = c.idle || !commandModule;
      EXPECT_EQ(o.answer.out, returnPage ? "" : kAnswer204) << code << " " << c.form;
      EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10}) << code;
    }
  }
}

}  // namespace
}  // namespace device_test
