// The text configuration library over arbitrary file text: every value and
// column operation on every line, with the invariants callers rely on.
// Input: one byte giving the key length (mod 16), the key, then the text.
#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include "tcfg/tcfg_util.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const size_t keyLength = size ? data[0] % 16 : 0;
  if (size < 1 + keyLength) return 0;
  char key[16];
  memcpy(key, data + 1, keyLength);
  key[keyLength] = '\0';
  const char* text = reinterpret_cast<const char*>(data + 1 + keyLength);
  // One object for all inputs (a 512 KiB line table), emptied after each.
  static tcfg* const cfg = create_mem_cfg(nullptr, 0);
  if (!cfg || reload_mem_cfg(cfg, text, size - 1 - keyLength) != 0) return 0;
  if (cfg->lineCount < 0 || cfg->lineCount > kTcfgMaxLines) __builtin_trap();

  char out[kTcfgValueSize];
  for (int occurrence = 0; occurrence < 4; ++occurrence) {
    const int line = get_cfg_value(cfg, key, out, sizeof out, occurrence, 0);
    if (line >= cfg->lineCount || strlen(out) >= sizeof out) __builtin_trap();
    // A replaced value reads back as written, on the same line.
    if (set_cfg_value(cfg, key, "v", occurrence, 0) == 0) {
      if (get_cfg_value(cfg, key, out, sizeof out, occurrence, 0) != line || strcmp(out, "v") != 0)
        __builtin_trap();
    }
    (void)get_cfg_value(cfg, key, out, 2, 0, occurrence);
  }

  static const char* const kDelimiters[] = {" \t", ",", "=:", ""};
  for (const char* delimiters : kDelimiters) {
    for (int row = 0; row < cfg->lineCount && row < 8; ++row) {
      for (int col = 0; col < 4; ++col) {
        if (get_cfg_col(cfg, row, col, delimiters, out, 8) == 0 && strlen(out) >= 8)
          __builtin_trap();
      }
    }
    const int row = find_cfg_row(cfg, 0, key, 1, delimiters, out, sizeof out, 0);
    if (row >= cfg->lineCount) __builtin_trap();
    if (set_cfg_col(cfg, 0, key, 1, delimiters, "w", 0) == 0) {
      if (find_cfg_row(cfg, 0, key, 1, delimiters, out, sizeof out, 0) < 0) __builtin_trap();
    }
  }
  (void)add_cfg_line(cfg, key);
  (void)reload_mem_cfg(cfg, nullptr, 0);
  return 0;
}
