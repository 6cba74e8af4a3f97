include(${CMAKE_CURRENT_LIST_DIR}/SystemLibrary.cmake)
