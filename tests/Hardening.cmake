# What the flags of cmake/Hardening.cmake leave in the libraries and programs.
if(FILTER_COMMON_HARDENED AND CMAKE_READELF)
  # CANARIES: it has arrays on the stack. CHECKED_CALLS: it calls functions that check sizes at run
  # time; where the compiler knows that all sizes fit, it calls none.
  function(filter_common_hardening_test target)
    if(TARGET ${target})
      add_test(NAME hardening.${target}
        COMMAND ${CMAKE_COMMAND} -D READELF=${CMAKE_READELF} -D FILE=$<TARGET_FILE:${target}>
          -D TYPE=$<TARGET_PROPERTY:${target},TYPE> -D BUILD=${PROJECT_BINARY_DIR} -D HAS=${ARGN}
          -P ${CMAKE_CURRENT_SOURCE_DIR}/CheckHardening.cmake)
    endif()
  endfunction()
  filter_common_hardening_test(filter_common CANARIES)
  filter_common_hardening_test(filterctl CANARIES,CHECKED_CALLS)
  if(FILTER_COMMON_PLATFORM STREQUAL bundled)
    filter_common_hardening_test(policer_common CANARIES)
    filter_common_hardening_test(limidmgr_decode CHECKED_CALLS)
  endif()
endif()
