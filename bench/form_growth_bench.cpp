// Time to read and merge forms of growing size into the handler with the
// most keys: parse the urlencoded body, then run the handler on a record
// file. Prints "bytes entries microseconds" per size (median of runs).
#include <stdio.h>
#include <stdlib.h>
#include <time.h>

#include <algorithm>
#include <string>
#include <vector>

#include "cgi/cgi_request.h"
#include "families/families.h"

namespace {

double Now() {
  timespec t;
  clock_gettime(CLOCK_MONOTONIC, &t);
  return t.tv_sec * 1e6 + t.tv_nsec / 1e3;
}

// About `bytes` of form with at most maxEntries entries; the handler's
// keys are not among them, so every lookup misses: the worst case.
std::string FormText(size_t bytes, size_t maxEntries) {
  std::string form;
  for (size_t i = 0; form.size() < bytes && i < maxEntries; ++i) {
    if (i) form += '&';
    form += "key" + std::to_string(i) + "=value" + std::to_string(i);
  }
  if (form.size() < bytes) form += "&pad=" + std::string(bytes - form.size() - 5, 'p');
  return form.substr(0, bytes);
}

}  // namespace

int main(int argc, char** argv) {
  const char* recordPath = argc > 1 ? argv[1] : "/tmp/zrcamctl-growth.bin";
  // 153 keys, each looked up on every request.
  const SettingsFamily& family = kTwoSetImageTuning;
  const char* name = "two-set image tuning (1d)";
  FILE* f = fopen(recordPath, "wb");
  static char zeros[32768];
  fwrite(zeros, 1, sizeof zeros, f);
  fclose(f);
  printf("# handler: %s\n", name);
  for (size_t bytes : {size_t(1024), size_t(65536), size_t(1048576)}) {
    const std::string form = FormText(bytes, 50000);
    size_t entries = 0;
    std::vector<double> times;
    for (int run = 0; run < 15; ++run) {
      Request request = {};
      const double start = Now();
      ParseUrlEncodedForm(request.form, form.data(), form.size());
      RunSettingsFrame(request.form, family, recordPath);
      times.push_back(Now() - start);
      entries = 0;
      for (const char* e = NextFormEntry(request.form, nullptr); e;
           e = NextFormEntry(request.form, e))
        ++entries;
      FreeForm(request.form);
    }
    std::sort(times.begin(), times.end());
    printf("%zu %zu %.0f\n", form.size(), entries, times[times.size() / 2]);
  }
  return 0;
}
