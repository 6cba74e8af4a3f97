# 32 bits, unsigned char.
include(${CMAKE_CURRENT_LIST_DIR}/debian.cmake)
filter_common_debian_toolchain(armhf armv7l arm-linux-gnueabihf qemu-arm)
