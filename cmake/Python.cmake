# FILTER_COMMON_PYTHON: the first Python that has Protocol Buffers; for the tests.

function(filter_common_has_protobuf result python)
  execute_process(COMMAND ${python} -c "import google.protobuf"
    RESULT_VARIABLE status OUTPUT_QUIET ERROR_QUIET)
  if(NOT status EQUAL 0)
    set(${result} FALSE PARENT_SCOPE)
  endif()
endfunction()
find_program(FILTER_COMMON_PYTHON python3 VALIDATOR filter_common_has_protobuf
  DOC "A Python with Protocol Buffers, for the tests")

# A test that stands in for one that needs Python: it is skipped and says why.
function(filter_common_skip_without_python name)
  set(why "skipped: no python3 with the package python3-protobuf was found at configuration")
  message(STATUS "Test ${name} will be ${why}")
  add_test(NAME ${name} COMMAND ${CMAKE_COMMAND} -E echo ${why})
  set_tests_properties(${name} PROPERTIES SKIP_REGULAR_EXPRESSION "^skipped")
endfunction()
