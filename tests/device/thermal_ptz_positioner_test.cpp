// Thermal PTZ positioners: 28682-byte record, retry read, 512-byte form
// values, five name tables addressed by ids, and the command answer.
#include "tests/device/family_frame.h"

namespace device_test {
namespace {

// Commands idle at 255, and every name table's id at "none", so that a
// request without keys neither answers 204 nor clears a name.
std::vector<std::pair<size_t, uint8_t>> IdleRecord() {
  std::vector<std::pair<size_t, uint8_t>> bytes;
  for (size_t offset : {7, 25956, 26767, 26768, 26774, 26793, 26794, 26797, 27516, 28648, 28664, 28670, 28671,
                        28674, 25888, 25889, 25957, 26766, 27464, 28550})
    bytes.push_back({offset, 0xFF});
  return bytes;
}

const FamilyProfile kThermalPtzPositioner = {
    .family = "ThermalPtzPositioner",
    .codes = {"3T", "3t"},
    .recordSize = 28682,
    .readPolicy = ReadFailure::Retry,
    .handler = ThermalPtzPositionerSettings,
    .writeFailureResult = -2,
    .quietBytes = IdleRecord(),
};
INSTANTIATE_TEST_SUITE_P(ThermalPtzPositioner, FamilyFrame, ::testing::Values(kThermalPtzPositioner),
                         PrintFamily);

Bytes Quiet() { return QuietRecord(kThermalPtzPositioner); }

void Put(Bytes& b, size_t offset, int width, uint32_t v) {
  for (int i = 0; i < width; ++i) b[offset + i] = static_cast<uint8_t>(v >> (8 * i));
}
Bytes Nul(const std::string& text) {
  Bytes b(text.begin(), text.end());
  b.push_back(0);
  return b;
}

struct Key {
  std::string name;
  size_t offset;
  int width;
};

// Every numeric key but the name tables' ids and the commands.
std::vector<Key> PlainKeys() {
  std::vector<Key> keys;
  auto bytes = [&](std::initializer_list<const char*> names, size_t first) {
    for (const char* n : names) keys.push_back({n, first++, 1});
  };
  bytes({"AgcMode", "ColorMode", "Contrast", "Brightness", "AgcCenterPos", "AgcLevel", "LevelMode", "MideLevel",
         "SharpnessLevel", "MirrorMode", "FlipMode", "ImageFreezeMode", "InverseMode"},
        28651);
  keys.push_back({"CalibrationMode", 28665, 1});
  keys.push_back({"CalibrationInterval", 28666, 2});
  bytes({"WiperModeCount", "WiperDwellTime"}, 28668);
  bytes({"LrfMode", "LrfCheckTimer"}, 28672);
  bytes({"TempOsdDisplayMode", "CoordinateDisplayMode", "CameraIdDisplayMode", "PtzIdDisplayMode",
         "OsdConvertSize", "CamCtlPage"},
        28675);
  bytes({"FlipReverseMode", "RecoverOriginMode", "MotorTorque", "EndlessMode", "HomePosMode", "HomePosType",
         "HomePosSetId"},
        0);
  bytes({"AlarmSetId", "AlarmSetSelectMode"}, 22);
  keys.push_back({"AlarmSetPreset", 24, 2});
  bytes({"AlarmSetPresetDwell", "AlarmSetEnable", "RelaySetEnable", "RelaySet", "AlarmClearId"}, 26);
  bytes({"PresetEnable", "PresetDwellTime", "PresetDetectEnable", "PresetTempOsdEnable", "PresetTempCenterEnable"},
        25890);
  for (int i = 0; i < 7; ++i) {
    keys.push_back({"PresetTopX" + std::to_string(i), 25896u + 2 * i, 2});
    keys.push_back({"PresetTopY" + std::to_string(i), 25910u + 2 * i, 2});
    keys.push_back({"PresetBotX" + std::to_string(i), 25924u + 2 * i, 2});
    keys.push_back({"PresetBotY" + std::to_string(i), 25938u + 2 * i, 2});
  }
  bytes({"PresetTempEmissivityMode", "PresetTempEmissivity"}, 25952);
  keys.push_back({"PresetAllClear", 25954, 2});
  bytes({"ScanSetEnable", "ScanSetDirection", "ScanSetSpeed", "ScanSetDwellTime", "ScanSetRunMode"}, 26769);
  keys.push_back({"ScanAllClear", 26775, 1});
  bytes({"PatternSetId"}, 26792);
  bytes({"PatternSetEnble", "PatternSetRunMode"}, 26795);
  keys.push_back({"PatternAllClear", 26798, 1});
  keys.push_back({"TourSetEnble", 27465, 1});
  keys.push_back({"TourSetPrsEnble", 27466, 2});
  keys.push_back({"TourAllClear", 27517, 1});
  keys.push_back({"GroupSetEnble", 28551, 1});
  keys.push_back({"GroupAllClear", 28649, 1});
  for (int i = 0; i < 16; ++i) {
    const std::string n = std::to_string(i);
    keys.insert(keys.end(), {{"TourSetPrsId" + n, 27468u + i, 1}, {"TourSetSpeed" + n, 27484u + i, 1},
                             {"TourSetDwell" + n, 27500u + i, 1}, {"GroupSetFuncType" + n, 28552u + i, 1},
                             {"GroupSetFuncId" + n, 28568u + 2 * i, 2}, {"GroupSetSpeed" + n, 28600u + i, 1},
                             {"GroupSetDwell" + n, 28616u + i, 1}, {"GroupSetRepeatCount" + n, 28632u + i, 1}});
  }
  return keys;
}

TEST(ThermalPtzPositioner, EveryKeyLandsAtItsFieldAndUnkeyedBytesStay) {
  DeviceRoot::Get().Reset();
  std::string form =
      "CalibrationExecute=255&WiperRun=255&WiperStop=0x1FF&WasherRun=-1&ZeroPosRunId=255&PresetRunId=255"
      "&ScanStartId=255&ScanEndId=255&ScanRunId=255&PatternStartId=255&PatternEndId=255&PatternRunId=255"
      "&TourRunId=255&GroupRunId=255"
      "&PresetSetId=2&PresetName=Gate&PresetRunSetId=1&PresetRunStr=goto%201&ScanSetId=3&ScanSetName=Fence"
      "&TourSetId=0&TourSetName=Round&GroupSetId=31&GroupSetName=Night";
  Bytes expected = Quiet();
  Put(expected, 25888, 2, 2);
  expected[25957] = 1;
  expected[26766] = 3;
  expected[27464] = 0;
  expected[28550] = 31;
  const std::pair<size_t, std::string> names[] = {
      {544 + 32 * 2, "Gate"}, {25958 + 128, "goto 1"}, {26502 + 32 * 3, "Fence"},
      {26808, "Round"},       {27526 + 32 * 31, "Night"}};
  for (const auto& [offset, text] : names) {
    const Bytes b = Nul(text);
    std::copy(b.begin(), b.end(), expected.begin() + offset);
  }
  uint32_t value = 0x0203;
  for (const Key& k : PlainKeys()) {
    form += "&" + k.name + "=" + std::to_string(value);
    Put(expected, k.offset, k.width, value);
    value += 0x0101;
  }
  // One past each loop has no field.
  form += "&PresetTopX7=1&PresetBotY7=1&TourSetPrsId16=1&TourSetDwell16=1&GroupSetFuncId16=1"
          "&GroupSetRepeatCount16=1";
  const Outcome o = PostToModule("3t", Quiet(), form);
  EXPECT_EQ(Hex(o.record), Hex(expected));
  EXPECT_EQ(o.answer.out, "");
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
}

TEST(ThermalPtzPositioner, NameSlotsFollowTheirIdsUpToTheRecordsEnd) {
  DeviceRoot::Get().Reset();
  const std::string l511(511, 'R');
  struct Case {
    std::string form;
    std::vector<std::pair<size_t, Bytes>> changes;  // applied to the quiet record in order
  };
  const Case cases[] = {
      // Preset names: u16 id, 32-byte slots, 16 cleared.
      {"PresetSetId=0&PresetName=Gate", {{25888, {0, 0}}, {544, Nul("Gate")}}},
      {"PresetSetId=0", {{25888, {0, 0}}, {544, Bytes(16, 0)}}},
      {"PresetSetId=65535&PresetName=Gate", {}},
      {"PresetSetId=1&PresetName=" + std::string(40, 'N'), {{25888, {1, 0}}, {576, Nul(std::string(31, 'N'))}}},
      {"PresetSetId=878", {{25888, {0x6E, 3}}, {28640, Bytes(16, 0)}}},
      {"PresetSetId=879", {{25888, {0x6F, 3}}}},  // 16 bytes would pass the end
      {"PresetSetId=879&PresetName=ABCDEFGHI", {{25888, {0x6F, 3}}, {28672, Nul("ABCDEFGHI")}}},
      {"PresetSetId=879&PresetName=ABCDEFGHIJ", {{25888, {0x6F, 3}}}},
      {"PresetSetId=1&PresetName=" + std::string(512, 'N'), {{25888, {1, 0}}}},  // too long: kept
      // Preset run strings: 128-byte slots cleared whole; from id 4 on they
      // run into the scan names.
      {"PresetRunSetId=0&PresetRunStr=" + l511, {{25957, {0}}, {25958, Nul(std::string(127, 'R'))}}},
      {"PresetRunSetId=4", {{25957, {4}}, {26470, Bytes(128, 0)}}},
      // Slot 20 runs over the group id too: group 0's name is then cleared.
      {"PresetRunSetId=20", {{25957, {20}}, {28518, Bytes(128, 0)}, {27526, Bytes(16, 0)}}},
      {"PresetRunSetId=21", {{25957, {21}}}},
      {"PresetRunSetId=21&PresetRunStr=" + std::string(35, 'S'), {{25957, {21}}, {28646, Nul(std::string(35, 'S'))}}},
      {"PresetRunSetId=21&PresetRunStr=" + std::string(36, 'S'), {{25957, {21}}}},
      {"PresetRunSetId=300", {{25957, {44}}}},  // slot 44 lies past the end
      // Scan names.
      {"ScanSetId=0&ScanSetName=Fence", {{26766, {0}}, {26502, Nul("Fence")}}},
      {"ScanSetId=254", {{26766, {254}}}},
      // Tour names: a name reaching into the tour steps is overwritten by them.
      {"TourSetId=2", {{27464, {2}}, {26872, Bytes(16, 0)}}},
      {"TourSetId=21&TourSetName=ABCDEFGHIJKLMNOP&TourSetPrsId12=7",
       {{27464, {21}}, {27480, Nul("ABCDEFGHIJKLMNOP")}, {27480, {7}}}},
      // Group names: 32 slots, then into the group fields.
      {"GroupSetId=31&GroupSetName=Night", {{28550, {31}}, {28518, Nul("Night")}}},
      {"GroupSetId=35", {{28550, {35}}, {28646, Bytes(16, 0)}}},
      {"GroupSetId=36", {{28550, {36}}}},
      {"GroupSetId=36&GroupSetName=abc", {{28550, {36}}, {28678, Nul("abc")}}},
      {"GroupSetId=36&GroupSetName=abcd", {{28550, {36}}}},
      {"GroupSetId=0&GroupSetName=", {{28550, {0}}, {27526, Bytes(16, 0)}}},
  };
  for (const Case& c : cases) {
    Bytes expected = Quiet();
    for (const auto& [offset, bytes] : c.changes) std::copy(bytes.begin(), bytes.end(), expected.begin() + offset);
    const Outcome o = PostToModule("3T", Quiet(), c.form);
    EXPECT_EQ(Hex(o.record), Hex(expected)) << c.form.substr(0, 80);
  }
}

TEST(ThermalPtzPositioner, AnyPendingCommandAnswers204) {
  DeviceRoot::Get().Reset();
  struct Case {
    std::string form;
    bool returnPage;
  };
  const Case cases[] = {
      {"", true},
      {"PresetRunId=3", false},
      {"ZeroPosRunId=0", false},
      {"ScanStartId=1", false},
      {"ScanEndId=1", false},
      {"ScanRunId=1", false},
      {"PatternStartId=1", false},
      {"PatternEndId=1", false},
      {"PatternRunId=1", false},
      {"TourRunId=1", false},
      {"GroupRunId=1", false},
      {"CalibrationExecute=1", false},
      {"WiperRun=1", false},
      {"WiperStop=254", false},
      {"WasherRun=0", false},
      {"WasherRun=255&WiperRun=255&PresetRunId=255", true},
      {"AgcMode=1&PatternSetId=1", true},
  };
  for (const Case& c : cases) {
    const Outcome o = PostToModule("3t", Quiet(), c.form);
    EXPECT_EQ(o.answer.out, c.returnPage ? "" : kAnswer204) << c.form;
    EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
  }
}

}  // namespace
}  // namespace device_test
