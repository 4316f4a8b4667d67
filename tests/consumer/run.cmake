# Installs the library, moves the installation, and builds and runs hosts against it, by find_package and
# by pkg-config. Run by CTest with BUILD, SOURCE, WORK, LIBDIR, CC, CXX, PKG_CONFIG, C_FLAGS and CXX_FLAGS.
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${ARGN}\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

function(expect program wanted)
  run(${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${WORK}/moved/${LIBDIR} ${program} ${ARGN})
  if(NOT output STREQUAL "${wanted}\n")
    message(FATAL_ERROR "${program} prints '${output}', not '${wanted}'")
  endif()
endfunction()

function(expect_both folder)
  expect(${folder}/host_c "O'Rane" ${SOURCE}/examples/harbour.zon)
  expect(${folder}/host_cpp "Model.depth = 2.5")
endfunction()

file(REMOVE_RECURSE ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/first)
file(RENAME ${WORK}/first ${WORK}/moved)

run(${CMAKE_COMMAND} -S ${SOURCE}/tests/consumer -B ${WORK}/build -DCMAKE_PREFIX_PATH=${WORK}/moved
  -DCMAKE_C_COMPILER=${CC} -DCMAKE_CXX_COMPILER=${CXX}
  -DCMAKE_C_FLAGS=${C_FLAGS} -DCMAKE_CXX_FLAGS=${CXX_FLAGS})
run(${CMAKE_COMMAND} --build ${WORK}/build)
expect_both(${WORK}/build)

if(NOT PKG_CONFIG)
  message(STATUS "pkg-config is not installed: not tried")
  return()
endif()
run(${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${WORK}/moved/${LIBDIR}/pkgconfig
  ${PKG_CONFIG} --cflags --libs zon)
string(STRIP "${output}" flags)
separate_arguments(flags UNIX_COMMAND "${flags}")
separate_arguments(c_flags UNIX_COMMAND "${C_FLAGS}")
separate_arguments(cxx_flags UNIX_COMMAND "${CXX_FLAGS}")
file(MAKE_DIRECTORY ${WORK}/pkg)
run(${CC} -std=c99 -pedantic -Wall -Werror ${c_flags} ${SOURCE}/tests/consumer/host.c ${flags}
  -o ${WORK}/pkg/host_c)
run(${CXX} -std=c++17 -pedantic -Wall -Werror ${cxx_flags} ${SOURCE}/tests/consumer/host.cpp ${flags}
  -o ${WORK}/pkg/host_cpp)
expect_both(${WORK}/pkg)
