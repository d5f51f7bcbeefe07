# seldial_package(TARGET NAME PC_NAME COMPONENT HEADERS FILE... [REQUIRES MODULE...]
#   [FINDS PACKAGE... PC_REQUIRES MODULE...]): makes
# NAME::NAME of a library, and what `cmake --install` (alone: `--component COMPONENT`) puts for
# programs outside: the headers that they may include, the library, and how CMake (as NAME) and
# pkg-config (as PC_NAME) find both. The prefix may be moved afterwards. HEADERS are paths in the
# repository, REQUIRES are the pkg-config modules that the library is linked with; what it is linked
# with by CMake packages is FINDS for CMake and PC_REQUIRES for pkg-config.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
set(SELDIAL_PACKAGE_FILES ${CMAKE_CURRENT_LIST_DIR}/package)

function(seldial_package target name pc_name component)
  cmake_parse_arguments(ARG "" "" "HEADERS;REQUIRES;FINDS;PC_REQUIRES" ${ARGN})
  add_library(${name}::${name} ALIAS ${target})
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
  target_link_libraries(${target} PUBLIC Threads::Threads)
  if(ARG_REQUIRES)
    pkg_check_modules(${name}Requires REQUIRED IMPORTED_TARGET ${ARG_REQUIRES})
    target_link_libraries(${target} PRIVATE PkgConfig::${name}Requires)
  endif()
  list(JOIN ARG_REQUIRES " " requires)
  list(JOIN ARG_PC_REQUIRES " " pc_requires)
  list(TRANSFORM ARG_FINDS PREPEND "find_dependency(")
  list(TRANSFORM ARG_FINDS APPEND ")")
  list(JOIN ARG_FINDS "\n" finds)
  if(SELDIAL_SANITIZE)  # then whoever links the library has to link the sanitizer
    set(sanitizer -fsanitize=${SELDIAL_SANITIZE})
    target_link_options(${target} INTERFACE $<INSTALL_INTERFACE:${sanitizer}>)
  endif()

  if(NOT SELDIAL_INSTALL)
    return()
  endif()
  get_target_property(archive ${target} OUTPUT_NAME)
  if(NOT archive)
    set(archive ${target})
  endif()
  set(package ${CMAKE_CURRENT_BINARY_DIR}/package)
  set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/${name})
  set(prefix_from_pc /)
  cmake_path(RELATIVE_PATH prefix_from_pc BASE_DIRECTORY /${CMAKE_INSTALL_LIBDIR}/pkgconfig)
  write_basic_package_version_file(${package}/${name}ConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
  configure_file(${SELDIAL_PACKAGE_FILES}/Config.cmake.in ${package}/${name}Config.cmake @ONLY)
  configure_file(${SELDIAL_PACKAGE_FILES}/module.pc.in ${package}/${pc_name}.pc @ONLY)

  install(TARGETS ${target} EXPORT ${name}Targets COMPONENT ${component}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/seldial)
  install(EXPORT ${name}Targets NAMESPACE ${name}::
    DESTINATION ${package_dir} COMPONENT ${component})
  install(FILES ${package}/${name}Config.cmake ${package}/${name}ConfigVersion.cmake
    DESTINATION ${package_dir} COMPONENT ${component})
  install(FILES ${package}/${pc_name}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT ${component})
  foreach(header ${ARG_HEADERS})
    cmake_path(GET header PARENT_PATH folder)
    install(FILES ${SELDIAL_ROOT}/${header}
      DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/seldial/${folder} COMPONENT ${component})
  endforeach()
endfunction()
