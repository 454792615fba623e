// The get program's settings, carried from one device to another as the
// form it answers, for every family.
#include <gtest/gtest.h>

#include <random>

#include "tests/device/device_root.h"
#include "frame/record_keys.h"
#include "inspect/family_notes.h"
#include "modules/module_table.h"

namespace device_test {
namespace {

// The get program's answer, after its header.
std::string Get(const DeviceRoot& root, const std::string& query) {
  Request request = {.form = false};
  request.env = {{"REQUEST_METHOD", "GET"}, {"QUERY_STRING", query}, {"HTTP_HOST", "d"}};
  request.env.push_back({"HTTP_REFERER", "http://d/"});
  const std::string out = root.RunAs("/web/cgi-bin/zrcamctlget.cgi", request).out;
  const size_t at = out.find("\r\n\r\n");
  return at == std::string::npos ? "" : out.substr(at + 4);
}

// One of the JSON answer's three objects, as written.
std::string Part(const std::string& json, const std::string& name) {
  const size_t at = json.find(",\"" + name + "\":{");
  const size_t end = json.find(name == "edits" ? "}}" : "},\"", at);
  return at == std::string::npos || end == std::string::npos ? "" : json.substr(at, end - at);
}

// A value a post could carry for the key: a text of random bytes but line
// breaks and NUL (a third of them & = % + space ;) short enough to be taken
// whole, or any integer (unsigned for an unsigned row).
std::string RandomValue(const RecordKey& key, int valueBufferSize, std::mt19937& random) {
  const Field& field = key.field;
  if (field.Type() == FieldType::Text || field.Type() == FieldType::PaddedText) {
    const int most =
        std::min<int>(field.arg - (field.Type() == FieldType::Text), valueBufferSize - 1);
    std::string value;
    for (int n = static_cast<int>(random() % (most + 1)); n > 0; --n) {
      unsigned c;  // often a byte a form gives a meaning to
      do c = random() % 3 ? 1 + random() % 255 : static_cast<unsigned char>("&=%+ ;"[random() % 6]);
      while (c == '\r' || c == '\n');
      value += {'%', "0123456789ABCDEF"[c >> 4], "0123456789ABCDEF"[c & 15]};
    }
    return value;
  }
  const uint32_t n = random();
  return std::to_string(field.Rule() == ValueRule::Unsigned ? int64_t{n} : int32_t(n));
}

TEST(GetProgram, SettingsCarriedToAFactoryDeviceEveryFamily) {
  DeviceRoot& root = DeviceRoot::Get();
  static RecordKey keys[kMaxRecordKeys];
  std::mt19937 random(28);
  for (int f = 0; f < kFamilyNoteCount; ++f) {
    const SettingsFamily& family = *kFamilyNotes[f].family;
    const ModuleRow* row = std::find_if(std::begin(ModuleTable),
        std::end(ModuleTable),
        [&](const ModuleRow& r) { return r.family == &family; });
    if (row == std::end(ModuleTable)) continue;  // no module routes to it
    const std::string code = {static_cast<char>(row->code >> 8), static_cast<char>(row->code)};
    SCOPED_TRACE("module " + code + ", family " + kFamilyNotes[f].file);
    const Layout& layout = family.layout;
    auto factory = [&] {
      root.Reset();
      root.SetModule(code);
      root.WriteRecord(code, Bytes(layout.size));
      VisitBlocks(layout, [&](const Block& b, const Block*) {
        if (b.op == Op::SideFile)
          root.WriteFile(b.side.file->path, Bytes(b.side.file->layout.size));
      });
    };

    // The first device: a random value posted for every setting.
    factory();
    const std::string zero = Get(root, "");
    std::string posted;
    const int count = ListRecordKeys(layout, keys, kMaxRecordKeys, false);
    for (int k = 0; k < count; ++k) {
      if (RoleOf(keys[k], layout, layout) != KeyRole::Setting) continue;
      if (keys[k].field.Type() == FieldType::Checkbox && random() % 2) continue;
      char name[kShownKeySize];
      PostedKey(keys[k], name, sizeof name);
      posted += (posted.empty() ? "" : "&") + std::string(name) + "=" +
                RandomValue(keys[k], family.valueBufferSize, random);
    }
    ASSERT_EQ(root.Post("zrcamctlset.cgi", posted).exitStatus, 0);
    const std::string first = Get(root, ""), form = Get(root, "format=form");
    EXPECT_NE(Part(first, "settings"), Part(zero, "settings")) << first;

    // The second device, from its factory record (zeros): the first's form
    // posted leaves its settings as the first's and its commands as an empty
    // post leaves them (a one-shot command goes idle on any request without it).
    factory();
    ASSERT_EQ(root.Post("zrcamctlset.cgi", form).exitStatus, 0);
    const std::string second = Get(root, "");
    EXPECT_EQ(Part(second, "settings"), Part(first, "settings"));
    factory();
    ASSERT_EQ(root.Post("zrcamctlset.cgi", "").exitStatus, 0);
    EXPECT_EQ(Part(second, "commands"), Part(Get(root, ""), "commands"));
  }
}

}  // namespace
}  // namespace device_test
