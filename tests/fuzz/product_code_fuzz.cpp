// The product-code reader over arbitrary basic-configuration text, as the
// reader holds it: at most 1023 bytes and a NUL.
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include "modules/product_code.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  static char work[1024];
  memset(work, 0, sizeof work);
  const size_t n = size - 1 < sizeof work - 1 ? size - 1 : sizeof work - 1;
  memcpy(work, data + 1, n);
  char out[kProductCodeSize];
  memset(out, 0, sizeof out);
  const int length = ParseQefString(work, data[0] % 8, out);
  if (length > 63 || (length >= 0 && strlen(out) != static_cast<size_t>(length))) __builtin_trap();
  char path[256];
  if (length >= 0) (void)MakeCamCtlConfPath(path, sizeof path, out);
  return 0;
}
