// One executable, four CGI programs: the name it is started as picks the job.
#include "app/programs.h"
#include "cgi/cgi_request.h"

int main(int argc, char** argv) {
  if (ReadCgiRequest() != 0) {
    FreeForm();
    return -1;
  }
  const int result = DispatchCgiProgram(argc, argv);
  FreeForm();
  return result;
}
