// The program table and the dispatch on the name the program was started as.
#pragma once

struct Request;

// A program function fills the request's error buffer only when it returns
// a negative result. 1: return page; 0: bare 204 answer; negative: error
// page; kProgramAnswered: the program wrote its answer itself.
using CgiProgramFunction = int (*)(Request& request);
inline constexpr int kProgramAnswered = 2;

// A daemon woken by a signal once its program has stored the request.
struct Daemon {
  const char* tag;  // the function name its diagnostics start with
  const char* name;
  const char* pidFile;
};
extern const Daemon kZrCamCtlD;
extern const Daemon kVmfd;

struct CgiProgram {
  const char* name;
  CgiProgramFunction function;
  const Daemon* daemon;  // signalled after a result of 0 or more; null: none
  int signal;
};

// Ordered, ended by a row whose name is null.
extern const CgiProgram CgiProgramTable[];

// Runs the program argv[0] names on the request whose environment was
// captured: a request from another site is refused before its form is
// read. The exit status: -1 when the form could not be read, else 0.
int DispatchCgiProgram(Request& request, int argc, char** argv);

// Signals a daemon by its pid file: a regular file, opened without waiting
// or following a link, naming a pid above 1 that /proc, where it tells,
// names the daemon's process. 0 sent, -1 no pid file, -2 not sent.
int SignalDaemon(const Daemon& daemon, int sig);

int ZrCamCtlApply(Request& request);
int ZrCamCtlDefault(Request& request);
