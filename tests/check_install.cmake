# Installs into a scratch prefix and checks the device layout: one file and
# four links to it under web/cgi-bin.
set(prefix ${BUILD_DIR}/install-check)
file(REMOVE_RECURSE ${prefix})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix}
                OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
set(dir ${prefix}/web/cgi-bin)
if(NOT EXISTS ${dir}/zrcamctlset.cgi OR IS_SYMLINK ${dir}/zrcamctlset.cgi)
  message(FATAL_ERROR "zrcamctlset.cgi is not a regular file")
endif()
foreach(name zrcamctlapply.cgi zrcamctldefault.cgi zrfisheyeset.cgi zrcamctlget.cgi)
  file(READ_SYMLINK ${dir}/${name} target)  # fails unless it is a link
  if(NOT target STREQUAL "zrcamctlset.cgi")
    message(FATAL_ERROR "${name} links to ${target}")
  endif()
endforeach()
file(GLOB entries RELATIVE ${dir} ${dir}/*)
list(LENGTH entries count)
if(NOT count EQUAL 5)
  message(FATAL_ERROR "web/cgi-bin holds ${entries}")
endif()
file(REMOVE_RECURSE ${prefix})
