// Full-HD WDR cameras: 130-byte record, retry read, the KeyValue lock, the
// backlight areas kept inside 1920 by 1080, the stabilizer forced off under
// backlight mode 1 and the derived byte 121.
#include "tests/device/family_frame.h"

namespace device_test {
namespace {

// Unlocked, every area inside the picture (high bytes 0), backlight mode
// 0 and stabilizer 1 with the matching derived byte: a keyless request
// changes nothing.
std::vector<std::pair<size_t, uint8_t>> QuietBytes() {
  std::vector<std::pair<size_t, uint8_t>> bytes = {{0, 0}, {1, 0}, {90, 1}, {121, 1}};
  for (size_t high = 9; high < 40; high += 2) bytes.push_back({high, 0});
  return bytes;
}

const FamilyProfile kFullHdWdrCamera = {
    .family = "FullHdWdrCamera",
    .codes = {"0O", "0I", "05", "1H", "1h"},
    .recordSize = 130,
    .readPolicy = ReadFailure::Retry,
    .handler = FullHdWdrCameraSettings,
    .writeFailureResult = -2,
    .quietBytes = QuietBytes(),
};
INSTANTIATE_TEST_SUITE_P(FullHdWdr, FamilyFrame, ::testing::Values(kFullHdWdrCamera), PrintFamily);

Bytes Quiet() { return QuietRecord(kFullHdWdrCamera); }

void PutHalf(Bytes& b, size_t offset, uint32_t v) {
  b[offset] = static_cast<uint8_t>(v);
  b[offset + 1] = static_cast<uint8_t>(v >> 8);
}

struct Key {
  const char* name;
  size_t offset;
  int width;
};
// Every plain key but "KeyValue", in offset order.
const Key kKeys[] = {
    {"BacklightMode", 1, 1}, {"BlcGain", 2, 1}, {"HsblcModeAgcTh", 3, 1}, {"HsblcAreaSelect", 4, 1},
    {"HsblcMode", 5, 1}, {"HsblcMaskEn", 6, 1}, {"HsblcLevel", 7, 1},
    {"HsblcArea1PosX", 8, 2}, {"HsblcArea2PosX", 10, 2}, {"HsblcArea3PosX", 12, 2}, {"HsblcArea4PosX", 14, 2},
    {"HsblcArea1PosY", 16, 2}, {"HsblcArea2PosY", 18, 2}, {"HsblcArea3PosY", 20, 2}, {"HsblcArea4PosY", 22, 2},
    {"HsblcArea1SizeX", 24, 2}, {"HsblcArea2SizeX", 26, 2}, {"HsblcArea3SizeX", 28, 2},
    {"HsblcArea4SizeX", 30, 2}, {"HsblcArea1SizeY", 32, 2}, {"HsblcArea2SizeY", 34, 2},
    {"HsblcArea3SizeY", 36, 2}, {"HsblcArea4SizeY", 38, 2},
    {"LensMode", 40, 1}, {"DcLensMode", 41, 1}, {"DcIndoorShutMode", 42, 1}, {"DcOutdoorShutMode", 43, 1},
    {"ManualShutMode", 44, 1}, {"AgcMode", 45, 1}, {"Brightness", 46, 1}, {"SensUpMode", 47, 1},
    {"SensUpMax", 48, 1}, {"AgcLevel", 49, 1}, {"WdrGain", 50, 1}, {"LowLightMode", 51, 1},
    {"LowLightTarget", 52, 1}, {"WbMode", 53, 1}, {"ManualBlueGain", 54, 1}, {"ManualRedGain", 55, 1},
    {"IndoorBlueGain", 56, 1}, {"IndoorRedGain", 57, 1}, {"OutdoorBlueGain", 58, 1},
    {"OutdoorRedGain", 59, 1}, {"CustomBlueGain", 60, 1}, {"CustomRedGain", 61, 1}, {"AwcSet", 62, 1},
    {"StaticDpcMode", 63, 1}, {"StaticDpcScan", 64, 1}, {"StaticDpcAgc", 65, 1}, {"StaticDpcTh", 66, 1},
    {"StaticDpcSensUp", 67, 1}, {"LiveDpcMode", 68, 1}, {"LiveDpcTh", 69, 1}, {"LiveDpcAgcTh", 70, 1},
    {"Nr2dMode", 71, 1}, {"Nr3dMode", 72, 1}, {"Nr3dLinearMode", 73, 1}, {"Nr3dControlMode", 74, 1},
    {"Nr3dSmartMode", 75, 1}, {"Nr3dSmartLevel", 76, 1}, {"DefogMode", 77, 1}, {"DefogGradation", 78, 1},
    {"DefogDirection", 79, 1}, {"LumaGain", 80, 2}, {"LumaWdrGain", 82, 2}, {"LumaOffset", 84, 2},
    {"LumaWdrOffset", 86, 2}, {"SharpnessMode", 88, 1}, {"SharpnessLevel", 89, 1}, {"StabilizerMode", 90, 1},
    {"CvbsOutType", 91, 1}, {"DayNightMode", 92, 1}, {"DayNightFilterMode", 93, 1},
    {"AutoDetectMode", 97, 1}, {"AutoDayNightDelay", 98, 1}, {"AutoAgcDnStartLevel", 99, 1},
    {"AutoAgcDnEndLevel", 100, 1}, {"AutoWdrAgcDnStartLevel", 101, 1}, {"AutoWdrAgcDnEndLevel", 102, 1},
    {"AutoCdsAgcDnStartLevel", 103, 1}, {"AutoCdsAgcDnEndLevel", 104, 1}, {"BwBurst", 108, 1},
    {"BwIrSmart", 109, 1}, {"BwIrLed", 110, 1}, {"BwIrSmartPosX", 112, 1}, {"BwIrSmartPosY", 113, 1},
    {"BwIrSmartSizeX", 114, 1}, {"BwIrSmartSizeY", 115, 1}, {"BwIrSmartLevel", 116, 1},
    {"BwIrPwmLevel", 117, 1}, {"ExtDayNightDelay", 118, 1}, {"MirrorMode", 119, 1}, {"CamCtlPage", 120, 1},
    {"DayNightAutoFocus", 122, 1}, {"IrisScanSet", 123, 1},
};

TEST(FullHdWdrCamera, EveryKeyPostedLeavesOnlyTheUnkeyedBytes) {
  DeviceRoot::Get().Reset();
  // Unlocked in the same request; values small enough that no area is cut.
  std::string form = "KeyValue=0x100";
  Bytes expected = Quiet();
  expected[0] = 0;
  for (const Key& k : kKeys) {
    const uint32_t v = k.width == 2 ? 0x10000 + 0x100 * (k.offset / 40) + k.offset : 0x100 + k.offset;
    form += std::string("&") + k.name + "=" + std::to_string(v);
    if (k.width == 2) PutHalf(expected, k.offset, v);
    else expected[k.offset] = static_cast<uint8_t>(v);
  }
  const Outcome o = PostToModule("05", Quiet(), form);
  // BacklightMode posted as 0x101 stores 1: the stabilizer is forced off.
  ASSERT_EQ(expected[1], 1);
  expected[90] = 0;
  expected[121] = 0;
  EXPECT_EQ(Hex(o.record), Hex(expected));
  EXPECT_EQ(o.answer.out, "");
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
}

TEST(FullHdWdrCamera, KeyValueLocksEverythingElse) {
  DeviceRoot::Get().Reset();
  struct Case {
    const char* keyValue;  // nullptr: not posted
    uint8_t stored;
    uint8_t expectedKeyValue;
    bool applied;
  };
  const Case cases[] = {
      {nullptr, 1, 1, false}, {nullptr, 255, 255, false}, {"0", 1, 0, true},
      {"256", 7, 0, true},    {"2", 0, 2, false},         {nullptr, 0, 0, true},
  };
  // An area past the edge and an inconsistent derived byte: both left
  // alone while locked, put right once unlocked.
  Bytes stored = Quiet();
  PutHalf(stored, 14, 1900);  // area 4 X position; size 4 X stays small
  PutHalf(stored, 30, 100);
  stored[121] = 9;
  for (const Case& c : cases) {
    Bytes record = stored;
    record[0] = c.stored;
    std::string form = "WbMode=77";
    if (c.keyValue) form += std::string("&KeyValue=") + c.keyValue;
    const Outcome o = PostToModule("1h", record, form);
    Bytes expected = record;
    expected[0] = c.expectedKeyValue;
    if (c.applied) {
      expected[53] = 77;
      PutHalf(expected, 30, 20);
      expected[121] = 1;
    }
    EXPECT_EQ(Hex(o.record), Hex(expected)) << form << " stored " << int(c.stored);
    EXPECT_EQ(o.answer.out, c.expectedKeyValue == 0 ? "" : kAnswer204) << form;
    EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
  }
}

TEST(FullHdWdrCamera, BacklightAreasEndAtThePictureEdge) {
  DeviceRoot::Get().Reset();
  struct Case {
    std::string form;
    size_t position, size;  // offsets of the area's position and size
    uint32_t storedPosition, storedSize, expectedSize;
  };
  const Case cases[] = {
      {"HsblcArea2PosX=1800", 10, 26, 0, 300, 120},
      {"HsblcArea1PosX=1620&HsblcArea1SizeX=300", 8, 24, 0, 0, 300},   // ends at 1920
      {"HsblcArea1PosX=1621&HsblcArea1SizeX=300", 8, 24, 0, 0, 299},
      {"HsblcArea4SizeY=1", 22, 38, 1079, 0, 1},                       // ends at 1080
      {"HsblcArea4SizeY=2", 22, 38, 1079, 0, 1},
      {"HsblcArea1PosY=1080", 16, 32, 0, 0, 0},                        // at the edge, size 0
      {"HsblcArea1PosY=1100", 16, 32, 0, 0, 65516},                    // 1080 - 1100 wrapped
      {"", 12, 28, 65535, 65535, 1921},                                // stored values are cut too
      {"HsblcArea3SizeX=65535", 12, 28, 0, 0, 1920},                   // no 16-bit overflow of the sum
  };
  for (const Case& c : cases) {
    Bytes record = Quiet();
    PutHalf(record, c.position, c.storedPosition);
    PutHalf(record, c.size, c.storedSize);
    const Outcome o = PostToModule("0O", record, c.form);
    Bytes expected = record;
    const size_t at = c.form.find("Pos");
    if (at != std::string::npos) {
      PutHalf(expected, c.position, static_cast<uint32_t>(std::stoul(c.form.substr(c.form.find('=') + 1))));
    }
    PutHalf(expected, c.size, c.expectedSize);
    EXPECT_EQ(Hex(o.record), Hex(expected)) << c.form;
  }
}

TEST(FullHdWdrCamera, StabilizerAndTheDerivedByte) {
  DeviceRoot::Get().Reset();
  struct Case {
    std::string form;
    uint8_t storedBacklight, storedStabilizer;
    uint8_t stabilizer, derived;
  };
  const Case cases[] = {
      {"BacklightMode=1&StabilizerMode=1", 0, 0, 0, 0},
      {"BacklightMode=0&StabilizerMode=1", 1, 0, 1, 1},
      {"StabilizerMode=3", 0, 0, 3, 2},
      {"StabilizerMode=257", 2, 0, 1, 1},  // only mode 1 forces
      {"", 1, 1, 0, 0},                    // stored values count
      {"", 0, 1, 1, 1},
      {"", 0, 0, 0, 2},
      {"CamCtlPage=4", 3, 5, 5, 2},
  };
  for (const Case& c : cases) {
    Bytes record = Quiet();
    record[1] = c.storedBacklight;
    record[90] = c.storedStabilizer;
    record[121] = 0xEE;
    const Outcome o = PostToModule("1H", record, c.form);
    ASSERT_EQ(o.record.size(), 130u);
    EXPECT_EQ(o.record[90], c.stabilizer) << c.form;
    EXPECT_EQ(o.record[121], c.derived) << c.form;
    EXPECT_EQ(o.answer.out, "");
  }
}

}  // namespace
}  // namespace device_test
