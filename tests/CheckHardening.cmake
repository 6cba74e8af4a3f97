# Checks that a library or a program was built as cmake/Hardening.cmake says.
# cmake -D READELF=... -D FILE=... -D TYPE=SHARED_LIBRARY|EXECUTABLE -D BUILD=...
#   -D HAS=CANARIES,CHECKED_CALLS -P CheckHardening.cmake

function(read_elf result part)
  execute_process(COMMAND ${READELF} --wide --${part} ${FILE}
    OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
  set(${result} "${output}" PARENT_SCOPE)
endfunction()

read_elf(segments segments)
read_elf(dynamic dynamic)
read_elf(symbols dyn-syms)

function(expect text pattern fault)
  if(NOT text MATCHES "${pattern}")
    message(SEND_ERROR "${FILE}: ${fault}")
  endif()
endfunction()

function(expect_none text pattern fault)
  if(text MATCHES "${pattern}")
    message(SEND_ERROR "${FILE}: ${fault}: ${CMAKE_MATCH_0}")
  endif()
endfunction()

expect("${segments}" "GNU_RELRO" "relocations stay writable")
expect("${dynamic}" "BIND_NOW|Flags:[^\n]* NOW" "symbols are bound late")
expect("${segments}" "GNU_STACK( +0x[0-9a-f]+)+ RW +0x" "the stack can be run")
expect_none("${dynamic}" "TEXTREL" "code is relocated")
if(HAS MATCHES "CANARIES")
  expect("${symbols}" "UND __stack_chk_fail" "no canaries on the stack")
endif()
if(HAS MATCHES "CHECKED_CALLS")
  expect("${symbols}" "UND __[a-z]+_chk[@ \n]" "no calls that check sizes")
endif()
if(TYPE STREQUAL EXECUTABLE)
  expect("${dynamic}" "Flags:[^\n]* PIE" "no position-independent program")
endif()

# Libraries are looked for in folders of the build alone, which installing takes away.
expect_none("${dynamic}" "\\(RPATH\\)[^\n]*" "a path before that of the caller")
string(REGEX MATCH "\\(RUNPATH\\)[^\n]*\\[([^]\n]*)\\]" runpath "${dynamic}")
string(REGEX REPLACE ":+$" "" runpath "${CMAKE_MATCH_1}") # room for the installed path
cmake_path(GET FILE PARENT_PATH origin)
string(REPLACE "$ORIGIN" "${origin}" runpath "${runpath}")
string(REPLACE ":" ";" folders "${runpath}")
foreach(folder IN LISTS folders)
  cmake_path(IS_PREFIX BUILD "${folder}" NORMALIZE inside)
  if(NOT inside)
    message(SEND_ERROR "${FILE}: looks for libraries in \"${folder}\"")
  endif()
endforeach()
