# What programs have compiled in or ask the shared library for.

add_library(abi_layout OBJECT abi_layout.cpp)
target_link_libraries(abi_layout PRIVATE filter_common)
filter_common_warnings(abi_layout)

# Sanitizers and coverage bring names of their own.
if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize|--coverage")
  add_test(NAME abi.symbols
    COMMAND ${PROJECT_SOURCE_DIR}/scripts/check-abi --symbols $<TARGET_FILE:filter_common>)
endif()
