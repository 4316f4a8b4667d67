# Runs the example with a copy of harbour.zon: PROGRAM, HARBOUR, in the folder WORK. Compares what it prints and
# what it saves.
file(COPY ${HARBOUR} DESTINATION ${WORK})
execute_process(COMMAND ${PROGRAM} harbour.zon WORKING_DIRECTORY ${WORK}
  RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
string(CONCAT wanted "Ellersund, storm warning lifted at noon\nstep 60 s, 4 threads\n"
  "3 tolerances, the first 0.001\nNorth Quay: harbour.zon:81:13: error: longer than 200 m\n"
  "   Length = 240.0\n            ^~~~~\nFerry Stage: 96.5 m\nBoat Steps: 31 m\n")
if(NOT "${result}${output}${errors}" STREQUAL "0${wanted}")
  message(FATAL_ERROR "${PROGRAM} prints '${output}${errors}', not '${wanted}', and returns ${result}")
endif()
file(READ ${HARBOUR} wanted)
string(REPLACE "Step {seconds} = 60\n" "Step {seconds} = 30\n" wanted "${wanted}")
string(REPLACE "Length = 96.5\n" "Length = 98.25\n" wanted "${wanted}")
file(READ ${WORK}/harbour.zon saved)
if(NOT saved STREQUAL wanted)
  message(FATAL_ERROR "${PROGRAM} saves '${saved}'")
endif()
