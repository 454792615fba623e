// PTZ camera module 1D: 256-byte form values, the set-number gates of the
// scan, privacy, pattern and tour slots, and the answer from the action
// ids and the zero-point commands.
#include "tests/device/family_frame.h"

namespace device_test {
namespace {

// Action ids, 8 sets each, and PrivacyViewId with 24 masks.
const size_t kActions[] = {95, 96, 97, 99, 127, 128, 129, 131, 277, 279};
const char* const kActionKeys[] = {"ScanViewId",     "ScanStartId",  "ScanEndId",  "ScanRunId",
                                   "PatternViewId",  "PatternStartId", "PatternEndId", "PatternRunId",
                                   "TourViewId",     "TourRunId"};
constexpr size_t kPrivacyViewId = 297;
constexpr size_t kZeroPoint = 324;  // ZeroClear, ZeroSet, ZeroGet

std::vector<std::pair<size_t, uint8_t>> QuietBytes() {
  std::vector<std::pair<size_t, uint8_t>> bytes = {{kPrivacyViewId, 255}};
  for (size_t offset : kActions) bytes.push_back({offset, 255});
  for (size_t i = 0; i < 3; ++i) bytes.push_back({kZeroPoint + i, 255});
  return bytes;
}

const FamilyProfile kPtzModule1D = {
    .family = "PtzModule1D",
    .codes = {"1D"},
    .recordSize = 328,
    .readPolicy = ReadFailure::Continue,
    .handler = PtzModule1DSettings,
    .writeFailureResult = -2,
    .quietBytes = QuietBytes(),
};
INSTANTIATE_TEST_SUITE_P(PtzModule1D, FamilyFrame, ::testing::Values(kPtzModule1D), PrintFamily);

Bytes Quiet() { return QuietRecord(kPtzModule1D); }

using Changes = std::vector<std::pair<size_t, uint8_t>>;

Bytes With(Bytes record, const Changes& changes) {
  for (const auto& [offset, value] : changes) record.at(offset) = value;
  return record;
}

TEST(PtzModule1D, EveryKeyLandsAtItsByteAndTheUnkeyedBytesStay) {
  DeviceRoot::Get().Reset();
  const char* imageKeys[] = {"CamModReboot", "ImgSetHMirror", "ImgSetFlip", "AfSense",  "DZoom",
                             "WBalance",     "WBRedGain",     "WBBlueGain", "Exposure", "ExpIris",
                             "ExpShutter",   "ExpGain",       "Sharpness",  "BackLight", "DaynNight",
                             "Wdr",          "Focus",         "Resolution", "ImgSetAutoFlip",
                             "ImgSetOverTilt", "PropPanTilt", "HomeMode",   "HomeId"};
  std::string form = "RetReDir=/r";
  Changes changes;
  for (size_t i = 0; i < std::size(imageKeys); ++i) {
    form += std::string("&") + imageKeys[i] + "=" + std::to_string(0x100 + i);
    changes.push_back({4 + i, static_cast<uint8_t>(i)});
  }
  // A 200-character value fits the 256-byte value buffer.
  form += "&Initial=" + std::string(199, '0') + "7";
  changes.push_back({327, 7});
  for (size_t i = 0; i < std::size(kActionKeys); ++i) {
    form += std::string("&") + kActionKeys[i] + "=8";
    changes.push_back({kActions[i], 8});
  }
  form += "&PrivacyViewId=24&ScanSetId=0&ScanSetMode=1&ScanSetDwell=2&ScanSetSpeed=3"
          "&PrivacySetId=0&PrivacySetMode=4&PatternSetId=7&PatternSetMode=5&TourSetId=3&TourSetMode=6"
          "&ZeroClear=255&ZeroSet=0x1FF&ZeroGet=-1";
  changes.insert(changes.end(), {{kPrivacyViewId, 24}, {98, 0}, {100, 1}, {101, 2}, {102, 3}, {298, 0},
                                 {299, 4}, {130, 7}, {132, 5}, {278, 3}, {280, 6}, {324, 255},
                                 {325, 255}, {326, 255}});
  for (int step = 0; step < 8; ++step) {
    form += "&TourSetFncType" + std::to_string(step) + "=" + std::to_string(10 + step);
    form += "&TourSetFncId" + std::to_string(step) + "=" + std::to_string(20 + step);
    changes.push_back({281 + static_cast<size_t>(step), static_cast<uint8_t>(10 + step)});
    changes.push_back({289 + static_cast<size_t>(step), static_cast<uint8_t>(20 + step)});
  }
  // The step keys one past the last step name bytes of other fields.
  form += "&TourSetFncType8=99&TourSetFncId8=99";
  const Outcome o = PostToModule("1D", Quiet(), form);
  EXPECT_EQ(Hex(o.record), Hex(With(Quiet(), changes)));
  EXPECT_NE(o.answer.out.find("location.href=\"/r\""), std::string::npos) << o.answer.out;
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
}

TEST(PtzModule1D, ValuesUpTo255CharactersFitTheValueBuffer) {
  DeviceRoot::Get().Reset();
  const Outcome o = PostToModule("1D", Quiet(), "HomeId=" + std::string(256, '1') + "&HomeMode=" +
                                                    std::string(254, '0') + "9");
  EXPECT_EQ(Hex(o.record), Hex(With(Quiet(), {{25, 9}})));
}

TEST(PtzModule1D, EachSlotIsMergedOnlyBelowItsSetCount) {
  DeviceRoot::Get().Reset();
  struct Gate {
    const char* setKey;
    size_t setOffset;
    int limit;
    std::string slotForm;
    Changes slotChanges;
  };
  const Gate gates[] = {
      {"ScanSetId", 98, 8, "ScanSetMode=1&ScanSetDwell=2&ScanSetSpeed=3", {{100, 1}, {101, 2}, {102, 3}}},
      {"PrivacySetId", 298, 24, "PrivacySetMode=4", {{299, 4}}},
      {"PatternSetId", 130, 8, "PatternSetMode=5", {{132, 5}}},
      {"TourSetId", 278, 8, "TourSetMode=6&TourSetFncType0=7&TourSetFncId0=8&TourSetFncType7=9&TourSetFncId7=10",
       {{280, 6}, {281, 7}, {289, 8}, {288, 9}, {296, 10}}},
  };
  for (const Gate& g : gates) {
    for (int setId : {g.limit - 1, g.limit, 255}) {
      for (bool posted : {true, false}) {
        Bytes record = Quiet();
        std::string form = g.slotForm;
        if (posted) {
          form += std::string("&") + g.setKey + "=" + std::to_string(setId + 0x100);
        } else {
          record[g.setOffset] = static_cast<uint8_t>(setId);
        }
        Changes expected = {{g.setOffset, static_cast<uint8_t>(setId)}};
        if (setId < g.limit) expected.insert(expected.end(), g.slotChanges.begin(), g.slotChanges.end());
        const Outcome o = PostToModule("1D", record, form);
        EXPECT_EQ(Hex(o.record), Hex(With(Quiet(), expected))) << g.setKey << "=" << setId << " posted " << posted;
      }
    }
  }
}

TEST(PtzModule1D, PendingActionsAndZeroPointCommandsAnswer204) {
  DeviceRoot::Get().Reset();
  struct Case {
    std::string form;
    bool returnPage;
  };
  std::vector<Case> cases = {
      {"", true},
      {"Initial=0", true},
      {"Initial=1", true},
      {"PrivacyViewId=23", false},
      {"PrivacyViewId=24", true},
      {"ZeroSet=1", false},
      {"ZeroClear=254", false},
      {"ZeroGet=0", false},
      {"ZeroClear=0x1FF&ZeroSet=-1&ZeroGet=255", true},
  };
  for (const char* key : kActionKeys) {
    cases.push_back({std::string(key) + "=7", false});
    cases.push_back({std::string(key) + "=8", true});
    cases.push_back({std::string(key) + "=0", false});
  }
  for (const Case& c : cases) {
    const Outcome o = PostToModule("1D", Quiet(), c.form);
    EXPECT_EQ(o.answer.out, c.returnPage ? "" : kAnswer204) << c.form;
    EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
  }
}

}  // namespace
}  // namespace device_test
