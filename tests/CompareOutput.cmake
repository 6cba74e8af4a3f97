# Runs PROGRAM and compares all that it writes, to either output, with the file GOLDEN.
#
#   cmake -D PROGRAM=... -D GOLDEN=... -P CompareOutput.cmake

execute_process(COMMAND ${PROGRAM} OUTPUT_VARIABLE out ERROR_VARIABLE err RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${PROGRAM} ended with ${result}:\n${out}${err}")
endif()
if(NOT err STREQUAL "")
  message(FATAL_ERROR "${PROGRAM} wrote to standard error:\n${err}")
endif()
file(READ ${GOLDEN} expected)
if(NOT out STREQUAL expected)
  message(FATAL_ERROR "${PROGRAM} wrote\n${out}\ninstead of what ${GOLDEN} holds:\n${expected}")
endif()
