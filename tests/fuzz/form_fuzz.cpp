// The request library over arbitrary urlencoded bytes: parsing, lookups
// with every value buffer size the handlers use, and the conversions.
#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include "cgi/cgi_request.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const char* text = reinterpret_cast<const char*>(data);
  Form form = {};
  if (ParseUrlEncodedForm(form, text, size) != 0) {
    FreeForm(form);
    return 0;
  }
  static char buffer[513];
  static const int kSizes[] = {128, 256, 512, 1};
  for (const char* name = NextFormEntry(form, nullptr); name; name = NextFormEntry(form, name)) {
    for (int max : kSizes) {
      const int r = FormLookup(form, name, buffer, max);
      if (r != LookupOk && r != LookupTruncated && r != LookupEmpty) __builtin_trap();
      if (strlen(buffer) >= static_cast<size_t>(max)) __builtin_trap();
      (void)FormValueToInt(buffer);
      (void)DecimalToUInt32(buffer);
    }
  }
  if (FormLookup(form, "NoSuchKeyInAnyForm", buffer, 128) != LookupNotFound &&
      !NextFormEntry(form, nullptr))
    __builtin_trap();
  FreeForm(form);
  return 0;
}
