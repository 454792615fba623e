// Files replaced whole: the new bytes are written beside the old file and
// take its name by rename only once they are on the disk. A reader, a full
// disk or a killed save never sees a short file, and a link at the path is
// replaced, never written through.
#pragma once

#include <stdio.h>

struct Replacement {
  FILE* file;
  // The new bytes are an unnamed file of the directory until they are
  // whole (nothing is left behind when the writer dies); where the file
  // system cannot do that, a file named for the path and the process,
  // which a later save by the same pid replaces.
  bool named;
  char temporary[320];
};

// Opens the replacement of path for writing, with the permissions path has.
// False when it cannot be created.
bool OpenReplacement(Replacement& replacement, const char* path);

// Flushes the bytes to the disk and puts them in place of path.
// 0 when done; -1 when the bytes could not be written out, -2 when they
// could not take the path's place. On failure nothing is left but the old
// file.
int CommitReplacement(Replacement& replacement, const char* path);

// Gives up a replacement that is not to be committed.
void AbandonReplacement(Replacement& replacement);
