# FILTER_COMMON_PYTHON: the first Python found with Protocol Buffers, for the tests.

function(filter_common_has_protobuf result python)
  execute_process(COMMAND ${python} -c "import google.protobuf"
    RESULT_VARIABLE status OUTPUT_QUIET ERROR_QUIET)
  if(NOT status EQUAL 0)
    set(${result} FALSE PARENT_SCOPE)
  endif()
endfunction()
find_program(FILTER_COMMON_PYTHON python3 VALIDATOR filter_common_has_protobuf
  DOC "A Python with Protocol Buffers, for the tests")
