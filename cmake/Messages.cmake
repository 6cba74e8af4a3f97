# Protocol Buffers, and the message code generated with its compiler.

set(FILTER_COMMON_PROTOBUF_MINIMUM 3.6.0)

find_package(Protobuf QUIET MODULE)
if(NOT Protobuf_FOUND OR NOT TARGET protobuf::protoc)
  message(FATAL_ERROR
    "Protocol Buffers ${FILTER_COMMON_PROTOBUF_MINIMUM} or later is needed, library and compiler, "
    "and was not found. On Debian: apt-get install libprotobuf-dev protobuf-compiler")
elseif(Protobuf_VERSION VERSION_LESS FILTER_COMMON_PROTOBUF_MINIMUM)
  message(FATAL_ERROR
    "Protocol Buffers ${FILTER_COMMON_PROTOBUF_MINIMUM} or later is needed; "
    "found ${Protobuf_VERSION} in ${Protobuf_INCLUDE_DIRS}")
endif()

# Generates the message classes for the given .proto files, all in one folder, into the build tree,
# and adds them to the target. With PUBLIC, whatever links the target can use them. The files may
# import those of the library.
function(filter_common_messages target visibility)
  set(out ${CMAKE_CURRENT_BINARY_DIR}/messages)
  file(MAKE_DIRECTORY ${out})
  set(imports --proto_path=${PROJECT_SOURCE_DIR}/protobuf)
  set(generated)
  foreach(proto IN LISTS ARGN)
    cmake_path(ABSOLUTE_PATH proto NORMALIZE)
    cmake_path(GET proto PARENT_PATH folder)
    cmake_path(GET proto STEM name)
    add_custom_command(
      OUTPUT ${out}/${name}.pb.cc ${out}/${name}.pb.h
      COMMAND protobuf::protoc --proto_path=${folder} ${imports} --cpp_out=${out} ${proto}
      DEPENDS ${proto} protobuf::protoc
      COMMENT "Generating the messages of ${name}.proto"
      VERBATIM)
    list(APPEND generated ${out}/${name}.pb.cc)
  endforeach()
  set_source_files_properties(${generated} PROPERTIES COMPILE_OPTIONS "-w;-fvisibility=default")
  target_sources(${target} PRIVATE ${generated})
  target_include_directories(${target} SYSTEM ${visibility} $<BUILD_INTERFACE:${out}>)
  target_link_libraries(${target} ${visibility} protobuf::libprotobuf)
endfunction()
