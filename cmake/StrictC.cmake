# A program in strict standard C that links only the library.
function(filter_common_c_program name)
  add_executable(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE filter_common)
  target_compile_options(${name} PRIVATE -Wall -Wextra -Wpedantic -Werror)
  set_target_properties(${name} PROPERTIES
    C_STANDARD 11
    C_STANDARD_REQUIRED ON
    C_EXTENSIONS OFF)
  # The library needs the sanitizers' C++ runtime, which the C compiler does not link.
  if(CMAKE_CXX_FLAGS MATCHES "-fsanitize")
    set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
  endif()
endfunction()
