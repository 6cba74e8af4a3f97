# The tests of the command filterctl, and of what it is made of.

foreach(name access_list_test base64_test checks_test description_text_test group_diff_test
    group_json_test group_json_reading_test json_text_test problems_test recognition_test)
  filter_common_test(${name} filterctl_core)
endforeach()
filter_common_test(files_test filterctl_core)
target_link_options(files_test PRIVATE
  LINKER:--wrap=read,--wrap=write,--wrap=fchmod,--wrap=fsync,--wrap=close)

# Those that run the program.
set(words ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:filterctl>)
foreach(name filterctl_test filterctl_commands_test filterctl_changes_test filterctl_inputs_test
    filterctl_list_test filterctl_terminal_test)
  filter_common_test(${name} filterctl_core)
  target_compile_definitions(${name} PRIVATE FILTERCTL_COMMAND="'$<JOIN:${words},' '>'")
  add_dependencies(${name} filterctl)
endforeach()
target_compile_definitions(filterctl_test PRIVATE
  GOLDEN_FOLDER="${CMAKE_CURRENT_SOURCE_DIR}/golden")

# What is installed beside it.
set(completion ${PROJECT_SOURCE_DIR}/tools/filterctl.bash)
set(page ${PROJECT_SOURCE_DIR}/tools/filterctl.1)
add_test(NAME filterctl.completion
  COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/completion_test ${completion} ${words})
find_program(FILTER_COMMON_GROFF groff DOC "The formatter of manual pages, for the tests")
if(FILTER_COMMON_GROFF)
  add_test(NAME filterctl.man_page
    COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/man_page_test ${FILTER_COMMON_GROFF} ${page} ${words})
else()
  include(${PROJECT_SOURCE_DIR}/cmake/SkippedTest.cmake)
  filter_common_skipped_test(filterctl.man_page groff)
endif()

# The modules of the messages are made for the other tests in Python.
if(TARGET python_messages)
  add_test(NAME interop.json
    COMMAND ${FILTER_COMMON_PYTHON} -B ${CMAKE_CURRENT_SOURCE_DIR}/interop/json_test.py
      ${CMAKE_CURRENT_BINARY_DIR}/interop/python ${CMAKE_CURRENT_SOURCE_DIR}/golden ${words})
  set_tests_properties(interop.json PROPERTIES LABELS interop)
endif()
