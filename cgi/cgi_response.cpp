#include "cgi/cgi_response.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "cgi/cgi_request.h"
#include "cgi/device_paths.h"

namespace {

constexpr int kValueSize = 128;
constexpr int kPathSize = 128;

bool Given(const char* key, char* value) { return FormLookup(key, value, kValueSize) == LookupOk; }

bool GivenAsYes(const char* key, char* value) { return Given(key, value) && strcmp(value, "YES") == 0; }

void RunCommand(const char* command) {
  fflush(gCgi.out);  // keep what is written so far ahead of the child's output
  // The commands' exit status is not part of the answer.
  (void)!system(command);
}

bool HasDotDotSegment(const char* path) {
  for (const char* p = path; (p = strstr(p, "..")) != nullptr; p += 2) {
    const bool startsSegment = p == path || p[-1] == '/';
    const bool endsSegment = p[2] == '\0' || p[2] == '/';
    if (startsSegment && endsSegment) return true;
  }
  return false;
}

void CopyPage(const char* path) {
  FILE* page = fopen(path, "rt");
  if (!page) {
    fprintf(gCgi.out, "Page Open Error (%s)", path);
    return;
  }
  for (int c; (c = fgetc(page)) != EOF;) fputc(c, gCgi.out);
  fclose(page);
}

}  // namespace

void WriteContentType(const char* type) { fprintf(gCgi.out, "Content-type: %s\r\n\r\n", type); }

bool MakeReturnPagePath(const char* value, char* path, int pathSize) {
  const char* format = value[0] == '/' ? "%s%s" : "%s/%s";
  const int length = snprintf(path, static_cast<size_t>(pathSize), format, device::kWebRoot, value);
  if (length < 0 || length >= pathSize) return false;
  return !HasDotDotSegment(path);
}

int WriteReturnPage() {
  char value[kValueSize];
  char path[kPathSize];

  if (GivenAsYes("SaveCfg", value)) RunCommand(device::kSaveCfgCommand);
  if (GivenAsYes("ZrMkChg", value)) RunCommand(device::kMarkChangedCommand);
  if (GivenAsYes("ZrRmChg", value)) RunCommand(device::kClearChangedCommand);

  if (Given("RetPage", value)) {
    const bool mayOpen = MakeReturnPagePath(value, path, kPathSize);
    fputs("<script language=javascript>\n", gCgi.out);
    if (Given("ZrModId", value)) fprintf(gCgi.out, "var ZRMODID = %s;\n", value);
    if (Given("PortId", value)) fprintf(gCgi.out, "var PORTID = %s;\n", value);
    fputs("</script>\n", gCgi.out);
    if (mayOpen) {
      CopyPage(path);
    } else {
      fprintf(gCgi.out, "Page Open Error (%s)", path);
    }
  }

  if (!Given("RetReDir", value)) return 0;
  fputs("<html>\n<head>\n<script language=javascript>\n", gCgi.out);
  fprintf(gCgi.out, "location.href=\"%s\";\n", value);
  fputs("</script>\n</head>\n<body>\n</body>\n</html>\n", gCgi.out);
  return 0;
}
