# The C interface as C sees it: its headers, its exported names, and programs in C.

include(${PROJECT_SOURCE_DIR}/cmake/StrictC.cmake)

# ------------------------------------------------------------------------------------------ headers

# Each header alone, and all of them in two orders, in both languages: it is enough that they
# compile.
add_library(c_headers OBJECT)
target_link_libraries(c_headers PRIVATE filter_common)
target_compile_options(c_headers PRIVATE -Wall -Wextra -Wpedantic -Werror
  $<$<COMPILE_LANGUAGE:C>:-Wstrict-prototypes>)
set_target_properties(c_headers PROPERTIES C_STANDARD 11 C_EXTENSIONS OFF)

function(filter_common_compile_headers name)
  list(TRANSFORM ARGN REPLACE "(.+)" "#include <\\1>\n" OUTPUT_VARIABLE includes)
  list(JOIN includes "" content)
  foreach(language c cpp)
    set(unit ${CMAKE_CURRENT_BINARY_DIR}/c_headers/${name}.${language})
    file(CONFIGURE OUTPUT ${unit} CONTENT "${content}" @ONLY)
    target_sources(c_headers PRIVATE ${unit})
  endforeach()
endfunction()

set(c_headers filter_types.h filter_names.h
  filter_matches_c.h filter_actions_c.h filter_entries_c.h filter_groups_c.h filter_refusals_c.h)
foreach(header IN LISTS c_headers)
  cmake_path(GET header STEM name)
  filter_common_compile_headers(${name} ${header})
endforeach()
filter_common_compile_headers(forwards ${c_headers})
list(REVERSE c_headers)
filter_common_compile_headers(backwards ${c_headers})

# The files that C reads for them are files of C.
separate_arguments(c_flags NATIVE_COMMAND "${CMAKE_C_FLAGS}")
add_test(NAME c_headers.pull_in_no_cplusplus
  COMMAND ${CMAKE_C_COMPILER} ${c_flags} -std=c11
    "-I$<JOIN:$<TARGET_PROPERTY:c_headers,INCLUDE_DIRECTORIES>,;-I>"
    -M ${CMAKE_CURRENT_BINARY_DIR}/c_headers/forwards.c
  COMMAND_EXPAND_LISTS)
set_tests_properties(c_headers.pull_in_no_cplusplus PROPERTIES FAIL_REGULAR_EXPRESSION "/c\\+\\+/")

# ------------------------------------------------------------------------------------------ exports

add_library(c_signatures OBJECT c_signatures.cpp)
target_link_libraries(c_signatures PRIVATE filter_common)
filter_common_warnings(c_signatures)

set(compare_symbols ${CMAKE_COMMAND} -D NM=${CMAKE_NM}
  -D GOLDEN=${CMAKE_CURRENT_SOURCE_DIR}/golden/c_symbols.txt)
set(compare_symbols_script -P ${CMAKE_CURRENT_SOURCE_DIR}/CompareSymbols.cmake)
add_test(NAME c_symbols.exported
  COMMAND ${compare_symbols} -D LIBRARY=$<TARGET_FILE:filter_common> ${compare_symbols_script})

# ----------------------------------------------------------------------------------------- programs

filter_common_c_program(c_interface_test c_interface_test.c c_refusals_test.c)
add_test(NAME c_interface_test COMMAND c_interface_test)
add_test(NAME c_symbols.called_from_c
  COMMAND ${compare_symbols} -D CALLER=$<TARGET_FILE:c_interface_test> ${compare_symbols_script})

# All that an example writes, against the golden file of its name.
function(filter_common_example_test name)
  if(TARGET ${name})
    add_test(NAME example.${name}
      COMMAND ${CMAKE_COMMAND}
        -D "COMMAND=${CMAKE_CROSSCOMPILING_EMULATOR};$<TARGET_FILE:${name}>"
        -D GOLDEN=${CMAKE_CURRENT_SOURCE_DIR}/golden/${name}.txt
        -P ${CMAKE_CURRENT_SOURCE_DIR}/CompareOutput.cmake)
  endif()
endfunction()
filter_common_example_test(typical_rule_c)
# It prints a length that depends on the policer library's bytes.
if(FILTER_COMMON_PLATFORM STREQUAL bundled)
  filter_common_example_test(typical_rule)
endif()
