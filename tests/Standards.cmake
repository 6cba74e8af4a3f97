# Callers of other standards of C++ than the library's own, and without type information.

add_executable(comparison_test)
target_link_libraries(comparison_test PRIVATE filter_common GTest::gtest_main)
foreach(standard 17 20 23)
  add_library(comparisons_${standard} OBJECT comparison_test.cpp)
  target_link_libraries(comparisons_${standard} PRIVATE filter_common GTest::gtest)
  target_compile_definitions(comparisons_${standard} PRIVATE STANDARD=_C${standard})
  set_target_properties(comparisons_${standard} PROPERTIES CXX_STANDARD ${standard})
  filter_common_warnings(comparisons_${standard})
  target_sources(comparison_test PRIVATE $<TARGET_OBJECTS:comparisons_${standard}>)
endforeach()
add_test(NAME comparison_test COMMAND comparison_test --gtest_brief=1)

# A header that is included alone brings all that it needs.
file(GLOB headers CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}/include
  ${PROJECT_SOURCE_DIR}/include/*.h)
set(lone_headers)
foreach(header IN LISTS headers)
  cmake_path(GET header STEM name)
  file(CONFIGURE OUTPUT lone_headers/${name}.cpp CONTENT "#include <${header}>\n")
  list(APPEND lone_headers ${CMAKE_CURRENT_BINARY_DIR}/lone_headers/${name}.cpp)
endforeach()
add_library(lone_headers OBJECT ${lone_headers})
target_link_libraries(lone_headers PRIVATE filter_common)
filter_common_warnings(lone_headers)

add_executable(no_rtti_test no_rtti_test.cpp)
target_link_libraries(no_rtti_test PRIVATE filter_common)
target_compile_options(no_rtti_test PRIVATE -fno-rtti)
filter_common_warnings(no_rtti_test)
add_test(NAME no_rtti_test COMMAND no_rtti_test)
