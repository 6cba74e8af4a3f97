# What programs have compiled in or ask the shared library for.

add_library(abi_layout OBJECT abi_layout.cpp)
target_link_libraries(abi_layout PRIVATE filter_common)
filter_common_warnings(abi_layout)
