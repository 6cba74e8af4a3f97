# 64 bits, unsigned char.
include(${CMAKE_CURRENT_LIST_DIR}/debian.cmake)
filter_common_debian_toolchain(arm64 aarch64 aarch64-linux-gnu qemu-aarch64)
