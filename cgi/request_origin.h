// Where a request comes from. The device's own pages post their forms from
// the device, and their links carry a Referer naming it; a browser that
// visits another site sends that site's Origin with a cross-site POST, and
// for an <img> or a link whose page strips its referrer sends no Origin and
// no Referer (nor, to a device on plain HTTP, Sec-Fetch-Site).
#pragma once

#include "cgi/cgi_request.h"

// The error text a request is refused with before its form is read, or
// null when it may be served:
//   "method not allowed"          a method other than GET and POST;
//   "cross-site request refused"  Sec-Fetch-Site is cross-site or same-site;
//     an Origin that does not name the device (its scheme's host and port
//     against Host's; an unparseable Origin, "null", or no Host count as
//     another site); without an Origin, a Referer that does not name it;
//     a GET with neither, unless Sec-Fetch-Site is same-origin or none.
// A POST that carries none of these headers (curl, a script) is served.
const char* CrossSiteRefusal(const CgiEnvironment& env);
