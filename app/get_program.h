// The "zrcamctlget.cgi" program.
#pragma once

struct Request;

// Answers the attached module's record as JSON ("format=form": its settings
// as a form body), or fills the error buffer and returns -1.
int ZrCamCtlGet(Request& request);
