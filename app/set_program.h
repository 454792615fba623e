// The "zrcamctlset.cgi" program.
#pragma once

struct Request;

// Identifies the module and merges the form into its record: the result of
// its family (1 return page, 0 bare answer, negative error page).
int ZrCamCtlSet(Request& request);
