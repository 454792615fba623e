// The "zrfisheyeset.cgi" program: fisheye correction geometry.
#pragma once

struct Request;

// Copies the posted geometry into the fisheye configuration file. Always 1:
// the video daemon is signalled and the return page written even when the
// file is missing.
int ZrFisheyeSet(Request& request);
