// Response writers: the content-type header and the return page.
#pragma once

// Writes "Content-type: <type>\r\n\r\n" to the request's output stream.
void WriteContentType(const char* type);

// The answer after a positive program result: runs the save and change-flag
// commands the form asks for, then copies the page named by "RetPage" and/or
// writes the redirect of "RetReDir". Always 0.
int WriteReturnPage();

// Composes the page path for a "RetPage" value into path (128 bytes).
// False when the page must not be opened: the path does not fit, or it
// climbs out of the web root through a ".." segment. The buffer then holds
// the composed path cut to 127 characters.
bool MakeReturnPagePath(const char* value, char* path, int pathSize);
