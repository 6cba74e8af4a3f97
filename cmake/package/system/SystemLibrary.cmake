# Finds the target system's copy of a neighbouring library by the names of its header and library.
# The find modules in this folder include this file and give the name.
set(library ${CMAKE_FIND_PACKAGE_NAME})
find_path(${library}_INCLUDE_DIR ${library}.h)
find_library(${library}_LIBRARY ${library})
mark_as_advanced(${library}_INCLUDE_DIR ${library}_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(${library}
  REQUIRED_VARS ${library}_LIBRARY ${library}_INCLUDE_DIR)

if(${library}_FOUND AND NOT TARGET ${library}::${library})
  add_library(${library}::${library} UNKNOWN IMPORTED)
  set_target_properties(${library}::${library} PROPERTIES
    IMPORTED_LOCATION "${${library}_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${${library}_INCLUDE_DIR}")
endif()
