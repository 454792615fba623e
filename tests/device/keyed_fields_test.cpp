#include "tests/device/keyed_fields.h"

#include <algorithm>

namespace device_test {

namespace {

const char kSignalled[] = "[SendSignalToZrCamCtlD] Send sig = [10] to zrcamctld. [OK]\n";

struct Request {
  std::string name;
  std::string form;
  Bytes expected;
};

// Every field gets the complement of what it holds, posted with bits above
// its width (some in hex, words as signed decimals), so a field stored too
// wide or too narrow shows in its own bytes or in an unposted neighbour's.
std::vector<Request> Requests(const KeyedFamily& family, const Bytes& base) {
  std::vector<KeyAt> fields = family.fields;
  std::sort(fields.begin(), fields.end(), [](auto& a, auto& b) { return a.offset < b.offset; });
  std::vector<Request> requests = {{"every key", "", base}, {"even keys", "", base}, {"odd keys", "", base}};
  for (size_t i = 0; i < fields.size(); ++i) {
    const KeyAt& f = fields[i];
    const uint32_t mask = f.width == 4 ? 0xFFFFFFFFu : (1u << (8 * f.width)) - 1;
    const uint32_t stored = ~GetLE(base, f.offset, f.width) & mask;
    char text[32];
    if (f.width == 4)
      snprintf(text, sizeof text, "%d", static_cast<int32_t>(stored));
    else
      snprintf(text, sizeof text, i % 3 ? "%u" : "0x%X", stored | (0x300u << (8 * f.width - 8)));
    for (Request* r : {&requests[0], &requests[1 + i % 2]}) {
      r->form += (r->form.empty() ? "" : "&") + f.key + "=" + text;
      PutLE(r->expected, f.offset, f.width, stored);
    }
  }
  return requests;
}

TEST_P(KeyedFields, EachKeyLandsTruncatedAtItsOwnFieldAndNothingElseMoves) {
  const KeyedFamily& family = GetParam();
  const std::string& code = family.profile.codes.back();
  const Bytes quiet = QuietRecord(family.profile);
  for (const Request& r : Requests(family, quiet)) {
    const Outcome o = PostToModule(code, quiet, r.form);
    EXPECT_EQ(Hex(o.record), Hex(r.expected)) << r.name << ": " << r.form;
    EXPECT_EQ(o.answer.exitStatus, 0) << r.name;
    EXPECT_EQ(o.answer.out, "") << r.name;  // the return page, nothing asked of it
    EXPECT_EQ(o.answer.err, kSignalled) << r.name;
    EXPECT_EQ(o.answer.zrcamctldSignals, std::vector<int>{10}) << r.name;
  }
}

}  // namespace
}  // namespace device_test
