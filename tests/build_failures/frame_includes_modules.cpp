// Does not build: the frame layer cannot see the module layer above it.
#include "frame/settings_frame.h"
#include "modules/module_table.h"
