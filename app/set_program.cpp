// The "zrcamctlset.cgi" program: identify the attached camera module, then
// merge the posted form into its settings record.
#include "app/set_program.h"

#include <stdio.h>

#include "cgi/cgi_request.h"
#include "device/device_paths.h"
#include "filesys/settings_lock.h"
#include "frame/settings_frame.h"
#include "modules/module_table.h"
#include "modules/product_code.h"

namespace {

constexpr int kGetExtCamIdAttempts = 5;
// Printed for a module id found nowhere in the table.
constexpr unsigned kNoHandlerMarker = 0x00020001;

}  // namespace

AttachedModule FindAttachedModule(Request& request) {
  AttachedModule module = {-1, nullptr, {}};
  for (int attempt = 0; attempt < kGetExtCamIdAttempts && module.id < 0; ++attempt) {
    const int length = PnCodeUtilRead(request.productCode);
    module.id = GetExtCamId(request.productCode, length);
  }
  module.row = FindModuleRow(static_cast<uint32_t>(module.id));
  // The code was long enough for its module code, so the path is made; a
  // failure would be reported by it and leave the path empty.
  if (module.row && module.row->family &&
      MakeCamCtlConfPath(module.path, kRecordPathBufferSize, request.productCode) != 0)
    module.path[0] = '\0';
  return module;
}

int ZrCamCtlSet(Request& request) {
  const AttachedModule module = FindAttachedModule(request);
  const ModuleRow* row = module.row;
  if (!row || !row->family) {
    fprintf(stderr,
        "[zrcamctlset.cgi] not exist function for control zrcamctld[ExtCamId:0x%08x,Index=%d "
        "pFunc=0x%08x]\n",
        static_cast<unsigned>(module.id),
        row ? static_cast<int>(row - ModuleTable) : -1,
        row ? 0u : kNoHandlerMarker);
    return 0;
  }
  if (module.path[0] == '\0') return 0;  // answered as a module without a family
  const int lock = TakeSettingsLock(device::kSettingsLockFile);
  const FrameResult frame = RunSettingsFrame(request.form, *row->family, module.path);
  ReleaseSettingsLock(lock);
  if (frame.result < 0)
    snprintf(request.errorBuffer, sizeof request.errorBuffer, "%s", frame.message);
  return frame.result;
}
