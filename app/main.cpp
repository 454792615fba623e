// One executable, four CGI programs: the name it is started as picks the job.
#include "app/programs.h"
#include "cgi/cgi_request.h"

int main(int argc, char** argv) {
  Request request = {};
  ReadCgiEnvironment(request);
  const int result = DispatchCgiProgram(request, argc, argv);
  FreeForm(request.form);
  return result;
}
