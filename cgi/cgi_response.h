// The answers: the return page, the bare 204 answer, the error page and the
// line for a name that is no program. The programs only choose among them.
#pragma once

#include <stdio.h>

struct Request;

// Writes "Content-type: <type>\r\n\r\n" to the request's output stream.
void WriteContentType(const Request& request, const char* type);

// The answer after a positive program result: runs the save and change-flag
// commands the form asks for, then copies the page named by "RetPage" and/or
// writes the redirect of "RetReDir". Always 0.
int WriteReturnPage(const Request& request);

// "HTTP/1.1 204 OK" and the header, as one line: the settled answer.
void WriteBareAnswer(const Request& request);

// An alert of the program's name and the request's error buffer, then back.
void WriteErrorPage(const Request& request, const char* programName);

// The answer to a name that is no program.
void WriteUnknownProgram(const Request& request, const char* name);

// Text placed in a page: inside a script's double-quoted string, and as
// HTML text.
void WriteJavaScriptEscaped(FILE* out, const char* text);
void WriteHtmlEscaped(FILE* out, const char* text);

// Values echoed into the return page's script. A module or port id is an
// optional sign and digits, 11 characters at most; a redirect is a path on
// this device: no quote, angle bracket, backslash or control byte, no
// scheme and no "//" host.
bool IsScriptNumber(const char* value);
bool IsLocalRedirect(const char* value);

// Composes the page path for a "RetPage" value into path (128 bytes).
// False when the page must not be opened: the path does not fit, or it
// climbs out of the web root through a ".." segment. The buffer then holds
// the composed path cut to 127 characters.
bool MakeReturnPagePath(const char* value, char* path, int pathSize);
