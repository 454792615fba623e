// WDR ISP cameras: 91 one-byte settings in key order, continue read.
#include "tests/device/family_frame.h"

namespace device_test {
namespace {

const FamilyProfile kWdrIspCamera = {
    .family = "WdrIspCamera",
    .codes = {"0c", "1c"},
    .recordSize = 91,
    .readPolicy = ReadFailure::Continue,
    .handler = WdrIspCameraSettings,
    .writeFailureResult = -2,
};
INSTANTIATE_TEST_SUITE_P(WdrIsp, FamilyFrame, ::testing::Values(kWdrIspCamera), PrintFamily);

// Every key in offset order, as the pages post them.
std::vector<std::string> AllKeys() {
  std::vector<std::string> keys = {"AecEnable",   "AgcEnable",   "AecWdrMode",   "AecFrameRate",
                                   "AecTargetLp", "AecTargetSp", "AgcMaxGainLp", "AgcMaxGainSp"};
  for (const char* stage : {"WdrLevel", "Nlc", "Plc", "Dpc", "Nr", "Shap", "Contrast", "Bright", "Color"}) {
    for (const char* parameter : {"Mode", "Ref", "Start", "End", "Sv", "Ev", "Init"}) {
      keys.push_back(std::string(stage) + parameter);
    }
  }
  for (const char* key : {"ColorSatMag", "ColorSatRed", "ColorSatYel", "ColorSatGre", "ColorSatCya",
                          "ColorSatBlu", "ColorHueMag", "ColorHueRed", "ColorHueYel", "ColorHueGre",
                          "ColorHueCya", "ColorHueBlu", "BlcTarget", "LpRatio", "SpRatio", "MirrorFlip",
                          "DebugMode", "GammaLevel", "FlickerEn", "PowerFrq"}) {
    keys.push_back(key);
  }
  return keys;
}

TEST(WdrIspCamera, EveryKeyLandsAtItsOwnOffsetAsOneByte) {
  DeviceRoot::Get().Reset();
  const std::vector<std::string> keys = AllKeys();
  ASSERT_EQ(keys.size(), 91u);
  std::string form;
  Bytes expected(91);
  for (size_t offset = 0; offset < keys.size(); ++offset) {
    // 0x300 + offset: only the low byte is stored.
    form += (offset ? "&" : "") + keys[offset] + "=" + std::to_string(0x300 + 3 * offset + 1);
    expected[offset] = static_cast<uint8_t>(3 * offset + 1);
  }
  const Outcome o = PostToModule("1c", Pattern(91), form);
  EXPECT_EQ(Hex(o.record), Hex(expected));
  EXPECT_EQ(o.answer.out, "");
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
}

TEST(WdrIspCamera, StageBoundariesAndSingleKeys) {
  DeviceRoot::Get().Reset();
  struct Case {
    std::string form;
    int offset;  // -1: a misspelt key that changes nothing
    uint8_t value;
  };
  const Case cases[] = {
      {"AgcMaxGainSp=7", 7, 7},  {"WdrLevelMode=1", 8, 1},  {"WdrLevelInit=2", 14, 2},
      {"NlcMode=3", 15, 3},       {"NrInit=0x105", 42, 5},   {"ShapMode=4", 43, 4},
      {"ColorInit=-1", 70, 0xFF}, {"ColorSatMag=6", 71, 6},  {"ColorHueCya=8", 81, 8},
      {"PowerFrq=9", 90, 9},      {"SharpMode=9", -1, 0},    {"PowerFreq=9", -1, 0},
  };
  for (const Case& c : cases) {
    const Outcome o = PostToModule("0c", Pattern(91), c.form);
    Bytes expected = Pattern(91);
    if (c.offset >= 0) expected[static_cast<size_t>(c.offset)] = c.value;
    EXPECT_EQ(Hex(o.record), Hex(expected)) << c.form;
    EXPECT_EQ(o.answer.out, "") << c.form;
  }
}

}  // namespace
}  // namespace device_test
