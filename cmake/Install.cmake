# Installs a library as a package of its own: the shared library, a relocatable CMake package and a
# relocatable pkg-config file. Each library installs its headers itself.
#
#   filter_common_install(TARGET
#     COMPONENTS runtime development   # names of the components needed to run and to build programs
#     INCLUDES folder                  # of the headers, below the prefix
#     VERSION version
#     DESCRIPTION text
#     [FIND_DEPENDENCIES line ...]     # CMake code that finds what the target's interface names
#     [REQUIRES module ...]            # pkg-config modules that callers compile and link with
#     [REQUIRES_PRIVATE module ...]    # pkg-config modules that callers compile with
#     [LIBS flag ...] [CFLAGS flag ...])
include(CMakePackageConfigHelpers)

set(filter_common_package_templates ${CMAKE_CURRENT_LIST_DIR}/package)

function(filter_common_install target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "INCLUDES;VERSION;DESCRIPTION"
    "COMPONENTS;FIND_DEPENDENCIES;REQUIRES;REQUIRES_PRIVATE;LIBS;CFLAGS")
  list(POP_FRONT arg_COMPONENTS runtime development)
  set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/${target})
  set(pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
  set(out ${CMAKE_CURRENT_BINARY_DIR}/package)

  # Libraries in one prefix find each other even if the prefix is moved.
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN")
  target_include_directories(${target} PUBLIC $<INSTALL_INTERFACE:${arg_INCLUDES}>)
  install(TARGETS ${target} EXPORT ${target}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
      COMPONENT ${runtime} NAMELINK_COMPONENT ${development})

  install(EXPORT ${target} NAMESPACE ${target}:: FILE ${target}-targets.cmake
    DESTINATION ${package_dir} COMPONENT ${development})
  list(JOIN arg_FIND_DEPENDENCIES "\n" find_dependencies)
  configure_package_config_file(
    ${filter_common_package_templates}/config.cmake.in ${out}/${target}-config.cmake
    INSTALL_DESTINATION ${package_dir} NO_SET_AND_CHECK_MACRO)
  write_basic_package_version_file(${out}/${target}-config-version.cmake
    VERSION ${arg_VERSION} COMPATIBILITY SameMajorVersion)
  install(FILES ${out}/${target}-config.cmake ${out}/${target}-config-version.cmake
    DESTINATION ${package_dir} COMPONENT ${development})

  file(RELATIVE_PATH prefix_from_pkgconfig /${pkgconfig_dir} /)
  string(REGEX REPLACE "/$" "" prefix_from_pkgconfig ${prefix_from_pkgconfig})
  list(JOIN arg_REQUIRES ", " requires)
  list(JOIN arg_REQUIRES_PRIVATE ", " requires_private)
  list(JOIN arg_LIBS " " libs)
  list(JOIN arg_CFLAGS " " cflags)
  configure_file(${filter_common_package_templates}/pkgconfig.pc.in ${out}/${target}.pc @ONLY)
  install(FILES ${out}/${target}.pc DESTINATION ${pkgconfig_dir} COMPONENT ${development})
endfunction()
