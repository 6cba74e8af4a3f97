# Adds a test in place of one whose requirements were not found. It is skipped and says why.
function(filter_common_skipped_test name missing)
  set(why "skipped: ${missing} was not found at configuration")
  message(STATUS "Test ${name} will be ${why}")
  add_test(NAME ${name} COMMAND ${CMAKE_COMMAND} -E echo ${why})
  set_tests_properties(${name} PROPERTIES SKIP_REGULAR_EXPRESSION "^skipped")
endfunction()
