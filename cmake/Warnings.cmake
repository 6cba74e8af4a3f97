# The warnings that our own code must be free of. Generated code is exempt.
function(filter_common_warnings target)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Woverloaded-virtual>
    # What GCC 7.1 changed for 32-bit ARM concerns nobody here: all is compiled by later ones.
    $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-psabi>)
endfunction()
