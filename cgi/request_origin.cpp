#include "cgi/request_origin.h"

#include <stddef.h>
#include <stdint.h>
#include <string.h>
#include <strings.h>

namespace {

constexpr char kMethodNotAllowed[] = "method not allowed";
constexpr char kCrossSite[] = "cross-site request refused";

// A host and port, as a URL's authority or a Host header names them.
struct Authority {
  const char* host;
  size_t hostLength;
  uint32_t port;
};

// "host", "host:port", "[v6]" or "[v6]:port", ended by end; the port is
// defaultPort when absent or empty. False for anything else.
bool ParseAuthority(const char* text, const char* end, uint32_t defaultPort, Authority& out) {
  const char* hostEnd = text;
  if (*text == '[') {
    hostEnd = static_cast<const char*>(memchr(text, ']', static_cast<size_t>(end - text)));
    if (!hostEnd) return false;
    ++hostEnd;
  } else {
    while (hostEnd != end && *hostEnd != ':') ++hostEnd;
  }
  if (hostEnd == text || memchr(text, '@', static_cast<size_t>(hostEnd - text))) return false;
  out = {text, static_cast<size_t>(hostEnd - text), defaultPort};
  if (hostEnd == end) return true;
  if (*hostEnd != ':' || end - hostEnd > 6) return false;
  uint32_t port = 0;
  for (const char* p = hostEnd + 1; p != end; ++p) {
    if (*p < '0' || *p > '9') return false;
    port = port * 10 + static_cast<uint32_t>(*p - '0');
  }
  if (port > 65535) return false;
  if (hostEnd + 1 != end) out.port = port;
  return true;
}

// The authority of an http or https URL; an Origin is that and no more, a
// Referer may go on with a path, query or fragment. *defaultPort is the
// scheme's.
bool ParseUrl(const char* url, bool pathAllowed, uint32_t* defaultPort, Authority& out) {
  const char* colon = strchr(url, ':');
  if (!colon || strncmp(colon, "://", 3) != 0) return false;
  char scheme[6] = {};
  if (colon - url >= static_cast<ptrdiff_t>(sizeof scheme)) return false;
  memcpy(scheme, url, static_cast<size_t>(colon - url));
  if (EqualsIgnoringCase(scheme, "http")) *defaultPort = 80;
  else if (EqualsIgnoringCase(scheme, "https")) *defaultPort = 443;
  else return false;
  const char* start = colon + 3;
  const char* end = start + strcspn(start, pathAllowed ? "/?#" : "");
  if (!pathAllowed && *end) return false;
  return ParseAuthority(start, end, *defaultPort, out);
}

bool NamesTheDevice(const char* url, bool pathAllowed, const char* hostHeader) {
  uint32_t defaultPort = 0;
  Authority from, device;
  if (!hostHeader || !ParseUrl(url, pathAllowed, &defaultPort, from)) return false;
  if (!ParseAuthority(hostHeader, hostHeader + strlen(hostHeader), defaultPort, device))
    return false;
  // Host names are ASCII here (a browser sends the punycode form).
  return from.hostLength == device.hostLength && from.port == device.port &&
         strncasecmp(from.host, device.host, from.hostLength) == 0;
}

bool FetchSiteIs(const CgiEnvironment& env, const char* value) {
  return env.secFetchSite && EqualsIgnoringCase(env.secFetchSite, value);
}

}  // namespace

const char* CrossSiteRefusal(const CgiEnvironment& env) {
  const bool get = EqualsIgnoringCase(env.requestMethod, "get");
  if (!get && !EqualsIgnoringCase(env.requestMethod, "post")) return kMethodNotAllowed;
  if (FetchSiteIs(env, "cross-site") || FetchSiteIs(env, "same-site")) return kCrossSite;
  if (env.origin) return NamesTheDevice(env.origin, false, env.host) ? nullptr : kCrossSite;
  if (env.referer) return NamesTheDevice(env.referer, true, env.host) ? nullptr : kCrossSite;
  if (get && !FetchSiteIs(env, "same-origin") && !FetchSiteIs(env, "none")) return kCrossSite;
  return nullptr;
}
