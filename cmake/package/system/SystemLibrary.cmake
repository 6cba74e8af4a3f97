# One of the neighbouring libraries as the target system has it, found by the names of its header
# and of its library: what the find modules of this folder do, which know the name.
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
