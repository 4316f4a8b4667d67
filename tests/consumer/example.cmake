# Runs a host that loads, changes and saves harbour.zon: PROGRAM [SCRIPT], in the folder WORK. The hosts of several
# languages do the same. SOURCE is the folder of the project.
set(wanted "Ellersund, storm warning lifted at noon\nstep 60 s, 4 threads\n3 tolerances, the first 0.0010\n"
  "North Quay: 240.0 m\nharbour.zon:81:13: error: longer than 200 m\n   Length = 240.0\n            ^~~~~\n"
  "Ferry Stage: 96.5 m\nBoat Steps: 31.0 m\n")
string(CONCAT wanted ${wanted})
file(COPY ${SOURCE}/examples/harbour.zon DESTINATION ${WORK})
execute_process(COMMAND ${PROGRAM} ${SCRIPT} harbour.zon WORKING_DIRECTORY ${WORK}
  RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
if(NOT "${result}${output}${errors}" STREQUAL "0${wanted}")
  message(FATAL_ERROR "${PROGRAM} prints '${output}${errors}', not '${wanted}', and returns ${result}")
endif()
file(READ ${SOURCE}/examples/harbour.zon wanted)
string(REPLACE "Step {seconds} = 60\n" "Step {seconds} = 30\n" wanted "${wanted}")
string(REPLACE "Length = 96.5\n" "Length = 98.25\n" wanted "${wanted}")
file(READ ${WORK}/harbour.zon saved)
if(NOT saved STREQUAL wanted)
  message(FATAL_ERROR "${PROGRAM} saves '${saved}'")
endif()
