// Whole-record read and write of the settings record files.
#pragma once

#include <stdint.h>

// Both return recordSize on success, -1 for bad arguments, -2 when the file
// cannot be opened, -3 when fewer than recordSize bytes were transferred
// (for a write, also when the file cannot be closed cleanly).
int ZrCamCtlReadConfFromFile(void* record, int32_t recordSize, const char* filePath);
int ZrCamCtlWriteConfToFile(const void* record, int32_t recordSize, const char* filePath);
