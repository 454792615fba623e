// Whole-record read and write of the settings record files.
#pragma once

#include <stdint.h>

// Both return recordSize on success, -1 for bad arguments, -2 when the file
// cannot be opened, -3 when fewer than recordSize bytes were transferred
// (for a write, also when the file cannot be closed cleanly). The read
// follows no link (one at the path fails to open, as a missing file does)
// and reads only a regular file; the write replaces the file whole
// (filesys/atomic_file.h).
int ZrCamCtlReadConfFromFile(void* record, int32_t recordSize, const char* filePath);
int ZrCamCtlWriteConfToFile(const void* record, int32_t recordSize, const char* filePath);
