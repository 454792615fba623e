// PTZ cameras with alarm channels: 440-byte record of bytes, continue read,
// three edit slots behind their set ids, the alarm-channel and group
// arrays, and the ten-condition answer.
#include "tests/device/family_frame.h"

namespace device_test {
namespace {

// The bytes the answer depends on: the value that keeps the return page
// and the nearest value that answers 204 instead.
struct Condition {
  const char* key;
  size_t offset;
  uint8_t idle, busy;
};
const Condition kConditions[] = {
    {"DirectLensInit", 34, 0, 1}, {"Dehumidifcation", 439, 0, 1}, {"PrivacyViewId", 57, 8, 7},
    {"PresetViewId", 92, 32, 31}, {"TraceStart", 96, 1, 0},       {"TraceRun", 99, 1, 0},
    {"TraceStop", 100, 1, 0},     {"GroupViewId", 397, 8, 7},     {"GroupRunId", 436, 8, 7},
    {"GroupStopId", 437, 8, 7},
};

std::vector<std::pair<size_t, uint8_t>> QuietBytes() {
  std::vector<std::pair<size_t, uint8_t>> bytes;
  for (const Condition& c : kConditions) bytes.push_back({c.offset, c.idle});
  return bytes;
}

const FamilyProfile kPtzAlarmChannelCamera = {
    .family = "PtzAlarmChannelCamera",
    .codes = {"03", "13", "23"},
    .recordSize = 440,
    .readPolicy = ReadFailure::Continue,
    .handler = PtzAlarmChannelCameraSettings,
    .writeFailureResult = -2,
    .quietBytes = QuietBytes(),
};
INSTANTIATE_TEST_SUITE_P(PtzAlarmChannel, FamilyFrame, ::testing::Values(kPtzAlarmChannelCamera), PrintFamily);

Bytes Quiet() { return QuietRecord(kPtzAlarmChannelCamera); }

// Every key but the set ids, with its offset.
std::vector<std::pair<std::string, size_t>> AllKeys() {
  std::vector<std::pair<std::string, size_t>> keys;
  const char* camera[] = {"WbMode", "WbGainR", "WbGainB", "Brightness", "Sharpness", nullptr, "ShutterSpeed",
                          "AgcMode", "HvFlip", "WdrEn", "WdrLevel", "BlcMode", "BlcBoxEn", "BlcAreaTop",
                          "BlcAreaBottom", "BlcAreaLeft", "BlcAreaRight", "BlcHlcLevel", "HlcTone", "DnrMode",
                          "DssLevel", "Stabilize", "FocusMode", "ZoomMaxLimit", "ZoomMagDiplay", "DayNightMode",
                          "DayNightDur", "VideoOutMode", "CameraID", "StausID", "AutoTiltMove", "ManualPtSpeed",
                          "AutoRefreshEn", "AutoRefreshDur", "DirectLensInit", "DirectPreset", "HomeFuncEn",
                          "HomePresetId", "ResumeTimeEn"};
  for (size_t i = 0; i < std::size(camera); ++i) {
    if (camera[i]) keys.push_back({camera[i], i});
  }
  for (size_t i = 0; i < 4; ++i) {
    keys.push_back({"ArmChEn" + std::to_string(i), 39 + i});
    keys.push_back({"ArmChPreset" + std::to_string(i), 43 + i});
  }
  const std::pair<std::string, size_t> single[] = {
      {"ArmChRelayEn", 47},  {"ArmChRelayType", 48}, {"PrivacyViewId", 57}, {"PrivacySetMode", 59},
      {"PresetViewId", 92},  {"PresetSetMode", 94},  {"TraceStart", 96},    {"TraceEndSet", 97},
      {"TraceSetMode", 98},  {"TraceRun", 99},       {"TraceStop", 100},    {"GroupViewId", 397},
      {"GroupSetEnable", 399}, {"GroupRunId", 436},  {"GroupStopId", 437},  {"Dehumidifcation", 439},
  };
  keys.insert(keys.end(), std::begin(single), std::end(single));
  for (size_t i = 0; i < 12; ++i) {
    keys.push_back({"GroupSetPrsId" + std::to_string(i), 400 + i});
    keys.push_back({"GroupSetSpeed" + std::to_string(i), 412 + i});
    keys.push_back({"GroupSetDwell" + std::to_string(i), 424 + i});
  }
  return keys;
}

TEST(PtzAlarmChannelCamera, EveryKeyWithEverySlotOpenLeavesOnlyTheUnkeyedBytes) {
  DeviceRoot::Get().Reset();
  std::string form = "PrivacySetId=263&PresetSetId=287&GroupSetId=263";
  Bytes expected = Quiet();
  expected[58] = 7, expected[93] = 31, expected[398] = 7;
  for (const auto& [key, offset] : AllKeys()) {
    const uint32_t v = 0x100 + static_cast<uint32_t>(offset % 200) + 40;
    form += "&" + key + "=" + std::to_string(v);
    expected[offset] = static_cast<uint8_t>(v);
  }
  const Outcome o = PostToModule("13", Quiet(), form);
  EXPECT_EQ(Hex(o.record), Hex(expected));
  EXPECT_EQ(o.answer.out, kAnswer204);  // DirectLensInit is now 74
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
}

TEST(PtzAlarmChannelCamera, EditSlotsOnlyWhileTheSetIdIsInRange) {
  DeviceRoot::Get().Reset();
  struct Slot {
    const char* setIdKey;
    size_t setId;
    int limit;
    const char* slotKey;
    size_t slotOffset;
  };
  const Slot slots[] = {
      {"PrivacySetId", 58, 8, "PrivacySetMode", 59},   {"PresetSetId", 93, 32, "PresetSetMode", 94},
      {"GroupSetId", 398, 8, "GroupSetEnable", 399},   {"GroupSetId", 398, 8, "GroupSetPrsId0", 400},
      {"GroupSetId", 398, 8, "GroupSetSpeed11", 423},  {"GroupSetId", 398, 8, "GroupSetDwell11", 435},
  };
  struct Gate {
    int posted;  // -1: not posted
    int stored;
    bool open;
  };
  for (const Slot& s : slots) {
    const Gate gates[] = {
        {s.limit - 1, 255, true}, {s.limit, 0, false},          {-1, s.limit - 1, true},
        {-1, s.limit, false},     {256 + s.limit - 1, 255, true}, {256 + s.limit, 0, false},
    };
    for (const Gate& g : gates) {
      Bytes record = Quiet();
      record[s.setId] = static_cast<uint8_t>(g.stored);
      std::string form = std::string(s.slotKey) + "=5";
      if (g.posted >= 0) form += std::string("&") + s.setIdKey + "=" + std::to_string(g.posted);
      const Outcome o = PostToModule("23", record, form);
      Bytes expected = record;
      if (g.posted >= 0) expected[s.setId] = static_cast<uint8_t>(g.posted);
      if (g.open) expected[s.slotOffset] = 5;
      EXPECT_EQ(Hex(o.record), Hex(expected)) << form << " stored " << g.stored;
    }
  }
}

TEST(PtzAlarmChannelCamera, IndexedArraysStopAtTheirLastIndex) {
  DeviceRoot::Get().Reset();
  Bytes record = Quiet();
  record[398] = 0;  // group slot open
  const Outcome o = PostToModule(
      "03", record,
      "ArmChEn0=1&ArmChPreset3=9&ArmChEn4=2&ArmChPreset4=3&GroupSetDwell12=4&GroupSetPrsId12=5"
      "&GroupSetSpeed12=6&ArmChEn-1=7");
  Bytes expected = record;
  expected[39] = 1;
  expected[46] = 9;  // 47 (relay enable), 436 (group run id) and the rest untouched
  EXPECT_EQ(Hex(o.record), Hex(expected));
  EXPECT_EQ(o.answer.out, "");
}

TEST(PtzAlarmChannelCamera, ReturnPageOnlyWhenAllTenConditionsHold) {
  DeviceRoot::Get().Reset();
  EXPECT_EQ(PostToModule("03", Quiet(), "").answer.out, "");
  for (const Condition& c : kConditions) {
    const std::string key = std::string(c.key) + "=";
    EXPECT_EQ(PostToModule("03", Quiet(), key + std::to_string(c.busy)).answer.out, kAnswer204) << c.key;
    Bytes stored = Quiet();
    stored[c.offset] = c.busy;
    EXPECT_EQ(PostToModule("03", stored, "").answer.out, kAnswer204) << c.key;
    const Outcome o = PostToModule("03", stored, key + std::to_string(c.idle));
    EXPECT_EQ(o.answer.out, "") << c.key;
    EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
  }
  // The trace bytes only need to be non-zero; the ids take any value past their range.
  EXPECT_EQ(PostToModule("03", Quiet(), "TraceStart=255&TraceRun=2&TraceStop=0x100&TraceStop=9").answer.out,
            kAnswer204);  // 0x100 stores 0; the first TraceStop posted wins
  EXPECT_EQ(PostToModule("03", Quiet(), "TraceStart=255&TraceRun=2&PresetViewId=255&GroupStopId=200")
                .answer.out,
            "");
}

}  // namespace
}  // namespace device_test
