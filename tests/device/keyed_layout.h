// Test helpers for record layouts: post a list of keys with distinct values
// and build the record the handler must leave.
#pragma once

#include <stdint.h>
#include <stdio.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "tests/device/family_frame.h"

namespace device_test {

struct KeyAt {
  std::string key;
  size_t offset;
  int width;  // 1, 2 or 4 bytes, little-endian
};

inline void PutLE(Bytes& record, size_t offset, int width, uint32_t value) {
  for (int i = 0; i < width; ++i) record.at(offset + i) = static_cast<uint8_t>(value >> (8 * i));
}

inline uint32_t GetLE(const Bytes& record, size_t offset, int width) {
  uint32_t v = 0;
  for (int i = 0; i < width; ++i) v |= static_cast<uint32_t>(record.at(offset + i)) << (8 * i);
  return v;
}

// Appends "&key=value" for every key, with a value distinct per key and
// wider than a byte, and stores the truncated value into `expected`.
inline void PostEach(const std::vector<KeyAt>& keys, std::string& form, Bytes& expected, uint32_t seed) {
  for (size_t i = 0; i < keys.size(); ++i) {
    const uint32_t value = 0x300 + seed + static_cast<uint32_t>(i) * 7;
    form += "&" + keys[i].key + "=" + std::to_string(value);
    PutLE(expected, keys[i].offset, keys[i].width, value);
  }
}

// "Name%d" keys for indices first..first+count-1 at offset + i * stride.
inline std::vector<KeyAt> Indexed(const std::string& name, int first, int count, size_t offset, size_t stride,
                                  int width = 1) {
  std::vector<KeyAt> keys;
  for (int i = 0; i < count; ++i)
    keys.push_back({name + std::to_string(first + i), offset + static_cast<size_t>(i) * stride, width});
  return keys;
}

// Keys of consecutive fields of one width from offset on.
inline std::vector<KeyAt> Run(size_t offset, const std::vector<std::string>& keys, int width = 1) {
  std::vector<KeyAt> run;
  for (const std::string& k : keys) run.push_back({k, offset, width}), offset += width;
  return run;
}

// Quiet bytes: every offset set to one value.
inline std::vector<std::pair<size_t, uint8_t>> AllAt(const std::vector<size_t>& offsets, uint8_t value) {
  std::vector<std::pair<size_t, uint8_t>> bytes;
  for (size_t o : offsets) bytes.push_back({o, value});
  return bytes;
}

inline std::vector<KeyAt> Join(std::vector<std::vector<KeyAt>> parts) {
  std::vector<KeyAt> all;
  for (auto& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

// The bytes of `record` at offsets no key of the list covers.
inline std::vector<size_t> Uncovered(size_t size, const std::vector<KeyAt>& keys) {
  std::vector<bool> covered(size, false);
  for (const KeyAt& k : keys)
    for (int i = 0; i < k.width; ++i) covered.at(k.offset + i) = true;
  std::vector<size_t> free;
  for (size_t i = 0; i < size; ++i)
    if (!covered[i]) free.push_back(i);
  return free;
}

// A set-id gate: its edit slot is merged only while the set id, posted or
// as stored, is below the limit. Checked at limit-1 and limit, posted and
// stored, with the slot posted as 0x1234 and the set id posted 256 higher
// (only its low byte counts). `whenOpen` adds what else an open gate changes.
struct GateCase {
  std::string setKey;
  size_t setOffset;
  int limit;
  KeyAt slot;
  std::function<void(Bytes&)> whenOpen = nullptr;
};

inline void ExpectGate(const std::string& code, const Bytes& quiet, const GateCase& c) {
  for (int setId : {c.limit - 1, c.limit}) {
    for (bool posted : {true, false}) {
      Bytes stored = quiet;
      stored[c.setOffset] = posted ? 0 : static_cast<uint8_t>(setId);
      const std::string form =
          c.slot.key + "=0x1234" + (posted ? "&" + c.setKey + "=" + std::to_string(setId + 256) : std::string());
      const Outcome o = PostToModule(code, stored, form);
      Bytes expected = stored;
      expected[c.setOffset] = static_cast<uint8_t>(setId);
      if (setId < c.limit) {
        PutLE(expected, c.slot.offset, c.slot.width, 0x1234);
        if (c.whenOpen) c.whenOpen(expected);
      }
      EXPECT_EQ(Hex(o.record), Hex(expected)) << code << ": " << form << ", stored " << int(stored[c.setOffset]);
    }
  }
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
    PutLE(expected, keys[i].offset, keys[i].width, v);
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
    PutLE(expected, c.offset, c.width, c.stored);
    const Outcome o = PostToModule(code, before, c.form);
    EXPECT_EQ(Hex(o.record), Hex(expected)) << c.form;
  }
}

}  // namespace device_test
