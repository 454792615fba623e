// Builds a form that posts a value to each of a list of keys and the record
// it must leave: every key gets its own value, stored little-endian in its
// field's width, so a key at the wrong offset or width, or a key looked up
// under a wrong name, shows as a wrong byte.
#pragma once

#include <stdint.h>
#include <stdio.h>

#include <string>
#include <vector>

#include "tests/device/family_frame.h"

namespace device_test {

struct KeyAt {
  std::string key;
  size_t offset;
  int width;  // 1, 2 or 4 bytes
};

inline void PutLe(Bytes& record, size_t offset, uint32_t value, int width) {
  for (int i = 0; i < width; ++i) record.at(offset + i) = static_cast<uint8_t>(value >> (8 * i));
}

// Appends "key=value" for every key and stores the values into expected.
// The low bytes of the values differ from key to key; the values are
// posted in turn as negative decimal, hexadecimal and plain decimal.
inline std::string PostEveryKey(const std::vector<KeyAt>& keys, Bytes& expected, uint32_t seed = 0x1234567) {
  std::string form;
  for (size_t i = 0; i < keys.size(); ++i) {
    uint32_t v = seed + static_cast<uint32_t>(i) * 0x01030507u;
    std::string text;
    if (i % 3 == 0) {
      v |= 0x80000000u;
      text = std::to_string(static_cast<int32_t>(v));
    } else {
      v &= 0x7FFFFFFFu;
      char hex[16];
      snprintf(hex, sizeof hex, "0x%X", v);
      text = i % 3 == 1 ? std::string(hex) : std::to_string(v);
    }
    PutLe(expected, keys[i].offset, v, keys[i].width);
    form += (form.empty() ? "" : "&") + keys[i].key + "=" + text;
  }
  return form;
}

// One request on a record: the bytes at offset, in the given width, must
// read stored afterwards and every other byte must be as before.
struct StoreCase {
  std::string form;
  size_t offset;
  int width;
  uint32_t stored;
};

inline void ExpectEachStore(const std::string& code, const Bytes& before, const std::vector<StoreCase>& cases) {
  for (const StoreCase& c : cases) {
    Bytes expected = before;
    PutLe(expected, c.offset, c.stored, c.width);
    const Outcome o = PostToModule(code, before, c.form);
    EXPECT_EQ(Hex(o.record), Hex(expected)) << c.form;
  }
}

}  // namespace device_test
