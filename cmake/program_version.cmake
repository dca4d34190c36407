# Writes RESULT from TEMPLATE with VERSION and the commit of SOURCE, run at every build:
#   cmake -D SOURCE=... -D VERSION=... -D TEMPLATE=... -D RESULT=... [-D COMMIT=...] -P program_version.cmake
# The file stays untouched while these stay the same. A tree within somebody else's repository, and
# one that is unpacked without one, have no commit but that of COMMIT.
if(NOT COMMIT)
  set(COMMIT unknown)
  find_package(Git QUIET)
  if(Git_FOUND)
    execute_process(COMMAND ${GIT_EXECUTABLE} -C ${SOURCE} rev-parse --show-prefix
                    RESULT_VARIABLE failure OUTPUT_VARIABLE prefix ERROR_QUIET OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(failure EQUAL 0 AND prefix STREQUAL "")
      execute_process(COMMAND ${GIT_EXECUTABLE} -C ${SOURCE} describe --always --exclude=* --abbrev=12 --dirty=-modified
                      OUTPUT_VARIABLE COMMIT ERROR_QUIET OUTPUT_STRIP_TRAILING_WHITESPACE)
    endif()
  endif()
endif()
configure_file(${TEMPLATE} ${RESULT} @ONLY)
