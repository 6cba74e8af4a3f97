# How callers find the two neighbouring libraries: those bundled have packages of their own, those
# of the system are found as this build found them.
set(neighbours limidmgr_decode policer_common)
list(TRANSFORM neighbours REPLACE ".+" "find_dependency(\\0)" OUTPUT_VARIABLE find_dependencies)
set(requires)
set(libs)
set(cflags)
if(FILTER_COMMON_PLATFORM STREQUAL "bundled")
  set(requires ${neighbours})
else()
  list(PREPEND find_dependencies
    "list(PREPEND CMAKE_MODULE_PATH \"\${CMAKE_CURRENT_LIST_DIR}/system\")")
  list(APPEND find_dependencies "list(POP_FRONT CMAKE_MODULE_PATH)")
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/cmake/package/system
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/filter_common COMPONENT development)
  foreach(library IN LISTS neighbours)
    cmake_path(GET ${library}_LIBRARY PARENT_PATH folder)
    if(NOT folder IN_LIST CMAKE_CXX_IMPLICIT_LINK_DIRECTORIES)
      list(APPEND libs -L${folder})
    endif()
    list(APPEND libs -l${library})
    if(NOT ${library}_INCLUDE_DIR IN_LIST CMAKE_CXX_IMPLICIT_INCLUDE_DIRECTORIES)
      list(APPEND cflags -I${${library}_INCLUDE_DIR})
    endif()
  endforeach()
endif()

# Whoever uses the message classes links the runtime of Protocol Buffers and says so; the others
# need not.
filter_common_install(filter_common
  COMPONENTS runtime development
  INCLUDES ${CMAKE_INSTALL_INCLUDEDIR}/filter_common
  VERSION ${PROJECT_VERSION}
  DESCRIPTION ${PROJECT_DESCRIPTION}
  FIND_DEPENDENCIES "find_dependency(Protobuf)" ${find_dependencies}
  REQUIRES ${requires}
  REQUIRES_PRIVATE "protobuf >= ${FILTER_COMMON_PROTOBUF_MINIMUM}"
  LIBS ${libs}
  CFLAGS ${cflags})

install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ ${CMAKE_CURRENT_BINARY_DIR}/messages/
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/filter_common COMPONENT development
  FILES_MATCHING PATTERN "*.h")
install(DIRECTORY ${PROJECT_SOURCE_DIR}/protobuf/
  DESTINATION ${CMAKE_INSTALL_DATADIR}/filter_common/proto COMPONENT development
  FILES_MATCHING PATTERN "*.proto")
