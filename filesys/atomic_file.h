// Files replaced whole: the new bytes are written beside the old file and
// take its name by rename only once they are on the disk, and the directory
// is synced after the rename, so a save that was answered survives a power
// cut. A reader, a full disk, a killed save or a cut never sees a short
// file. Only a regular file, a link (replaced, never written through) or a
// missing name is replaced: a device, FIFO or socket at the path is left
// alone and the replacement cannot be opened.
//
// Where the file system has no unnamed files, the new bytes are a file named
// "<path>.<pid>.new" until the rename; a save killed before it leaves that
// file behind. Each save first removes such leftovers of earlier saves of the
// same path whose process is gone, so at most one is ever left per file.
#pragma once

#include <stdio.h>

struct Replacement {
  FILE* file;
  // The new bytes are an unnamed file of the directory until they are
  // whole; named once they are, just before the rename.
  bool named;
  char temporary[320];
};

// Opens the replacement of path for writing. It gets the read and write bits
// of the regular file at path, taken without following a link, and never a
// setuid, setgid, sticky or execute bit; in place of a link or of nothing,
// a new file's. False when it cannot be created.
bool OpenReplacement(Replacement& replacement, const char* path);

// Flushes the bytes to the disk, puts them in place of path and syncs the
// directory. 0 when done; -1 when the bytes or the directory could not be
// written out, -2 when they could not take the path's place. Nothing is left
// but the old file, or after a failed directory sync the new one.
int CommitReplacement(Replacement& replacement, const char* path);

// Gives up a replacement that is not to be committed.
void AbandonReplacement(Replacement& replacement);
