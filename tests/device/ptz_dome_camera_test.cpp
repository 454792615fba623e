// PTZ dome cameras: 508-byte record, retry read, five edit slots behind
// their set ids, and the answer decided by the view, start, end and run ids.
#include "tests/device/family_frame.h"

namespace device_test {
namespace {

// View/start/end/run ids that name no object.
struct ObjectId {
  const char* key;
  size_t offset;
  uint8_t limit;
};
const ObjectId kObjectIds[] = {
    {"PrivacyViewId", 44, 8},   {"ScanViewId", 148, 16},    {"ScanStartId", 149, 16},
    {"ScanEndId", 150, 16},     {"ScanRunId", 151, 16},     {"PatternViewId", 166, 8},
    {"PatternStartId", 167, 8}, {"PatternEndId", 168, 8},   {"PatternRunId", 169, 8},
    {"PresetViewId", 204, 32},  {"TourViewId", 471, 8},
};
constexpr size_t kTourRunId = 472;

std::vector<std::pair<size_t, uint8_t>> QuietBytes() {
  std::vector<std::pair<size_t, uint8_t>> bytes = {{kTourRunId, 8}};
  for (const ObjectId& id : kObjectIds) bytes.push_back({id.offset, 255});
  return bytes;
}

const FamilyProfile kPtzDomeCamera = {
    .family = "PtzDomeCamera",
    .codes = {"0L", "0f", "1L"},
    .recordSize = 508,
    .readPolicy = ReadFailure::Retry,
    .handler = PtzDomeCameraSettings,
    .writeFailureResult = -2,
    .quietBytes = QuietBytes(),
};
INSTANTIATE_TEST_SUITE_P(PtzDome, FamilyFrame, ::testing::Values(kPtzDomeCamera), PrintFamily);

Bytes Quiet() { return QuietRecord(kPtzDomeCamera); }

struct Key {
  std::string name;
  size_t offset;
  int width;
};

// Every key but the set ids, in offset order.
std::vector<Key> AllKeys() {
  std::vector<Key> keys;
  const char* image[] = {"VideoOutMode", "CameraViewMode", "FocusMode", "FocusSensitivity", "FocusLimit",
                         "WhiteBalanceMode", "WhiteBalanceRGain", "WhiteBalanceBGain", "ExposureMode",
                         "ExposureSlowShutter", "ExposureIris", "ExposureGain", "ExposureBrightness",
                         "ExposureShutter", "ExposureDayNightMode", "ExposureBrightOffset",
                         "ExposureBackLight", "ExposureWdrMode", "ExposureWdrValue", "Sharpness",
                         "MaxDigitalZoom", "ViewAngleFlip", "ViewAngleTiltLimit", "AutoCalibration",
                         "InstallationEnv", "PresetFreeze", "PtzSpeed"};
  for (size_t i = 0; i < std::size(image); ++i) keys.push_back({image[i], i, 1});
  keys.push_back({"PrivacyViewId", 44, 1});
  keys.push_back({"PrivacyMode", 46, 1});
  keys.push_back({"PrivacyTrigger", 47, 1});
  const char* corners[] = {"PrivacyX0", "PrivacyY0", "PrivacyX1", "PrivacyY1", "PrivacyX2",
                           "PrivacyY2", "PrivacyX3", "PrivacyY3", "PrivacyW",  "PrivacyH"};
  for (size_t i = 0; i < std::size(corners); ++i) keys.push_back({corners[i], 48 + 2 * i, 2});
  const char* scan[] = {"ScanViewId", "ScanStartId", "ScanEndId", "ScanRunId", nullptr, "ScanSetMode",
                        "ScanSetSpeed", "ScanSetDir", "ScanSetSwap", "ScanSetDwell"};
  for (size_t i = 0; i < std::size(scan); ++i) {
    if (scan[i]) keys.push_back({scan[i], 148 + i, 1});
  }
  const char* pattern[] = {"PatternViewId", "PatternStartId", "PatternEndId", "PatternRunId", nullptr,
                           "PatternSetMode"};
  for (size_t i = 0; i < std::size(pattern); ++i) {
    if (pattern[i]) keys.push_back({pattern[i], 166 + i, 1});
  }
  keys.push_back({"PresetViewId", 204, 1});
  keys.push_back({"PresetSetMode", 206, 1});
  keys.push_back({"TourViewId", 471, 1});
  keys.push_back({"TourRunId", 472, 1});
  keys.push_back({"TourSetMode", 474, 1});
  const char* steps[] = {"TourSetFncType", "TourSetFncId", "TourSetSpeed", "TourSetDwell"};
  for (size_t a = 0; a < std::size(steps); ++a) {
    for (size_t i = 0; i < 8; ++i) keys.push_back({steps[a] + std::to_string(i), 475 + 8 * a + i, 1});
  }
  return keys;
}

void PutHalf(Bytes& b, size_t offset, uint32_t v) {
  b[offset] = static_cast<uint8_t>(v);
  b[offset + 1] = static_cast<uint8_t>(v >> 8);
}

TEST(PtzDomeCamera, EveryKeyWithEverySlotOpenLeavesOnlyTheUnkeyedBytes) {
  DeviceRoot::Get().Reset();
  // Each set id one below its limit, posted above 255 to show the low byte.
  std::string form = "PrivacySetId=263&ScanSetId=271&PatternSetId=263&PresetSetId=287&TourSetId=263";
  Bytes expected = Quiet();
  expected[45] = 7, expected[152] = 15, expected[170] = 7, expected[205] = 31, expected[473] = 7;
  for (const Key& k : AllKeys()) {
    const uint32_t v = k.width == 2 ? 0x10000 + 0x0101 * static_cast<uint32_t>(k.offset)
                                    : 0x100 + static_cast<uint32_t>(k.offset % 200) + 40;
    form += "&" + k.name + "=" + std::to_string(v);
    if (k.width == 2) PutHalf(expected, k.offset, v);
    else expected[k.offset] = static_cast<uint8_t>(v);
  }
  const Outcome o = PostToModule("0f", Quiet(), form);
  // Every id is 40 or more and TourRunId is 72 + 40: the return page.
  EXPECT_EQ(Hex(o.record), Hex(expected));
  EXPECT_EQ(o.answer.out, "");
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
}

TEST(PtzDomeCamera, EditSlotsOnlyWhileTheSetIdIsInRange) {
  DeviceRoot::Get().Reset();
  struct Slot {
    const char* setIdKey;
    size_t setId;
    int limit;
    std::string slotKey;
    size_t slotOffset;
  };
  const Slot slots[] = {
      {"PrivacySetId", 45, 8, "PrivacyH", 66},       {"PrivacySetId", 45, 8, "PrivacyMode", 46},
      {"ScanSetId", 152, 16, "ScanSetDwell", 157},   {"PatternSetId", 170, 8, "PatternSetMode", 171},
      {"PresetSetId", 205, 32, "PresetSetMode", 206}, {"TourSetId", 473, 8, "TourSetSpeed3", 494},
      {"TourSetId", 473, 8, "TourSetFncType0", 475}, {"TourSetId", 473, 8, "TourSetDwell7", 506},
  };
  struct Gate {
    int posted;  // -1: not posted
    int stored;
    bool open;
  };
  for (const Slot& s : slots) {
    const Gate gates[] = {
        {s.limit - 1, 255, true}, {s.limit, 0, false},       {-1, s.limit - 1, true},
        {-1, s.limit, false},     {-1, 200, false},          {256 + s.limit - 1, 255, true},
        {256 + s.limit, 0, false}, {0, 255, true},
    };
    for (const Gate& g : gates) {
      Bytes record = Quiet();
      record[s.setId] = static_cast<uint8_t>(g.stored);
      std::string form = s.slotKey + "=5";
      if (g.posted >= 0) form += std::string("&") + s.setIdKey + "=" + std::to_string(g.posted);
      const Outcome o = PostToModule("1L", record, form);
      Bytes expected = record;
      if (g.posted >= 0) expected[s.setId] = static_cast<uint8_t>(g.posted);
      if (g.open) {
        expected[s.slotOffset] = 5;
        if (s.slotKey == "PrivacyH") expected[s.slotOffset + 1] = 0;
      }
      EXPECT_EQ(Hex(o.record), Hex(expected)) << form << " stored " << g.stored;
    }
  }
  // One past the last tour step and a halfword's low 16 bits.
  Bytes record = Quiet();
  record[473] = 0;
  Outcome o = PostToModule("1L", record, "TourSetDwell8=5&TourSetFncType-1=5&PrivacySetId=0&PrivacyX0=74565");
  Bytes expected = record;
  expected[45] = 0;
  PutHalf(expected, 48, 9029);
  EXPECT_EQ(Hex(o.record), Hex(expected));
}

TEST(PtzDomeCamera, AnyIdNamingAnObjectAnswers204) {
  DeviceRoot::Get().Reset();
  EXPECT_EQ(PostToModule("0L", Quiet(), "").answer.out, "");
  EXPECT_EQ(PostToModule("0L", Quiet(), "TourRunId=7").answer.out, kAnswer204);
  EXPECT_EQ(PostToModule("0L", Quiet(), "TourRunId=255").answer.out, "");
  for (const ObjectId& id : kObjectIds) {
    const std::string key = std::string(id.key) + "=";
    EXPECT_EQ(PostToModule("0L", Quiet(), key + std::to_string(id.limit - 1)).answer.out, kAnswer204) << id.key;
    EXPECT_EQ(PostToModule("0L", Quiet(), key + std::to_string(id.limit)).answer.out, "") << id.key;
    Bytes stored = Quiet();
    stored[id.offset] = 0;
    const Outcome o = PostToModule("0L", stored, "");
    EXPECT_EQ(o.answer.out, kAnswer204) << id.key;
    EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
  }
}

}  // namespace
}  // namespace device_test
