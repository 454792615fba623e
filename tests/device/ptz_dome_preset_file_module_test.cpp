// PTZ dome modules with the preset file: the gated editing groups, labels,
// the preset labels and preset-set bitmap in "PtzConf.bin", and the main
// title written only by a plain settings save.
#include "tests/device/family_frame.h"

namespace device_test {
namespace {

constexpr char kPresetFile[] = "/opt/kfp/etc/ZrConf/PtzConf.bin";
constexpr size_t kPresetFileSize = 262760;
constexpr size_t kMainTitle = 37;

struct Slot {
  size_t offset;
  int width;
};

// Action ids and their set counts: below the count the camera acts now.
struct Action {
  const char* key;
  Slot at;
  int sets;
};
const Action kActions[] = {
    {"ScanViewId", {1192, 1}, 8},     {"ScanStartId", {1193, 1}, 8},    {"ScanEndId", {1194, 1}, 8},
    {"ScanRunId", {1196, 1}, 8},      {"PrivacyViewId", {1307, 1}, 8},  {"PatternViewId", {1285, 1}, 4},
    {"PatternStartId", {1286, 1}, 4}, {"PatternEndId", {1287, 1}, 4},   {"PatternRunId", {1289, 1}, 4},
    {"PresetViewId", {322, 2}, 256},  {"TourViewId", {952, 1}, 8},      {"TourRunId", {954, 1}, 8},
    {"AreaViewId", {1591, 1}, 16},    {"AreaStartId", {1593, 1}, 16},   {"AreaEndId", {1594, 1}, 16},
    {"AlarmViewId", {1772, 1}, 8},    {"GroupViewId", {1942, 1}, 6},
};
constexpr size_t kPrivacyIris = 1310;

// Set numbers and their limits.
struct SetNumber {
  const char* key;
  Slot at;
  int limit;
};
const SetNumber kSetNumbers[] = {
    {"ScanSetId", {1195, 1}, 8},   {"PrivacySetId", {1308, 1}, 8}, {"PatternSetId", {1288, 1}, 4},
    {"PresetSetId", {324, 2}, 256}, {"TourSetId", {953, 1}, 8},     {"AreaSetId", {1592, 1}, 16},
    {"AlarmSetId", {1773, 1}, 8},  {"GroupSetId", {1943, 1}, 6},
};

void Put(Bytes& b, Slot at, uint32_t v) {
  for (int i = 0; i < at.width; ++i) b.at(at.offset + i) = static_cast<uint8_t>(v >> (8 * i));
}

void PutText(Bytes& b, size_t offset, const std::string& text) {
  for (size_t i = 0; i < text.size(); ++i) b.at(offset + i) = static_cast<uint8_t>(text[i]);
  b.at(offset + text.size()) = 0;
}

// Nothing pending, no slot open, no title: a keyless request rewrites it as read.
std::vector<std::pair<size_t, uint8_t>> QuietBytes() {
  std::vector<std::pair<size_t, uint8_t>> bytes;
  for (size_t i = 0; i < 16; ++i) bytes.push_back({kMainTitle + i, 0});
  for (const Action& a : kActions)
    for (int i = 0; i < a.at.width; ++i) bytes.push_back({a.at.offset + i, 0xFF});
  for (const SetNumber& s : kSetNumbers)
    for (int i = 0; i < s.at.width; ++i) bytes.push_back({s.at.offset + i, 0xFF});
  bytes.push_back({kPrivacyIris, 0xFF});
  return bytes;
}

const FamilyProfile kPtzDomePresetFileModule = {
    .family = "PtzDomePresetFileModule",
    .codes = {"1C", "14", "2C"},
    .recordSize = 1968,
    .readPolicy = ReadFailure::ContinueInCgi,
    .handler = PtzDomePresetFileModuleSettings,
    .writeFailureResult = -2,
    .quietBytes = QuietBytes(),
};
INSTANTIATE_TEST_SUITE_P(PtzDomePresetFile, FamilyFrame, ::testing::Values(kPtzDomePresetFileModule),
                         PrintFamily);

Bytes Quiet() { return QuietRecord(kPtzDomePresetFileModule); }

Bytes PresetFile() { return Pattern(kPresetFileSize, 0x3C); }

std::optional<Bytes> ReadPresetFile() {
  const auto text = DeviceRoot::Get().ReadFile(kPresetFile);
  if (!text) return std::nullopt;
  return Bytes(text->begin(), text->end());
}

// The bitmap word and bit of preset n.
Slot BitmapWord(int n) { return {16404 + 4 * static_cast<size_t>((n - 1) / 32), 4}; }
uint32_t GetWord(const Bytes& b, size_t offset) {
  uint32_t v = 0;
  for (int i = 0; i < 4; ++i) v |= static_cast<uint32_t>(b.at(offset + i)) << (8 * i);
  return v;
}
size_t LabelSlot(int n) { return 20 + 64 * static_cast<size_t>(n - 1); }

struct Posted {
  std::string key;
  Slot at;
};

// Every numeric key outside the editing slots.
const Posted kSettings[] = {
    {"DigitalZoom", {4, 1}},      {"ZoomSpeed", {5, 1}},       {"ZoomDisplay", {6, 1}},
    {"FocusMode", {7, 1}},        {"FocusSpeed", {8, 1}},      {"FocusNearLimit", {9, 1}},
    {"AfMode", {10, 1}},          {"WhiteBMode", {11, 1}},     {"WhiteBRGain", {12, 1}},
    {"WhiteBBGain", {13, 1}},     {"ExposureMode", {14, 1}},   {"ExpCompPosition", {15, 1}},
    {"AutoSlowShut", {16, 1}},    {"ExpShutSpd", {17, 1}},     {"ExpIrisLevel", {18, 1}},
    {"ExpWdrMode", {19, 1}},      {"ExpWdrLevel", {20, 1}},    {"ExpDaynNight", {21, 1}},
    {"AceMode", {22, 1}},         {"ApertureGain", {23, 1}},   {"DnrLevel", {24, 1}},
    {"BackLight", {25, 1}},       {"Flickerless", {26, 1}},    {"Defog", {27, 1}},
    {"PresetFreeze", {28, 1}},    {"Stabilizer", {29, 1}},     {"HeaterOnTemp", {30, 1}},
    {"HeaterOffTemp", {31, 1}},   {"HeaterOnTime", {32, 1}},   {"FanOnTemp", {33, 1}},
    {"FanOffTemp", {34, 1}},      {"HeaterStatus", {35, 1}},   {"PowerUpAction", {36, 1}},
    {"PositionDisplay", {53, 1}}, {"AutoFlip", {54, 1}},       {"TiltLimitAngle", {55, 1}},
    {"WiperStatus", {56, 1}},     {"PresetLabelDisp", {57, 1}}, {"PowerFrequency", {58, 1}},
    {"SpeedByZoom", {59, 1}},     {"ResponseTxd", {60, 1}},    {"ExpAgcMode", {63, 1}},
    {"AutoSlowShutter", {64, 1}}, {"DssLevel", {65, 1}},       {"ParkTime", {1794, 1}},
    {"ParkFunction", {1795, 1}},  {"ParkNumber", {1796, 2}},   {"ParkMode", {1798, 1}},
    {"ParkSet", {1799, 1}},       {"ExtIrSyncMode", {1800, 1}}, {"ExtIrIlluminate", {1801, 1}},
    {"ExtIrChangeLux", {1802, 1}}, {"ExtIrOffset", {1803, 1}}, {"CamCtlPage", {1967, 1}},
};

// Every numeric key of the editing slots (tour and group steps included).
std::vector<Posted> SlotKeys() {
  std::vector<Posted> keys = {
      {"ScanSetMode", {1197, 1}},    {"ScanSetSpeed", {1198, 1}},     {"ScanSetDwelling", {1199, 1}},
      {"ScanSetFocusMode", {1200, 1}}, {"PrivacySetMode", {1309, 1}}, {"PatternSetMode", {1290, 1}},
      {"PresetSetFocus", {326, 1}},  {"TourSetMode", {955, 1}},       {"AreaSetMode", {1595, 1}},
      {"AlarmSetMode", {1774, 1}},   {"AlarmSetPresetId", {1776, 2}}, {"GroupSetMode", {1944, 1}},
  };
  for (size_t i = 0; i < 15; ++i) {
    keys.push_back({"TourSetSpeed" + std::to_string(i), {956 + i, 1}});
    keys.push_back({"TourSetDwell" + std::to_string(i), {971 + i, 1}});
    keys.push_back({"TourSetPresetFuncId" + std::to_string(i), {986 + 2 * i, 2}});
  }
  for (size_t i = 0; i < 6; ++i) keys.push_back({"GroupSetListId" + std::to_string(i), {1945 + i, 1}});
  return keys;
}

struct Label {
  const char* key;
  size_t offset;
};
const Label kLabels[] = {{"ScanSetLabel", 1201},  {"PatternSetLabel", 1291}, {"TourSetLabel", 1016},
                         {"AreaSetLabel", 1596},  {"AlarmSetLabel", 1778},   {"GroupSetLabel", 1951}};

// The outcome of one request on a stored record and preset file (none: no file).
struct PresetOutcome {
  Answer answer;
  Bytes record;
  std::optional<Bytes> presets;
};
PresetOutcome PostWithPresets(const Bytes& record, const std::optional<Bytes>& presets, const std::string& form,
                  const std::string& code = "1C") {
  DeviceRoot& root = DeviceRoot::Get();
  if (presets) root.WriteFile(kPresetFile, *presets);
  const Outcome o = PostToModule(code, record, form);
  return {o.answer, o.record, ReadPresetFile()};
}

TEST(PtzDomePresetFileModule, EveryKeyOfAnEditingRequestLandsAndTheOtherBytesStay) {
  DeviceRoot::Get().Reset();
  std::string form = "RetReDir=/r&MainTitle=Ignored";
  Bytes expected = Quiet();
  uint32_t value = 0x20000;
  auto post = [&](const std::string& key, Slot at) {
    value += 0x0103;
    form += "&" + key + "=" + std::to_string(value);
    Put(expected, at, value);
  };
  for (const Posted& p : kSettings) post(p.key, p.at);
  for (const Posted& p : SlotKeys()) post(p.key, p.at);
  // Every slot open at its last set number; every action id at its first idle value.
  for (const SetNumber& s : kSetNumbers) {
    form += std::string("&") + s.key + "=" + std::to_string(s.limit - 1);
    Put(expected, s.at, static_cast<uint32_t>(s.limit - 1));
  }
  for (const Action& a : kActions) {
    form += std::string("&") + a.key + "=" + std::to_string(a.sets);
    Put(expected, a.at, static_cast<uint32_t>(a.sets));
  }
  form += "&PrivacyIris=0x1FF";
  // Labels: at most 11 characters and a NUL; the rest of the field keeps its bytes.
  for (const Label& l : kLabels) {
    form += std::string("&") + l.key + "=" + l.key;
    PutText(expected, l.offset, std::string(l.key).substr(0, 11));
  }
  // One past the last step: these would name the next fields.
  form += "&TourSetSpeed15=1&TourSetDwell15=1&TourSetPresetFuncId15=1&GroupSetListId6=1";
  form += "&PresetSetMode=1&PresetSetLabel=Gate%20255";

  Bytes expectedPresets = PresetFile();
  Put(expectedPresets, BitmapWord(255), GetWord(expectedPresets, 16432) | 1u << 30);
  PutText(expectedPresets, LabelSlot(255), "Gate 255");

  const PresetOutcome o = PostWithPresets(Quiet(), PresetFile(), form, "2C");
  EXPECT_EQ(Hex(o.record), Hex(expected));
  ASSERT_TRUE(o.presets.has_value());
  EXPECT_EQ(Hex(*o.presets), Hex(expectedPresets));
  EXPECT_NE(o.answer.out.find("location.href=\"/r\""), std::string::npos) << o.answer.out;
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
}

TEST(PtzDomePresetFileModule, EachSlotOpensOnlyBelowItsLimitPostedOrStored) {
  DeviceRoot::Get().Reset();
  struct Gate {
    const char* setKey;
    std::string slotForm;
    std::vector<std::pair<Slot, uint32_t>> slotChanges;
    size_t label;  // cleared when open and not posted; 0: none
  };
  const Gate gates[] = {
      {"ScanSetId", "ScanSetMode=1&ScanSetFocusMode=2", {{{1197, 1}, 1}, {{1200, 1}, 2}}, 1201},
      {"PrivacySetId", "PrivacySetMode=3", {{{1309, 1}, 3}}, 0},
      {"PatternSetId", "PatternSetMode=4", {{{1290, 1}, 4}}, 1291},
      {"PresetSetId", "PresetSetFocus=5", {{{326, 1}, 5}}, 0},
      {"TourSetId", "TourSetMode=6&TourSetSpeed0=7&TourSetPresetFuncId14=0x1234",
       {{{955, 1}, 6}, {{956, 1}, 7}, {{1014, 2}, 0x1234}}, 1016},
      {"AreaSetId", "AreaSetMode=8", {{{1595, 1}, 8}}, 1596},
      {"AlarmSetId", "AlarmSetPresetId=-1", {{{1776, 2}, 0xFFFF}}, 1778},
      {"GroupSetId", "GroupSetListId0=9&GroupSetListId5=10", {{{1945, 1}, 9}, {{1950, 1}, 10}}, 1951},
  };
  for (size_t g = 0; g < std::size(gates); ++g) {
    const Gate& gate = gates[g];
    const SetNumber& set = kSetNumbers[g];
    for (int n : {set.limit - 1, set.limit}) {
      for (bool posted : {true, false}) {
        DeviceRoot::Get().Remove(kPresetFile);
        Bytes record = Quiet();
        std::string form = gate.slotForm + "&MainTitle=T";
        if (posted) {
          form += std::string("&") + set.key + "=" + std::to_string(n);
        } else {
          Put(record, set.at, static_cast<uint32_t>(n));
        }
        Bytes expected = record;
        Put(expected, set.at, static_cast<uint32_t>(n));
        const bool open = n < set.limit;
        if (open) {
          for (const auto& [at, v] : gate.slotChanges) Put(expected, at, v);
          for (size_t i = 0; gate.label && i < 12; ++i) expected[gate.label + i] = 0;
        } else {
          PutText(expected, kMainTitle, "T");  // a plain save
        }
        const PresetOutcome o = PostWithPresets(record, std::nullopt, form);
        const std::string what = std::string(set.key) + "=" + std::to_string(n) + (posted ? " posted" : " stored");
        EXPECT_EQ(Hex(o.record), Hex(expected)) << what;
        EXPECT_EQ(o.answer.out, "") << what;
        // Only an open preset slot touches the preset file.
        EXPECT_EQ(o.presets.has_value(), open && g == 3) << what;
      }
    }
  }
}

TEST(PtzDomePresetFileModule, PresetFlagsAndLabelsInThePresetFile) {
  DeviceRoot::Get().Reset();
  struct Case {
    std::string form;
    int n;                     // bitmap bit and label slot touched; 0: none
    int flag;                  // -1: unchanged, else the bit afterwards
    std::optional<std::string> label;  // the slot afterwards: text, "" zeroed, none unchanged
  };
  const std::string longLabel(70, 'L');
  const Case cases[] = {
      {"PresetSetId=1&PresetSetMode=1&PresetSetLabel=Front%20door", 1, 1, "Front door"},
      {"PresetSetId=3&PresetSetMode=1", 3, 1, ""},  // an absent label clears the slot
      {"PresetSetId=3&PresetSetMode=65536&PresetSetLabel=x", 3, 0, "x"},
      {"PresetSetId=32&PresetSetMode=0&PresetSetLabel=", 32, 0, ""},
      {"PresetSetId=33&PresetSetMode=0x8001&PresetSetLabel=" + longLabel, 33, 1, longLabel.substr(0, 63)},
      {"PresetSetId=255&PresetSetMode=2&PresetSetLabel=Last", 255, 1, "Last"},
      {"PresetSetId=255&PresetSetLabel=" + std::string(130, 'x'), 255, -1, std::nullopt},  // over-long
      {"PresetSetId=256&PresetSetMode=1&PresetSetLabel=None", 0, -1, std::nullopt},
      {"PresetSetId=0&PresetSetMode=1&PresetSetLabel=Zero&PresetSetFocus=7", 0, -1, std::nullopt},
  };
  for (const Case& c : cases) {
    for (uint8_t fill : {0x00, 0xFF}) {
      Bytes presets = PresetFile();
      for (size_t i = 16404; i < 16436; ++i) presets[i] = fill;
      const PresetOutcome o = PostWithPresets(Quiet(), presets, c.form);
      Bytes expected = presets;
      if (c.flag >= 0) {
        const Slot word = BitmapWord(c.n);
        const uint32_t bit = 1u << ((c.n - 1) % 32);
        Put(expected, word, c.flag ? GetWord(expected, word.offset) | bit : GetWord(expected, word.offset) & ~bit);
      }
      if (c.label) {
        if (c.label->empty()) {
          for (size_t i = 0; i < 64; ++i) expected[LabelSlot(c.n) + i] = 0;
        } else {
          PutText(expected, LabelSlot(c.n), *c.label);
        }
      }
      ASSERT_TRUE(o.presets.has_value()) << c.form;
      EXPECT_EQ(Hex(*o.presets), Hex(expected)) << c.form << " fill " << int(fill);
    }
  }
  // Preset 0 is edited: the focus is stored and the file rewritten as read.
  const PresetOutcome zero = PostWithPresets(Quiet(), PresetFile(), "PresetSetId=0&PresetSetFocus=7&MainTitle=T");
  Bytes expected = Quiet();
  Put(expected, {324, 2}, 0);
  expected[326] = 7;
  EXPECT_EQ(Hex(zero.record), Hex(expected));
  EXPECT_EQ(zero.answer.out, "");
}

TEST(PtzDomePresetFileModule, AMissingPresetFileIsReportedAndCreatedWhole) {
  DeviceRoot::Get().Reset();
  const PresetOutcome o = PostWithPresets(Quiet(), std::nullopt, "PresetSetId=2&PresetSetMode=1&PresetSetLabel=Ab");
  ASSERT_TRUE(o.presets.has_value());
  Bytes expected(kPresetFileSize, 0);
  expected[16404] = 0x02;
  PutText(expected, LabelSlot(2), "Ab");
  EXPECT_EQ(Hex(*o.presets), Hex(expected));
  EXPECT_NE(o.answer.err.find(std::string("fopen is failed [PATH:") + kPresetFile +
                              "]\nZrCamCtlReadConfFromFile is failed in Cgi\n"),
            std::string::npos)
      << o.answer.err;
  EXPECT_EQ(o.answer.out, "");
}

TEST(PtzDomePresetFileModule, AnUnwritablePresetFileLeavesTheRecordAlone) {
  DeviceRoot& root = DeviceRoot::Get();
  root.Reset();
  root.WriteFile(kPresetFile, PresetFile());
  root.BindReadOnly(kPresetFile);
  const PresetOutcome o = PostWithPresets(Quiet(), std::nullopt, "DigitalZoom=1&PresetSetId=4&PresetSetMode=1&ParkTime=2");
  root.Unmount(kPresetFile);
  EXPECT_EQ(o.answer.out, ErrorPage("zrcamctlset.cgi", "ZrCamCtlWriteConfToFile is failed\n"));
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{});
  EXPECT_EQ(Hex(o.record), Hex(Quiet()));
  EXPECT_EQ(Hex(*o.presets), Hex(PresetFile()));
}

TEST(PtzDomePresetFileModule, PendingActionsAnswer204AndOnlyAPlainSaveWritesTheTitle) {
  DeviceRoot::Get().Reset();
  struct Case {
    std::string form;
    bool returnPage;
  };
  std::vector<Case> cases = {{"PrivacyIris=254", false}, {"PrivacyIris=255", true}};
  for (const Action& a : kActions) {
    cases.push_back({std::string(a.key) + "=" + std::to_string(a.sets - 1), false});
    cases.push_back({std::string(a.key) + "=" + std::to_string(a.sets), true});
  }
  for (const Case& c : cases) {
    const PresetOutcome o = PostWithPresets(Quiet(), std::nullopt, c.form + "&MainTitle=Hi");
    EXPECT_EQ(o.answer.out, c.returnPage ? "" : kAnswer204) << c.form;
    // The title only on a plain save.
    EXPECT_EQ(o.record[kMainTitle], c.returnPage ? 'H' : 0) << c.form;
  }
  // A stored pending action counts as well.
  Bytes pending = Quiet();
  pending[954] = 0;  // TourRunId
  EXPECT_EQ(PostWithPresets(pending, std::nullopt, "MainTitle=Hi").answer.out, kAnswer204);

  // The title: at most 15 characters and a NUL, the rest kept; cleared when
  // absent or empty; an over-long value is no value and clears nothing.
  Bytes titled = Quiet();
  for (size_t i = 0; i < 16; ++i) titled[kMainTitle + i] = 0xEE;
  struct Title {
    std::string form;
    std::string text;  // "" : zeroed
    bool kept;
  };
  const Title titles[] = {
      {"MainTitle=Hello", "Hello", false},
      {"MainTitle=" + std::string(20, 'T'), std::string(15, 'T'), false},
      {"MainTitle=", "", false},
      {"ZoomSpeed=1", "", false},
      {"MainTitle=" + std::string(128, 'T'), "", true},
  };
  for (const Title& t : titles) {
    const PresetOutcome o = PostWithPresets(titled, std::nullopt, t.form);
    Bytes expected = titled;
    if (t.form == "ZoomSpeed=1") expected[5] = 1;
    if (!t.kept) {
      if (t.text.empty()) {
        for (size_t i = 0; i < 16; ++i) expected[kMainTitle + i] = 0;
      } else {
        PutText(expected, kMainTitle, t.text);
      }
    }
    EXPECT_EQ(Hex(o.record), Hex(expected)) << t.form;
    EXPECT_EQ(o.answer.out, "") << t.form;
  }
}

}  // namespace
}  // namespace device_test
