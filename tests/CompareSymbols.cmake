# Compares the C functions of a file with the names that GOLDEN lists, one in a line and sorted.
#
#   cmake -D NM=... -D LIBRARY=... -D GOLDEN=... -P CompareSymbols.cmake
#       what LIBRARY exports: none of the list is missing, and nothing else is there
#   cmake -D NM=... -D CALLER=... -D GOLDEN=... -P CompareSymbols.cmake
#       what the program CALLER takes from shared libraries: none of the list is missing

# Only functions are asked for: C++ mangles all of them, but not its variables.
if(DEFINED LIBRARY)
  set(file ${LIBRARY})
  set(which --defined-only)
  set(kinds "[TWi]")
else()
  set(file ${CALLER})
  set(which --undefined-only)
  set(kinds "U")
endif()

execute_process(COMMAND ${NM} -D -P ${which} ${file}
  OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\n]+" symbols "${symbols}")
set(names)
foreach(symbol IN LISTS symbols)
  # Names that begin with an underscore are those of C++ and of the compiler.
  if(symbol MATCHES "^([A-Za-z][A-Za-z0-9_]*)[^ ]* ${kinds}")
    list(APPEND names ${CMAKE_MATCH_1})
  endif()
endforeach()

file(STRINGS ${GOLDEN} expected)
set(sorted ${expected})
list(SORT sorted)
list(REMOVE_DUPLICATES sorted)
if(NOT expected OR NOT expected STREQUAL sorted)
  message(FATAL_ERROR "${GOLDEN} is not a sorted list of names")
endif()

set(missing ${expected})
list(REMOVE_ITEM missing ${names})
set(added ${names})
list(REMOVE_ITEM added ${expected})
list(JOIN missing "\n  " missingLines)
list(JOIN added "\n  " addedLines)
if(missing)
  message(SEND_ERROR "${file} lacks\n  ${missingLines}")
endif()
if(added AND DEFINED LIBRARY)
  message(SEND_ERROR "${file} exports more than the list:\n  ${addedLines}")
endif()
