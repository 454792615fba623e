// Test helpers for families with long layouts: post a list of keys with
// distinct values and build the record the handler must leave.
#pragma once

#include <stdint.h>

#include <string>
#include <vector>

#include "tests/device/device_root.h"

namespace device_test {

struct KeyAt {
  std::string key;
  size_t offset;
  int width;  // 1 or 2 bytes, little-endian
};

inline void PutLE(Bytes& record, size_t offset, int width, uint32_t value) {
  for (int i = 0; i < width; ++i) record.at(offset + i) = static_cast<uint8_t>(value >> (8 * i));
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

}  // namespace device_test
