# Tests the libraries of this repository as other projects use them.
set(package_scripts ${CMAKE_CURRENT_LIST_DIR})

function(_package_test name)
  add_test(NAME ${name} COMMAND ${ARGN})
  set_tests_properties(${name} PROPERTIES
    TIMEOUT 600 ENVIRONMENT CMAKE_GENERATOR=${CMAKE_GENERATOR})
endfunction()

# package_install_test(NAME LIBRARY): the library in that folder installs on its own.
function(package_install_test name library)
  set(SELDIAL_INSTALLED ${CMAKE_CURRENT_BINARY_DIR}/installed PARENT_SCOPE)
  _package_test(${name}.InstallsByItself
    ${package_scripts}/install ${SELDIAL_ROOT}/${library} ${CMAKE_CURRENT_BINARY_DIR}/installed)
  set_tests_properties(${name}.InstallsByItself PROPERTIES FIXTURES_SETUP ${name})
endfunction()

# package_user_tests(NAME INSTALLATION MODULE EXAMPLES TRY...): what was installed last, by the test
# INSTALLATION, is found by CMake and, as MODULE, by pkg-config, also after a move. Each time the
# examples are built with it, and TRY is run with their directory.
function(package_user_tests name installation module examples)
  foreach(place prefix moved)
    set(suffix "")
    if(place STREQUAL moved)
      set(suffix AfterAMove)
    endif()
    set(where ${SELDIAL_INSTALLED}/${place})
    _package_test(${name}.IsFoundByCMake${suffix}
      ${package_scripts}/by_find_package ${examples} ${where} ${CMAKE_CXX_COMPILER} ${ARGN})
    _package_test(${name}.IsFoundByPkgConfig${suffix}
      ${package_scripts}/by_pkg_config ${examples} ${where} ${module} ${ARGN})
    set_tests_properties(${name}.IsFoundByCMake${suffix} ${name}.IsFoundByPkgConfig${suffix}
      PROPERTIES FIXTURES_REQUIRED ${installation})
  endforeach()
endfunction()

# package_shared_test(NAME LIBRARY MODULE EXAMPLES TRY...): the library in that folder works as a
# shared library.
function(package_shared_test name library module examples)
  _package_test(${name}.IsSharedByChoice
    ${package_scripts}/as_shared ${CMAKE_CURRENT_BINARY_DIR}/shared
    ${SELDIAL_ROOT}/${library} ${examples} ${module} ${ARGN})
endfunction()

# package_subproject_test(NAME HOW LIBRARIES [TRY...]): the libraries in these folders, separated by
# commas, work in another project by HOW, subdirectory (add_subdirectory) or fetch
# (FetchContent). Without TRY the project is only configured.
function(package_subproject_test name how libraries)
  _package_test(${name}
    ${package_scripts}/as_subproject ${CMAKE_CURRENT_BINARY_DIR}/${name}
    ${how} ${libraries} ${CMAKE_CXX_COMPILER} ${ARGN})
endfunction()

# reference_test(NAME LIBRARY): the library's reference can be generated and contains every public name.
function(reference_test name library)
  add_test(NAME ${name}.LeavesNoPublicNameOut
    COMMAND ${package_scripts}/make_reference
      ${library} ${PROJECT_BINARY_DIR} ${CMAKE_CURRENT_BINARY_DIR}/reference)
endfunction()
