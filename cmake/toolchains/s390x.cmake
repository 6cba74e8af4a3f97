# 64 bits, big-endian.
include(${CMAKE_CURRENT_LIST_DIR}/debian.cmake)
filter_common_debian_toolchain(s390x s390x s390x-linux-gnu qemu-s390x)
