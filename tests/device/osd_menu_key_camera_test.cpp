// Cameras driven through their own OSD menu (modules 1m, 3C, 3c): 69-byte
// record of bytes, continue read, the answer decided by the menu keys.
#include "tests/device/family_frame.h"
#include "tests/device/keyed_layout.h"

namespace device_test {
namespace {

constexpr size_t kOsdEnter = 61;  // .. 65 OsdRight
const char* const kMenuKeys[] = {"OsdEnter", "OsdUp", "OsdDown", "OsdLeft", "OsdRight"};

const FamilyProfile kOsdMenuKeyCamera = {
    .family = "OsdMenuKeyCamera",
    .codes = {"1m", "3C", "3c"},
    .recordSize = 69,
    .readPolicy = ReadFailure::Continue,
    .handler = OsdMenuKeyCameraSettings,
    .writeFailureResult = -2,
    .quietBytes = {{61, 255}, {62, 255}, {63, 255}, {64, 255}, {65, 255}},
};
INSTANTIATE_TEST_SUITE_P(OsdMenuKey, FamilyFrame, ::testing::Values(kOsdMenuKeyCamera), PrintFamily);

Bytes Quiet() { return QuietRecord(kOsdMenuKeyCamera); }

TEST(OsdMenuKeyCamera, EveryKeyLandsInItsByteAndByte60Stays) {
  DeviceRoot::Get().Reset();
  const char* const names[] = {
      "Lens",       "AfMode",     "Scanning",    "SyncTdn",   "Brightness", "Shutter",    "ShtMode",
      "ShutSpd",    "DcMode",     "Dss",         "Agc",       "BackLight",  "HlMaskThrs", "HlMaskColor",
      "BlcPosX",    "BlcPosY",    "BlcSizX",     "BlcSizY",   "WdrWeight",  "Tdn",        "LedOn",
      "LedSatCtrl", "TdnThrs",    "TdnMarg",     "TdnDly",    "TdnSw",      "TdnDnThres", "TdnNdThres",
      "Awb",        "AwbPreset",  "AwbMnl",      "Rgain",     "Bgain",      "Saturation", "Adnr",
      "Sharpness",  "Gamma",      "Mirror",      "Flip",      "Dzoom",      "Ace",        "Defog",
      "DefogMode",  "DefogLevel", "Shading",     "ShdWeight", "Masking",    "CamID",      "Baudrate",
      "OutScl",     "OutSclUser", "OutFromat",   "OutFps",    "SysFreq",    "Cvbs",       "ExSdi",
      "CBar",       "LanguageSel", "CamTitle",   "CamCtlPage", nullptr,     "OsdEnter",   "OsdUp",
      "OsdDown",    "OsdLeft",    "OsdRight",    "Dcko",      "Itu",        "DckInv",
  };
  static_assert(std::size(names) == 69);
  std::vector<KeyAt> keys;
  for (size_t offset = 0; offset < std::size(names); ++offset) {
    if (names[offset]) keys.push_back({names[offset], offset, 1});
  }
  Bytes expected = Quiet();
  const std::string form = PostEveryKey(keys, expected);
  const Outcome o = PostToModule("3c", Quiet(), form);
  EXPECT_EQ(Hex(o.record), Hex(expected));
  EXPECT_EQ(o.answer.out, kAnswer204);  // the menu keys were pressed
  EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
}

TEST(OsdMenuKeyCamera, AnyPendingMenuKeyAnswers204) {
  DeviceRoot::Get().Reset();
  struct Case {
    int key;              // menu key stored or posted, -1 for none
    uint8_t stored;       // its byte before the request
    std::string posted;   // its posted value, empty for none
    bool returnPage;
  };
  std::vector<Case> cases = {{-1, 255, "", true}};
  for (int k = 0; k < 5; ++k) {
    cases.push_back({k, 254, "", false});      // one below idle, as read
    cases.push_back({k, 0, "", false});
    cases.push_back({k, 255, "1", false});     // a press posted now
    cases.push_back({k, 1, "255", true});      // released by this request
    cases.push_back({k, 1, "0x1FF", true});    // low byte 255
  }
  for (const Case& c : cases) {
    Bytes record = Quiet();
    std::string form = "Gamma=3";
    if (c.key >= 0) {
      record[kOsdEnter + c.key] = c.stored;
      if (!c.posted.empty()) form += std::string("&") + kMenuKeys[c.key] + "=" + c.posted;
    }
    const Outcome o = PostToModule("1m", record, form);
    EXPECT_EQ(o.answer.out, c.returnPage ? "" : kAnswer204) << form << " stored " << int(c.stored);
    EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10});
    EXPECT_EQ(o.record[36], 3);
  }
}

TEST(OsdMenuKeyCamera, APressStaysInTheFileUntilReleased) {
  DeviceRoot& root = DeviceRoot::Get();
  root.Reset();
  Outcome o = PostToModule("3C", Quiet(), "OsdUp=1");
  EXPECT_EQ(o.answer.out, kAnswer204);
  EXPECT_EQ(o.record[62], 1);
  o.answer = root.Post("zrcamctlset.cgi", "Gamma=4");  // the record as the last request left it
  EXPECT_EQ(o.answer.out, kAnswer204);
  o.answer = root.Post("zrcamctlset.cgi", "OsdUp=255");
  EXPECT_EQ(o.answer.out, "");
  Bytes expected = Quiet();
  expected[36] = 4;
  EXPECT_EQ(Hex(root.ReadRecord("3C").value()), Hex(expected));
}

TEST(OsdMenuKeyCamera, MissingRecordReadsAsPressedKeys) {
  // The record is zero-filled before the read, so the menu keys read 0.
  DeviceRoot& root = DeviceRoot::Get();
  root.Reset();
  root.SetModule("1m");
  EXPECT_EQ(root.Post("zrcamctlset.cgi", "Gamma=1").out, kAnswer204);
  Bytes expected(69, 0);
  expected[36] = 1;
  EXPECT_EQ(Hex(root.ReadRecord("1m").value()), Hex(expected));
}

}  // namespace
}  // namespace device_test
