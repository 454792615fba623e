// The program table and the dispatch on the name the program was started as.
#pragma once

inline constexpr int kErrorBufferSize = 256;

// A program function fills the error buffer only when it returns a negative
// result. Positive: return page; 0: bare 204 answer; negative: error page.
using CgiProgramFunction = int (*)(char* errorBuffer);

struct CgiProgram {
  const char* name;
  CgiProgramFunction function;
};

// Ordered, ended by a row whose name is null.
extern const CgiProgram CgiProgramTable[];

// The process-wide error buffer shown by the error page.
extern char gErrorBuffer[kErrorBufferSize];

int DispatchCgiProgram(int argc, char** argv);

// Signals the camera-control daemon. 0 sent, -1 no pid file, -2 not sent.
int SendSignalToZrCamCtlD(int sig);

// Signals the video daemon; diagnostics only, no result.
void SendSignalToVmfd(int sig);

int ZrCamCtlApply(char* errorBuffer);
int ZrCamCtlDefault(char* errorBuffer);
