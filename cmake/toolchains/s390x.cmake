# 64 bits, big-endian. Compiled with Clang, over the libraries of the cross compiler.
include(${CMAKE_CURRENT_LIST_DIR}/debian.cmake)
filter_common_debian_toolchain(s390x s390x s390x-linux-gnu qemu-s390x)
set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER_TARGET s390x-linux-gnu)
set(CMAKE_CXX_COMPILER_TARGET s390x-linux-gnu)
