# Runs a program, through its emulator if it has one, and compares all that it writes, to either
# output, with the file GOLDEN.
#
#   cmake -D COMMAND=... -D GOLDEN=... -P CompareOutput.cmake

execute_process(COMMAND ${COMMAND} OUTPUT_VARIABLE out ERROR_VARIABLE err RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${COMMAND} ended with ${result}:\n${out}${err}")
endif()
if(NOT err STREQUAL "")
  message(FATAL_ERROR "${COMMAND} wrote to standard error:\n${err}")
endif()
file(READ ${GOLDEN} expected)
if(NOT out STREQUAL expected)
  message(FATAL_ERROR "${COMMAND} wrote\n${out}\ninstead of what ${GOLDEN} holds:\n${expected}")
endif()
