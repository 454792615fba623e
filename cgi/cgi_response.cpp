#include "cgi/cgi_response.h"

#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include "cgi/cgi_request.h"
#include "device/device_paths.h"

namespace {

constexpr int kValueSize = 128;
constexpr int kPathSize = 128;

bool Given(const Form& form, const char* key, char* value) {
  return FormLookup(form, key, value, kValueSize) == LookupOk;
}

bool GivenAsYes(const Form& form, const char* key, char* value) {
  return Given(form, key, value) && strcmp(value, "YES") == 0;
}

void RunCommand(FILE* out, const char* command) {
  fflush(out);  // keep what is written so far ahead of the child's output
  // The commands' exit status is not part of the answer.
  (void)!system(command);
}

// The change flag, made (or its time set) as touch would, but never through
// a link planted at its name, and without waiting on a FIFO there.
void MarkChanged() {
  const int flags = O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
  const int fd = open(device::kChangedFlagFile, flags, 0666);
  if (fd < 0) return;
  futimens(fd, nullptr);
  close(fd);
}

bool HasDotDotSegment(const char* path) {
  for (const char* p = path; (p = strstr(p, "..")) != nullptr; p += 2) {
    const bool startsSegment = p == path || p[-1] == '/';
    const bool endsSegment = p[2] == '\0' || p[2] == '/';
    if (startsSegment && endsSegment) return true;
  }
  return false;
}

void WritePageOpenError(FILE* out, const char* path) {
  fputs("Page Open Error (", out);
  WriteHtmlEscaped(out, path);
  fputc(')', out);
}

void CopyPage(FILE* out, const char* path) {
  FILE* page = fopen(path, "rt");
  if (!page) {
    WritePageOpenError(out, path);
    return;
  }
  for (int c; (c = fgetc(page)) != EOF;) fputc(c, out);
  fclose(page);
}

struct Escape {
  char byte;
  const char* as;
};
// Inside a double-quoted script string, and as HTML text.
constexpr Escape kJavaScriptEscapes[] = {
    {'\\', "\\\\"}, {'"', "\\\""}, {'\n', "\\n"}, {'\r', "\\r"}, {'<', "\\x3c"}};
constexpr Escape kHtmlEscapes[] = {
    {'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}, {'\'', "&#39;"}};

template <size_t N>
void WriteEscaped(FILE* out, const char* text, const Escape (&escapes)[N]) {
  for (const char* p = text; *p; ++p) {
    const char* as = nullptr;
    for (const Escape& e : escapes) as = e.byte == *p ? e.as : as;
    if (as) {
      fputs(as, out);
    } else {
      fputc(*p, out);
    }
  }
}

// A script variable from a number the page posted; anything else is
// reported and left out, as if it had not been posted.
void WriteScriptNumber(const Request& request, const char* key, const char* variable) {
  char value[kValueSize];
  const int found = FormLookup(request.form, key, value, kValueSize);
  if (found == LookupNotFound) return;
  if (found == LookupOk && IsScriptNumber(value)) {
    fprintf(request.cgi.out, "var %s = %s;\n", variable, value);
  } else {
    fprintf(stderr, "[WriteReturnPage] %s refused\n", key);
  }
}

}  // namespace

void WriteJavaScriptEscaped(FILE* out, const char* text) {
  WriteEscaped(out, text, kJavaScriptEscapes);
}

void WriteHtmlEscaped(FILE* out, const char* text) { WriteEscaped(out, text, kHtmlEscapes); }

bool IsScriptNumber(const char* value) {
  const size_t length = strlen(value);
  const char* digits = value + (value[0] == '+' || value[0] == '-');
  if (length > 11 || *digits == '\0') return false;
  return strspn(digits, "0123456789") == strlen(digits);
}

bool IsLocalRedirect(const char* value) {
  for (const unsigned char* p = reinterpret_cast<const unsigned char*>(value); *p; ++p) {
    if (*p < 0x20 || *p == 0x7F || strchr("\"'<>\\", *p)) return false;
  }
  // Browsers drop leading spaces from a URL: " //host" is another host.
  if (value[0] == ' ' || (value[0] == '/' && value[1] == '/')) return false;
  // A ":" before the first "/", "?" or "#" would start a scheme.
  const size_t beforePath = strcspn(value, "/?#");
  return memchr(value, ':', beforePath) == nullptr;
}

void WriteContentType(const Request& request, const char* type) {
  fprintf(request.cgi.out, "Content-type: %s\r\n\r\n", type);
}

void WriteBareAnswer(const Request& request) {
  fputs("HTTP/1.1 204 OK", request.cgi.out);  // no line end here
  WriteContentType(request, "text/html");
}

void WriteErrorPage(const Request& request, const char* programName) {
  FILE* const out = request.cgi.out;
  WriteContentType(request, "text/html");
  fputs("<html>\n<head>\n<script language=javascript>\n", out);
  fprintf(out, "alert(\"%s Cgi Func:[", programName);
  WriteJavaScriptEscaped(out, request.errorBuffer);
  fputs("] return ERROR!!!\");\n", out);
  fputs("history.go(-1);\n</script>\n</head>\n</html>\n", out);
}

void WriteUnknownProgram(const Request& request, const char* name) {
  fprintf(request.cgi.out, "NOT Found Cgi Func: %s<br>\n", name);
}

bool MakeReturnPagePath(const char* value, char* path, int pathSize) {
  const char* format = value[0] == '/' ? "%s%s" : "%s/%s";
  const int length = snprintf(path, static_cast<size_t>(pathSize), format, device::kWebRoot, value);
  if (length < 0 || length >= pathSize) return false;
  return !HasDotDotSegment(path);
}

int WriteReturnPage(const Request& request) {
  const Form& form = request.form;
  FILE* const out = request.cgi.out;
  char value[kValueSize];
  char path[kPathSize];

  if (GivenAsYes(form, "SaveCfg", value)) RunCommand(out, device::kSaveCfgCommand);
  if (GivenAsYes(form, "ZrMkChg", value)) MarkChanged();
  if (GivenAsYes(form, "ZrRmChg", value)) RunCommand(out, device::kClearChangedCommand);

  if (Given(form, "RetPage", value)) {
    const bool mayOpen = MakeReturnPagePath(value, path, kPathSize);
    fputs("<script language=javascript>\n", out);
    WriteScriptNumber(request, "ZrModId", "ZRMODID");
    WriteScriptNumber(request, "PortId", "PORTID");
    fputs("</script>\n", out);
    if (mayOpen) {
      CopyPage(out, path);
    } else {
      WritePageOpenError(out, path);
    }
  }

  // An empty redirect is no redirect.
  const int redirect = FormLookup(form, "RetReDir", value, kValueSize);
  if (redirect == LookupNotFound || redirect == LookupEmpty) return 0;
  if (redirect != LookupOk || !IsLocalRedirect(value)) {
    fputs("[WriteReturnPage] RetReDir refused\n", stderr);
    return 0;
  }
  fputs("<html>\n<head>\n<script language=javascript>\n", out);
  fprintf(out, "location.href=\"%s\";\n", value);
  fputs("</script>\n</head>\n<body>\n</body>\n</html>\n", out);
  return 0;
}
