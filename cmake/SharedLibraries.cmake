# A shared library names all that it needs of others, or is not linked. Sanitizers leave that to the
# program.
if(NOT "${CMAKE_C_FLAGS} ${CMAKE_CXX_FLAGS}" MATCHES "-fsanitize")
  include(CheckLinkerFlag)
  check_linker_flag(CXX -Wl,-z,defs FILTER_COMMON_LINKER_HAS_defs)
  if(FILTER_COMMON_LINKER_HAS_defs)
    string(APPEND CMAKE_SHARED_LINKER_FLAGS " -Wl,-z,defs")
  endif()
endif()
