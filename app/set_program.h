// The "zrcamctlset.cgi" program.
#pragma once

#include <stdint.h>

#include "modules/module_table.h"

struct Request;

// The attached module as the product code names it: its id, its row of the
// module table (null when there is none) and its record's path (made only
// for a row with a family; empty when it could not be made).
struct AttachedModule {
  int32_t id;
  const ModuleRow* row;
  char path[kRecordPathBufferSize];
};
// Reads the product code (up to five times) into the request and finds the module.
AttachedModule FindAttachedModule(Request& request);

// Identifies the module and merges the form into its record: the result of
// its family (1 return page, 0 bare answer, negative error page).
int ZrCamCtlSet(Request& request);
