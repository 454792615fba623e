// Saves take turns: an exclusive lock on a file of its own, held over the
// read, the merge and the replacement of the files a save changes, and let
// go as soon as they are in place (before any daemon is woken or any shell
// command runs), so that no save waits on another one's slow tail.
#pragma once

// Waits up to about 2 s for the lock on the file at path, creating it 0644
// when missing. The file is opened read-only (flock needs no more), so a
// lock file made by any user serves every user; it is opened without
// waiting and without following a link, and only a regular file is locked.
// Returns the descriptor that holds the lock, or -1 after one line on
// standard error (also for a link, FIFO, directory or anything else at
// path): the save then goes on unlocked, a lock never fails a request.
int TakeSettingsLock(const char* path);

// Lets go of a lock TakeSettingsLock returned (-1: none is held).
void ReleaseSettingsLock(int lock);
