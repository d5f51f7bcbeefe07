# seldial_package(TARGET NAME PC_NAME COMPONENT HEADERS FILE... [REQUIRES MODULE...]
#   [FINDS PACKAGE... PC_REQUIRES MODULE...] [FRAMEWORKS NAME...]):
# defines the target NAME::NAME for a library, and what `cmake --install` (on its own: `--component
# COMPONENT`) installs for other projects: the headers, which they include as
# <seldial/COMPONENT/...>, the library, a CMake package NAME and a pkg-config file PC_NAME. The
# installation is relocatable. HEADERS are paths in the repository. The library links the pkg-config
# modules REQUIRES, the packages FINDS (called PC_REQUIRES in pkg-config), and the macOS frameworks
# FRAMEWORKS.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
set(SELDIAL_PACKAGE_FILES ${CMAKE_CURRENT_LIST_DIR}/package)

# Copies the headers to FOLDER/seldial/COMPONENT, each without its first folder, adapts their
# include directives, and installs them.
function(_seldial_public_headers folder component)
  foreach(header ${ARGN})
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${SELDIAL_ROOT}/${header})
    file(READ ${SELDIAL_ROOT}/${header} text)
    string(REGEX REPLACE "#include \"(platform|${component})/" "#include \"seldial/${component}/"
      text "${text}")
    string(FIND ${header} / slash)
    string(SUBSTRING ${header} ${slash} -1 path)
    set(before "")
    if(EXISTS ${folder}/seldial/${component}${path})
      file(READ ${folder}/seldial/${component}${path} before)
    endif()
    if(NOT text STREQUAL before)
      file(WRITE ${folder}/seldial/${component}${path} "${text}")
    endif()
    string(REGEX REPLACE "/[^/]*$" "" place seldial/${component}${path})
    if(SELDIAL_INSTALL)
      install(FILES ${folder}/seldial/${component}${path}
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${place} COMPONENT ${component})
    endif()
  endforeach()
endfunction()

function(seldial_package target name pc_name component)
  cmake_parse_arguments(ARG "" "" "HEADERS;REQUIRES;FINDS;PC_REQUIRES;FRAMEWORKS" ${ARGN})
  add_library(${name}::${name} ALIAS ${target})
  target_compile_features(${target} PUBLIC cxx_std_20)
  set(headers ${CMAKE_CURRENT_BINARY_DIR}/include)
  _seldial_public_headers(${headers} ${component} ${ARG_HEADERS})
  target_include_directories(${target} INTERFACE $<BUILD_INTERFACE:${headers}>)
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
  target_link_libraries(${target} PUBLIC Threads::Threads)
  if(ARG_REQUIRES)
    pkg_check_modules(${name}Requires REQUIRED IMPORTED_TARGET ${ARG_REQUIRES})
    target_link_libraries(${target} PRIVATE PkgConfig::${name}Requires)
  endif()
  list(TRANSFORM ARG_FRAMEWORKS PREPEND "-framework ")
  target_link_libraries(${target} PUBLIC ${ARG_FRAMEWORKS})
  list(JOIN ARG_FRAMEWORKS " " frameworks)
  get_target_property(type ${target} TYPE)
  if(type STREQUAL SHARED_LIBRARY)
    set(ARG_REQUIRES "")  # the library contains them
  endif()
  list(JOIN ARG_REQUIRES " " requires)
  list(JOIN ARG_PC_REQUIRES " " pc_requires)
  list(TRANSFORM ARG_FINDS PREPEND "find_dependency(")
  list(TRANSFORM ARG_FINDS APPEND ")")
  list(JOIN ARG_FINDS "\n" finds)
  if(SELDIAL_SANITIZE)  # programs that link the library must then link the sanitizer
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
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
  install(EXPORT ${name}Targets NAMESPACE ${name}::
    DESTINATION ${package_dir} COMPONENT ${component})
  install(FILES ${package}/${name}Config.cmake ${package}/${name}ConfigVersion.cmake
    DESTINATION ${package_dir} COMPONENT ${component})
  install(FILES ${package}/${pc_name}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT ${component})
endfunction()
