# Debian's cross compiler for another architecture, and qemu in user mode to run what it builds.
# Each architecture's file gives Debian's name for it, the compiler's prefix and the emulator;
# scripts/sysroot fetches the libraries.
macro(filter_common_debian_toolchain name processor triplet emulator)
  set(CMAKE_SYSTEM_NAME Linux)
  set(CMAKE_SYSTEM_PROCESSOR ${processor})
  set(CMAKE_C_COMPILER ${triplet}-gcc)
  set(CMAKE_CXX_COMPILER ${triplet}-g++)

  set(CMAKE_SYSROOT ${CMAKE_CURRENT_LIST_DIR}/../../build/sysroot/${name})
  set(CMAKE_LIBRARY_ARCHITECTURE ${triplet})
  set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
  set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
  set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
  set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

  set(CMAKE_CROSSCOMPILING_EMULATOR ${emulator} -L ${CMAKE_SYSROOT})
endmacro()
