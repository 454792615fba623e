# Fails unless libc.so.6 is the executable's only NEEDED library.
execute_process(COMMAND ${READELF} -d ${EXE} OUTPUT_VARIABLE dynamic COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "Shared library: \\[[^]]*\\]" needed "${dynamic}")
if(NOT needed STREQUAL "Shared library: [libc.so.6]")
  message(FATAL_ERROR "NEEDED is '${needed}', expected only libc.so.6")
endif()
message(STATUS "NEEDED: ${needed}")
if(LIMIT)  # the device build's stripped executable within its limit
  file(SIZE ${EXE}.stripped size)
  if(size GREATER LIMIT)
    message(FATAL_ERROR "${EXE}.stripped is ${size} bytes, more than ${LIMIT}")
  endif()
endif()
