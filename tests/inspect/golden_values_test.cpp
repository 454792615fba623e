// What the set program wrote reads back as what was posted: for each case of
// a family's transcript that posts one key alone, the record the case left
// holds the posted value under that key, as the row stores it (its rule and
// width), unless the key is one of the family's own rules.
#include <gtest/gtest.h>
#include <string.h>

#include "inspect/family_notes.h"
#include "inspect/record_keys.h"
#include "modules/module_table.h"
#include "tests/device/golden_reader.h"

namespace {

using device_test::FileLine, device_test::FileLines;

// The posted value as a row of `field`'s type and rule keeps it.
KeyValue Stored(const Field& field, const std::string& posted, std::string& text) {
  if (field.Type() == FieldType::Text || field.Type() == FieldType::PaddedText) {
    text = posted.substr(0, field.Type() == FieldType::Text ? field.arg - 1u : field.arg);
    return {true, 0, reinterpret_cast<const uint8_t*>(text.data()), text.size()};
  }
  const bool isUnsigned = field.Rule() == ValueRule::Unsigned;
  uint32_t v = isUnsigned ? DecimalToUInt32(posted.c_str()) : static_cast<uint32_t>(FormValueToInt(posted.c_str()));
  switch (field.Rule()) {
    case ValueRule::LowByte: v &= 0xFF; break;
    case ValueRule::Reversed: v = field.arg - v; break;
    case ValueRule::AtLeastOne: v = static_cast<int32_t>(v) <= 0 ? 1 : v; break;
    default: break;
  }
  switch (field.Type()) {
    case FieldType::Checkbox: return {false, 1, nullptr, 0};
    case FieldType::U8: return {false, v & 0xFF, nullptr, 0};
    case FieldType::U16: return {false, v & 0xFFFF, nullptr, 0};
    default: return {false, isUnsigned ? int64_t{v} : int64_t{static_cast<int32_t>(v)}, nullptr, 0};
  }
}

class GoldenValues : public ::testing::TestWithParam<std::string> {};

TEST_P(GoldenValues, EachKeyPostedAloneReadsBackAsPosted) {
  constexpr char kRecords[] = "/opt/kfp/etc/ZrConf/ZrCamCtlConf";
  static RecordKey keys[kMaxRecordKeys];
  int checked = 0;
  for (const device_test::Case& c : device_test::Parse(ZRCAMCTL_GOLDEN_DIR "/" + GetParam() + ".golden")) {
    if (c.name.find(" OneKey ") == std::string::npos) continue;
    const std::string pair = c.request.body.substr(0, c.request.body.find('&'));
    const std::string key = pair.substr(0, pair.find('=')), value = pair.substr(pair.find('=') + 1);
    ASSERT_EQ(value.find_first_of("%+"), std::string::npos) << c.name;
    // The module of the product code (the reset root's is 0J), its record as
    // given, then as the case left it.
    std::map<std::string, std::string> given;
    std::string code = "0J";
    for (const FileLine& file : FileLines(c.given, "given ")) {
      given[file.path] = file.bytes;
      std::string_view quoted = file.description;
      const std::string text = file.path == "/proc/driver/qe_basic_conf" ? device_test::Unquote(quoted) : "";
      if (text.find("QEF_STR1=\"") != std::string::npos) code = text.substr(text.find("QEF_STR1=\"") + 10 + 19, 2);
    }
    const std::string path = kRecords + code + ".bin";
    std::string record = given[path], was = record;
    for (const FileLine& file : FileLines(c.expected, "", given))
      if (file.path == path) record = file.bytes;
    const ModuleRow* row = FindModuleRow(ModuleCode({code[0], code[1], '\0'}));
    ASSERT_TRUE(row && row->family && FindFamilyNotes(row->family)) << c.name << ": module " << code;
    ASSERT_EQ(record.size(), row->family->recordSize) << c.name;
    was.resize(record.size());  // a missing record reads as zeros
    const RecordView view = {reinterpret_cast<uint8_t*>(record.data()), row->family->recordSize};
    const RecordView before = {reinterpret_cast<uint8_t*>(was.data()), row->family->recordSize};
    const bool own = IsOwnKey(*FindFamilyNotes(row->family), key.c_str());
    const int count = ListRecordKeys(row->family->layout, keys, kMaxRecordKeys);
    int found = 0;
    for (int k = 0; k < count; ++k) {
      char posted[kShownKeySize], want[kShownValueSize], got[kShownValueSize];
      PostedKey(keys[k], posted, sizeof posted);
      // A key under a shut gate, or in a table whose id selects no slot, stores nothing.
      const uint32_t id = keys[k].group ? StoredValue(view, *keys[k].group) : 0;
      const bool shut = keys[k].group && id >= keys[k].limit;
      if (key != posted || (keys[k].kind == KeyKind::Slot && !shut && id != keys[k].index)) continue;
      ++found;
      std::string text;
      const KeyValue expected = shut ? ReadKey(keys[k], before) : Stored(keys[k].field, value, text);
      const KeyValue read = ReadKey(keys[k], view);
      ShowValue(expected, false, want, sizeof want);
      ShowValue(read, false, got, sizeof got);
      EXPECT_TRUE(own || SameValue(expected, read)) << GetParam() << ": case " << c.name << ": " << key << " at "
                                                     << keys[k].field.offset << " reads " << got << ", not " << want;
    }
    EXPECT_TRUE(found > 0 || own) << GetParam() << ": case " << c.name << ": no key " << key << " in the layout";
    checked += found > 0 && !own;
  }
  if (checked == 0) GTEST_SKIP() << "no case posts one key alone";
}

INSTANTIATE_TEST_SUITE_P(Transcripts, GoldenValues, ::testing::ValuesIn(device_test::GoldenFiles(ZRCAMCTL_GOLDEN_DIR)),
                         device_test::GoldenName);

}  // namespace
