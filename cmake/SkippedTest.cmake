# A test that stands in for one that needs what was not found: it is skipped and says why.
function(filter_common_skipped_test name missing)
  set(why "skipped: ${missing} was not found at configuration")
  message(STATUS "Test ${name} will be ${why}")
  add_test(NAME ${name} COMMAND ${CMAKE_COMMAND} -E echo ${why})
  set_tests_properties(${name} PROPERTIES SKIP_REGULAR_EXPRESSION "^skipped")
endfunction()
