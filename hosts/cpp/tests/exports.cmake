# A shared library that includes zon.hpp exports no function of it: compiles one with each installed compiler
# and looks at its symbols. Without optimisation templates of the standard library over types of zon remain. A
# host catches the errors that the library throws.
# CTest passes SOURCE, WORK, CXX, CXX_FLAGS, LIBRARY and NM.
separate_arguments(flags UNIX_COMMAND "${CXX_FLAGS}")
get_filename_component(folder ${LIBRARY} DIRECTORY)
set(compilers ${CXX} g++ clang++)
list(REMOVE_DUPLICATES compilers)
if(CXX_FLAGS MATCHES "sanitize=")
  set(compilers ${CXX})  # a sanitized library needs the run-time library of its compiler
endif()
file(MAKE_DIRECTORY ${WORK})
file(WRITE ${WORK}/nothing.cpp "int main() {}\n")
set(plugin ${SOURCE}/hosts/cpp/tests/plugin)
set(passed 0)
foreach(compiler IN LISTS compilers)
  execute_process(COMMAND ${compiler} ${WORK}/nothing.cpp -o ${WORK}/nothing RESULT_VARIABLE status OUTPUT_QUIET
    ERROR_QUIET)
  if(NOT status EQUAL 0)
    continue()
  endif()
  foreach(level -O0 -O3)
    set(standard 17)
    if(level STREQUAL "-O3")
      set(standard 20)  # with most code in place, g++ warns of most
    endif()
    set(build ${compiler} -std=c++${standard} -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror ${flags} ${level}
      -I${SOURCE}/api -I${SOURCE}/hosts/cpp)
    execute_process(RESULT_VARIABLE status COMMAND ${build} -fPIC -shared ${plugin}/settings.cpp
      ${plugin}/checks.cpp ${LIBRARY} -o ${WORK}/libplugin.so)
    if(status EQUAL 0)
      execute_process(RESULT_VARIABLE status COMMAND ${build} ${plugin}/host.cpp ${WORK}/libplugin.so ${LIBRARY}
        -Wl,-rpath,${WORK}:${folder} -o ${WORK}/host)
    endif()
    if(NOT status EQUAL 0)
      message(FATAL_ERROR "${compiler} ${level} does not compile the plug-in or its host")
    endif()
    execute_process(COMMAND ${NM} -D --defined-only ${WORK}/libplugin.so OUTPUT_VARIABLE names)
    set(pattern " _Z(T[A-Z])?N?K?3zon[^\n]*")
    if(level STREQUAL "-O3")
      set(pattern " _Z[^\n]*3zon[^\n]*")
    endif()
    string(REGEX MATCHALL "${pattern}" exported "${names}")
    if(exported OR NOT names MATCHES "CheckSettings")
      message(FATAL_ERROR "${compiler} ${level} exports: ${exported}")
    endif()
    execute_process(COMMAND ${WORK}/host ${SOURCE}/examples/settings.zon OUTPUT_VARIABLE output
      RESULT_VARIABLE status)
    if(NOT status EQUAL 0 OR NOT output MATCHES "settings.zon:4:14: error: too many\n.*\n8\n$")
      message(FATAL_ERROR "${compiler} ${level}: the host prints ${output}")
    endif()
    math(EXPR passed "${passed} + 1")
  endforeach()
endforeach()
if(passed EQUAL 0)
  message(FATAL_ERROR "no compiler works")
endif()
