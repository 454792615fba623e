// PTZ domes with named presets: 5562-byte record, retry read, preset names
// by preset id, the device title cleared when not posted, privacy keys built
// from mask and side, and the run commands that answer 204.
#include "tests/device/family_frame.h"

namespace device_test {
namespace {

std::vector<std::pair<size_t, uint8_t>> IdleCommands() {
  std::vector<std::pair<size_t, uint8_t>> bytes;
  for (size_t offset : {4608, 4609, 5137, 5276, 5336, 5346, 5347, 5348, 5349, 5350, 5351, 5558})
    bytes.push_back({offset, 0xFF});
  for (size_t offset = 5527; offset < 5543; ++offset) bytes.push_back({offset, 0});  // no title
  return bytes;
}

const FamilyProfile kPtzDomeNamedPresetCamera = {
    .family = "PtzDomeNamedPresetCamera",
    .codes = {"3I", "3i"},
    .recordSize = 5562,
    .readPolicy = ReadFailure::Retry,
    .handler = PtzDomeNamedPresetSettings,
    .writeFailureResult = -2,
    .quietBytes = IdleCommands(),
};
INSTANTIATE_TEST_SUITE_P(PtzDomeNamedPreset, FamilyFrame, ::testing::Values(kPtzDomeNamedPresetCamera),
                         PrintFamily);

Bytes Quiet() { return QuietRecord(kPtzDomeNamedPresetCamera); }

void Put(Bytes& b, size_t offset, int width, uint32_t v) {
  for (int i = 0; i < width; ++i) b[offset + i] = static_cast<uint8_t>(v >> (8 * i));
}
void PutText(Bytes& b, size_t offset, const std::string& text) {
  std::copy(text.begin(), text.end(), b.begin() + offset);
  b[offset + text.size()] = 0;
}

struct Key {
  std::string name;
  size_t offset;
  int width;
};

// The plain keys, the loops spelled out by index.
std::vector<Key> PlainKeys() {
  std::vector<Key> keys = {
      {"PresetSetId", 4610, 2}, {"PresetMode", 4612, 1}, {"PresetAllClear", 4614, 2},
      {"TourSetId", 5136, 1}, {"TourMode", 5138, 1}, {"TourAllClear", 5203, 1},
      {"GroupSetId", 5277, 1}, {"GroupMode", 5278, 1}, {"GroupAllClear", 5287, 1},
  };
  const char* swing[] = {"SwingSetId", "SwingMode", "SwingStart", "SwingEnd",
                         "SwingSpeed", "SwingDwell", "SwingDirection"};
  for (size_t i = 0; i < std::size(swing); ++i) keys.push_back({swing[i], 5337 + i, 1});
  keys.push_back({"SwingAllClear", 5345, 1});
  for (int i = 0; i < 16; ++i) {
    keys.push_back({"TourEnable" + std::to_string(i), 5139u + i, 1});
    keys.push_back({"TourPrsId" + std::to_string(i), 5155u + i, 1});
    keys.push_back({"TourSpeed" + std::to_string(i), 5171u + i, 1});
    keys.push_back({"TourDwell" + std::to_string(i), 5187u + i, 1});
  }
  for (int i = 0; i < 8; ++i) {
    keys.push_back({"GroupTourId" + std::to_string(i), 5279u + i, 1});
    keys.push_back({"Privacy" + std::to_string(i) + "Top", 5424u + 2 * i, 2});
    keys.push_back({"Privacy" + std::to_string(i) + "Left", 5440u + 2 * i, 2});
    keys.push_back({"Privacy" + std::to_string(i) + "Bottom", 5456u + 2 * i, 2});
    keys.push_back({"Privacy" + std::to_string(i) + "Right", 5472u + 2 * i, 2});
  }
  const char* camera[] = {"ZoomSpeed", "DZoomMode", "FocusSpeed", "FocusMode", "FocusNearLimit", "WbMode",
                          "RGain", "BGain", "AeMode", "SlowShutter", "GainLimit", "ExposureComp",
                          "ShutterSpeed", "IrisLevel", "BrightLevel", "GainValue", "WdrMode",
                          "BrightnessLevel", "BrightnessCompensation", "CompensationLevel", "IcrMode",
                          "ApertureGain", "BackLight", "Stabilizer", "IcrOnLevel", "IcrOffLevel",
                          "GammaMode", "ChromaSet", "HrMode", "NrLevel", "DefogSet", "HlcSet", "HlcLevel",
                          "ProPortional", "DFlip", "PowerOn", "ImgFreeze", "MdWindow", "IrAdjust"};
  for (size_t i = 0; i < std::size(camera); ++i) keys.push_back({camera[i], 5488 + i, 1});
  const char* autoRun[] = {"AutoRunMotion", "AutoRunTime", "AutoRunNumber", "ZeroPosition", "LiveZoom",
                           "LiveZoomSize"};
  for (size_t i = 0; i < std::size(autoRun); ++i) keys.push_back({autoRun[i], 5543 + i, 1});
  keys.insert(keys.end(), {{"XHighPosition", 5550, 2}, {"XLowPosition", 5552, 2}, {"YHighPosition", 5554, 2},
                           {"YLowPosition", 5556, 2}, {"CamCtlPage", 5560, 1}});
  return keys;
}

TEST(PtzDomeNamedPresetCamera, EveryKeyLandsAtItsFieldAndUnkeyedBytesStay) {
  DeviceRoot::Get().Reset();
  // Idle commands posted as idle; preset 200 named; a title.
  std::string form = "PresetRunId=65535&TourRunId=255&GroupRunId=-1&SwingRunId=255&HomePosRunId=255"
                     "&HomePosSetId=0x1FF&HomePosClearId=255&ZeroPosRunId=255&ZeroPosSetId=255"
                     "&ZeroPosClearId=255&OsdDisplay=255&PresetName=Gate&DeviceTitle=Lobby";
  Bytes expected = Quiet();
  uint32_t value = 0x1234;
  for (const Key& k : PlainKeys()) {
    const uint32_t v = k.name == "PresetSetId" ? 200 : value;
    form += "&" + k.name + "=" + std::to_string(v);
    Put(expected, k.offset, k.width, v);
    value += 0x0101;
  }
  PutText(expected, 256 + 17 * 200, "Gate");
  PutText(expected, 5527, "Lobby");
  // Index one past each loop has no field.
  form += "&TourEnable16=1&TourDwell16=1&GroupTourId8=1&Privacy8Top=1&Privacy8Right=1";
  const Outcome o = PostToModule("3i", Quiet(), form);
  EXPECT_EQ(Hex(o.record), Hex(expected));
  EXPECT_EQ(o.answer.out, "");
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
}

TEST(PtzDomeNamedPresetCamera, PresetNameGoesToTheSlotOfThePresetIdAfterTheMerge) {
  DeviceRoot::Get().Reset();
  struct Case {
    uint16_t storedId;
    std::string form;
    int slot;  // -1: no copy
    std::string text;
  };
  const std::string sixteen = "ABCDEFGHIJKLMNOP";
  const Case cases[] = {
      {0, "PresetSetId=3&PresetName=Door", 3, "Door"},  // byte 307
      {3, "PresetName=Door&PresetSetId=0", 0, "Door"},
      {7, "PresetName=Door", 7, "Door"},               // the preset last edited
      {255, "PresetName=" + sixteen, 255, sixteen},     // last slot, full width
      {0, "PresetSetId=255&PresetName=" + sixteen + "Q", 255, sixteen},  // bounded to the slot
      {0, "PresetSetId=256&PresetName=Door", -1, ""},
      {300, "PresetName=Door", -1, ""},
      {0, "PresetSetId=65791&PresetName=Door", 255, "Door"},  // stored as a halfword: 255
      {5, "PresetName=", -1, ""},                      // empty: not posted
  };
  for (const Case& c : cases) {
    Bytes record = Quiet();
    Put(record, 4610, 2, c.storedId);
    const Outcome o = PostToModule("3I", record, c.form);
    Bytes expected = record;
    if (c.form.find("PresetSetId=") != std::string::npos) {
      const size_t at = c.form.find("PresetSetId=") + 12;
      Put(expected, 4610, 2, static_cast<uint32_t>(std::stoul(c.form.substr(at, c.form.find('&', at) - at))));
    }
    if (c.slot >= 0) PutText(expected, 256 + 17 * c.slot, c.text);
    EXPECT_EQ(Hex(o.record), Hex(expected)) << c.form;
  }
}

TEST(PtzDomeNamedPresetCamera, DeviceTitleIsBoundedAndClearedWhenNotPosted) {
  DeviceRoot::Get().Reset();
  Bytes titled = Quiet();
  for (size_t i = 0; i < 16; ++i) titled[5527 + i] = 'a' + i;
  struct Case {
    std::string form;
    std::string title;  // as stored; "" with cleared: 16 zero bytes
    bool cleared;
    bool unchanged;
  };
  const Case cases[] = {
      {"OsdDisplay=255", "", true, false},
      {"DeviceTitle=", "", true, false},
      {"DeviceTitle=Gate", "Gate", false, false},
      {"DeviceTitle=" + std::string(15, 'T'), std::string(15, 'T'), false, false},
      {"DeviceTitle=" + std::string(16, 'T'), std::string(15, 'T'), false, false},
      {"DeviceTitle=" + std::string(127, 'T'), std::string(15, 'T'), false, false},
      {"DeviceTitle=" + std::string(128, 'T'), "", false, true},  // too long for the buffer: not posted
  };
  for (const Case& c : cases) {
    const Outcome o = PostToModule("3i", titled, c.form);
    Bytes expected = titled;
    if (c.cleared) std::fill(expected.begin() + 5527, expected.begin() + 5543, 0);
    if (!c.cleared && !c.unchanged) PutText(expected, 5527, c.title);
    EXPECT_EQ(Hex(o.record), Hex(expected)) << c.form;
  }
}

TEST(PtzDomeNamedPresetCamera, AnyPendingRunCommandOrOsdDisplayAnswers204) {
  DeviceRoot::Get().Reset();
  struct Case {
    std::string form;
    size_t storedOffset;  // 0: none
    bool returnPage;
  };
  const Case cases[] = {
      {"", 0, true},
      {"PresetRunId=65535&TourRunId=255", 0, true},
      {"PresetRunId=65534", 0, false},
      {"TourRunId=2", 0, false},
      {"GroupRunId=0", 0, false},
      {"SwingRunId=254", 0, false},
      {"HomePosRunId=1", 0, false},
      {"HomePosSetId=1", 0, false},
      {"HomePosClearId=1", 0, false},
      {"ZeroPosRunId=1", 0, false},
      {"ZeroPosSetId=1", 0, false},
      {"ZeroPosClearId=1", 0, false},
      {"OsdDisplay=1", 0, false},
      {"", 4609, false},
      {"", 5351, false},
      {"SwingRunId=255", 5336, true},
  };
  for (const Case& c : cases) {
    Bytes record = Quiet();
    if (c.storedOffset) record[c.storedOffset] = 0;
    const Outcome o = PostToModule("3I", record, c.form);
    EXPECT_EQ(o.answer.out, c.returnPage ? "" : kAnswer204) << c.form << " " << c.storedOffset;
    EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
  }
}

}  // namespace
}  // namespace device_test
