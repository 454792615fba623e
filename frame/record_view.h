// A settings record as the daemon reads it: a packed little-endian byte
// image. Fields are written and read through explicit byte access only;
// every put truncates the value to its field's width.
#pragma once

#include <stdint.h>

struct RecordView {
  uint8_t* bytes;
  uint32_t size;

  void PutU8(uint32_t offset, uint32_t value) const { bytes[offset] = static_cast<uint8_t>(value); }
  void PutU16(uint32_t offset, uint32_t value) const {
    bytes[offset] = static_cast<uint8_t>(value);
    bytes[offset + 1] = static_cast<uint8_t>(value >> 8);
  }
  void PutU32(uint32_t offset, uint32_t value) const {
    for (uint32_t i = 0; i < 4; ++i) bytes[offset + i] = static_cast<uint8_t>(value >> (8 * i));
  }
  uint8_t GetU8(uint32_t offset) const { return bytes[offset]; }
  uint16_t GetU16(uint32_t offset) const {
    return static_cast<uint16_t>(bytes[offset] | bytes[offset + 1] << 8);
  }
  uint32_t GetU32(uint32_t offset) const {
    uint32_t value = 0;
    for (uint32_t i = 0; i < 4; ++i) value |= static_cast<uint32_t>(bytes[offset + i]) << (8 * i);
    return value;
  }
};
