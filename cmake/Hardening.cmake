# Gives our own optimised builds the flags that distributions use for releases. If this project is
# part of another, that one decides.
option(FILTER_COMMON_HARDENING "Harden optimised builds" ${PROJECT_IS_TOP_LEVEL})

# Sanitizers have their own checks, which conflict with these.
if(CMAKE_BUILD_TYPE MATCHES "^(Release|RelWithDebInfo|MinSizeRel)$"
    AND NOT "${CMAKE_C_FLAGS} ${CMAKE_CXX_FLAGS}" MATCHES "-fsanitize")
  set(FILTER_COMMON_HARDENED ${FILTER_COMMON_HARDENING})
else()
  set(FILTER_COMMON_HARDENED OFF)
endif()

if(FILTER_COMMON_HARDENED)
  include(CheckCompilerFlag)
  include(CheckLinkerFlag)
  include(CheckPIESupported)

  # Run-time checks where sizes are known, stack canaries, checks of large stack allocations and of
  # indirect jumps (x86, ARM); no format strings from elsewhere.
  add_compile_options("SHELL:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2" -Wformat -Werror=format-security)
  foreach(flag -fstack-protector-strong -fstack-clash-protection
      -fcf-protection -mbranch-protection=standard)
    string(MAKE_C_IDENTIFIER "FILTER_COMMON${flag}" has_flag)
    set(CMAKE_REQUIRED_FLAGS -Werror)
    check_compiler_flag(C ${flag} ${has_flag}_C)
    check_compiler_flag(CXX ${flag} ${has_flag}_CXX)
    unset(CMAKE_REQUIRED_FLAGS)
    if(${has_flag}_C AND ${has_flag}_CXX)
      add_compile_options(${flag})
    endif()
  endforeach()

  # Relocations that are read-only after startup, a non-executable stack, and programs at
  # unpredictable addresses.
  foreach(flag relro now noexecstack)
    check_linker_flag(CXX -Wl,-z,${flag} FILTER_COMMON_LINKER_HAS_${flag})
    if(FILTER_COMMON_LINKER_HAS_${flag})
      add_link_options(-Wl,-z,${flag})
    endif()
  endforeach()
  check_pie_supported(LANGUAGES C CXX)
  set(CMAKE_POSITION_INDEPENDENT_CODE ON)
endif()
