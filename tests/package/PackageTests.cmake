# package_tests(NAME LIBRARY MODULE EXAMPLES TRY...): a library of this repository as somebody
# outside of it meets it: installed alone from its folder, found by CMake and, as MODULE, by
# pkg-config, also after a move. Each time the examples are built with it, and TRY is run with their
# directory.
set(package_scripts ${CMAKE_CURRENT_LIST_DIR})

function(package_tests name library module examples)
  set(installed ${CMAKE_CURRENT_BINARY_DIR}/installed)
  set(by_cmake ${package_scripts}/by_find_package ${examples})
  set(by_pkg_config ${package_scripts}/by_pkg_config ${examples})
  add_test(NAME ${name}.InstallsByItself
    COMMAND ${package_scripts}/install ${SELDIAL_ROOT}/${library} ${installed})
  add_test(NAME ${name}.IsFoundByCMake
    COMMAND ${by_cmake} ${installed}/prefix ${CMAKE_CXX_COMPILER} ${ARGN})
  add_test(NAME ${name}.IsFoundByPkgConfig
    COMMAND ${by_pkg_config} ${installed}/prefix ${module} ${ARGN})
  add_test(NAME ${name}.IsFoundByCMakeAfterAMove
    COMMAND ${by_cmake} ${installed}/moved ${CMAKE_CXX_COMPILER} ${ARGN})
  add_test(NAME ${name}.IsFoundByPkgConfigAfterAMove
    COMMAND ${by_pkg_config} ${installed}/moved ${module} ${ARGN})

  set(users ${name}.IsFoundByCMake ${name}.IsFoundByPkgConfig
    ${name}.IsFoundByCMakeAfterAMove ${name}.IsFoundByPkgConfigAfterAMove)
  set_tests_properties(${name}.InstallsByItself ${users} PROPERTIES
    TIMEOUT 600 ENVIRONMENT CMAKE_GENERATOR=${CMAKE_GENERATOR})
  set_tests_properties(${name}.InstallsByItself PROPERTIES FIXTURES_SETUP ${name})
  set_tests_properties(${users} PROPERTIES FIXTURES_REQUIRED ${name})
endfunction()

# reference_test(NAME LIBRARY): the library's reference can be made, and lacks no public name.
function(reference_test name library)
  add_test(NAME ${name}.LeavesNoPublicNameOut
    COMMAND ${CMAKE_COMMAND} -E env SELDIAL_REFERENCE=${CMAKE_CURRENT_BINARY_DIR}/reference
      doxygen docs/${library}/Doxyfile
    WORKING_DIRECTORY ${SELDIAL_ROOT})
endfunction()
