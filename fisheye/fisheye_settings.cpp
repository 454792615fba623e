#include "fisheye/fisheye_settings.h"

#include <stdio.h>

#include "cgi/cgi_request.h"
#include "device/device_paths.h"
#include "filesys/settings_lock.h"
#include "tcfg/tcfg_util.h"

namespace {

struct FisheyeKey {
  const char* formKey;
  const char* configKey;
};

// In the order the values are written. The source height has no form key:
// its line is never changed here.
constexpr FisheyeKey kFisheyeKeys[] = {
    {"CenterX", "CENTER_X"},
    {"CenterY", "CENTER_Y"},
    {"OuterRadius", "OUTER_RADIUS"},
    {"InnerRadius", "INNER_RADIUS"},
    {"CenterRect", "CENTER_RECT"},
    {"SrcStartX", "SRC_START_X"},
    {"SrcStartY", "SRC_START_Y"},
    {"SrcWidth", "SRC_WIDTH"},
};

}  // namespace

int ZrFisheyeSet(Request& request) {
  // The file is installed with the firmware; it is never created here.
  const int lock = TakeSettingsLock(device::kSettingsLockFile);
  tcfg* cfg = new_cfg(device::kFisheyeConfFile, false);
  if (!cfg) {
    fprintf(stderr, "Failed to create cfg [%s]\n", device::kFisheyeConfFile);
    ReleaseSettingsLock(lock);
    return 1;
  }
  // A file that could not be read whole, or that another writer changed
  // while it was read (a save that had to go on without the lock), is
  // never written over.
  const int load = load_cfg(cfg);
  const bool loaded = load >= 0;
  if (load == -2) fputs("[ZrFisheyeSet] fish_eye.conf not saved: changed while read\n", stderr);
  for (const FisheyeKey& key : kFisheyeKeys) {
    char value[128];
    // Written as posted: vmfd reads the numbers itself. A key missing from
    // the file is skipped.
    if (FormLookup(request.form, key.formKey, value, sizeof value) == LookupOk)
      set_cfg_value(cfg, key.configKey, value);
  }
  // Nor is one the lines do not hold whole.
  if (loaded && cfg->held < cfg->size) {
    fprintf(stderr,
        "[ZrFisheyeSet] fish_eye.conf not saved: %s\n",
        cfg->text[cfg->held] == '\0' ? "NUL byte" : "too many lines");
  } else if (loaded) {
    save_cfg(cfg);
  }
  free_cfg(cfg);
  ReleaseSettingsLock(lock);
  return 1;
}
