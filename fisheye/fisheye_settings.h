// The "zrfisheyeset.cgi" program: fisheye correction geometry.
#pragma once

// Until the fisheye program is built in, its row has no function.
[[gnu::weak]] int ZrFisheyeSet(char* errorBuffer);
