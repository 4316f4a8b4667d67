# Compares the exported symbols with their list, cmake/libzon0.symbols, and the list with zon.h and
# zonx.h. CTest passes SOURCE, LIBRARY, VERSION, NM and GENSYMBOLS.
cmake_policy(VERSION 3.16)
set(symbols ${SOURCE}/cmake/libzon0.symbols)

# The C functions: in the list, and in a header. A declaration can be broken after its result.
file(STRINGS ${symbols} listed REGEX "^ [A-Za-z].*@ZON_0 ")
list(TRANSFORM listed REPLACE "^ (.*)@.*" "\\1")
list(REMOVE_ITEM listed ZON_0)
set(declared)
foreach(header zon.h zonx.h)
  file(READ ${SOURCE}/api/${header} text)
  string(REGEX REPLACE "\n#ifdef __cplusplus\n}.*" "" text "${text}")
  string(REGEX MATCHALL "\nZON_API [^;(]*[ *\n][A-Za-z0-9]+\\(" found "${text}")
  list(TRANSFORM found REPLACE ".*[ *\n]([A-Za-z0-9]+)\\($" "\\1")
  list(APPEND declared ${found})
endforeach()
foreach(pair "listed;declared" "declared;listed")
  list(GET pair 0 these)
  list(GET pair 1 those)
  set(only ${${these}})
  list(REMOVE_ITEM only ${${those}})
  if(only OR NOT ${these})
    message(SEND_ERROR "${these}, but not ${those}: ${only}")
  endif()
endforeach()

# A static library must leave each hook to the host.
execute_process(COMMAND ${NM} -D ${LIBRARY} OUTPUT_VARIABLE names RESULT_VARIABLE status)
foreach(hook MessageHook ReportHook ReportArgString ReportArgInt)
  if(status EQUAL 0 AND NOT names MATCHES " W ${hook}@")
    message(SEND_ERROR "${hook} is not weak")
  endif()
endforeach()

# The Debian revision makes the version greater than that of the list: only then a missing symbol is an error.
if(NOT GENSYMBOLS)
  message(STATUS "The library is not compared: dpkg-gensymbols is not installed")
else()
  execute_process(COMMAND ${GENSYMBOLS} -plibzon0 -v${VERSION}-1 -c4 -e${LIBRARY} -I${symbols} -O/dev/null
    RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(SEND_ERROR "the exported symbols differ from ${symbols}")
  endif()
endif()
