# The replay driver fails at a finding, tells what is broken, and keeps the input.
# Variables: PROGRAM (fuzz_faulty), DIRECTORY (to work in).
file(REMOVE_RECURSE "${DIRECTORY}")
file(MAKE_DIRECTORY "${DIRECTORY}")
file(WRITE "${DIRECTORY}/good" "nothing")
file(WRITE "${DIRECTORY}/bad" "some fault")

execute_process(COMMAND "${PROGRAM}" good good WORKING_DIRECTORY "${DIRECTORY}"
    RESULT_VARIABLE result OUTPUT_VARIABLE output)
if(NOT result EQUAL 0 OR NOT output STREQUAL "2 inputs, none at fault\n")
    message(FATAL_ERROR "Good inputs: ended with ${result}: ${output}")
endif()

execute_process(COMMAND "${PROGRAM}" good bad WORKING_DIRECTORY "${DIRECTORY}"
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
if(result EQUAL 0 OR output MATCHES "none at fault")
    message(FATAL_ERROR "A bad input went unnoticed: ${output}")
endif()
if(NOT errors MATCHES "Broken promise: no fault\nThe input at fault was written to ([^\n]*)\n")
    message(FATAL_ERROR "A bad input was not reported: ${errors}")
endif()
file(READ "${CMAKE_MATCH_1}" kept)
if(NOT kept STREQUAL "some fault")
    message(FATAL_ERROR "Another input was kept: ${kept}")
endif()

execute_process(COMMAND "${PROGRAM}" 0 WORKING_DIRECTORY "${DIRECTORY}"
    RESULT_VARIABLE result OUTPUT_QUIET)
if(result EQUAL 0)
    message(FATAL_ERROR "A replay of no input at all passed")
endif()
