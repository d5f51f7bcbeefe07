# seldial_library(NAME SOURCE... [LINK TARGET...]) and seldial_executable(...): a target with this
# repository's warnings and, in a linting build, with clang-tidy.
include(CMakeParseArguments)

function(_seldial_finish name)
  cmake_parse_arguments(ARG "" "" "LINK" ${ARGN})
  target_sources(${name} PRIVATE ${ARG_UNPARSED_ARGUMENTS})
  target_link_libraries(${name} PUBLIC ${ARG_LINK}
    PRIVATE $<BUILD_INTERFACE:seldial_options>)
  if(SELDIAL_SANITIZE)  # optimisation halves the run time here; without sanitizers the tests build faster without it
    target_compile_options(${name} PRIVATE -O1)
  endif()
  if(SELDIAL_LINT)
    set_target_properties(${name} PROPERTIES CXX_CLANG_TIDY "clang-tidy;--quiet")
  endif()
endfunction()

function(seldial_library name)
  add_library(${name} STATIC)
  _seldial_finish(${name} ${ARGN})
  target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${SELDIAL_ROOT}>)
endfunction()

# seldial_public_library(NAME MAP SOURCE... [LINK TARGET...]): a library for other projects: shared
# with BUILD_SHARED_LIBS, otherwise static. A shared library exports the symbols in the version
# script MAP.
function(seldial_public_library name map)
  add_library(${name})
  _seldial_finish(${name} ${ARGN})
  target_include_directories(${name} PRIVATE $<BUILD_INTERFACE:${SELDIAL_ROOT}>)
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  get_target_property(type ${name} TYPE)
  if(type STREQUAL SHARED_LIBRARY AND NOT APPLE)
    target_link_options(${name} PRIVATE LINKER:--version-script=${map})
    target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:seldial_hardened_linking>)
    set_target_properties(${name} PROPERTIES LINK_DEPENDS ${map})
    if(NOT SELDIAL_SANITIZE)  # the functions of a sanitizer are in the program
      target_link_options(${name} PRIVATE LINKER:--no-undefined)
    endif()
  endif()
endfunction()

function(seldial_executable name)
  add_executable(${name})
  _seldial_finish(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE seldial_hardened_linking)
endfunction()

# seldial_moc(TARGET HEADER...): runs moc on the headers. The generated code is compiled separately,
# without the linter and the warnings.
function(seldial_moc name)
  qt_wrap_cpp(generated ${ARGN})
  add_library(${name}_moc OBJECT ${generated})
  target_include_directories(${name}_moc PRIVATE ${SELDIAL_ROOT})
  target_link_libraries(${name}_moc PRIVATE Qt6::Widgets)
  target_sources(${name} PRIVATE $<TARGET_OBJECTS:${name}_moc>)
endfunction()

# seldial_test(NAME SOURCE... [LINK TARGET...] [LABELS LABEL...]): a GoogleTest program; each of its
# tests is a ctest test. Label `threaded`: also runs under ThreadSanitizer.
function(seldial_test name)
  cmake_parse_arguments(ARG "" "TIMEOUT" "LINK;LABELS" ${ARGN})
  add_executable(${name} ${ARG_UNPARSED_ARGUMENTS})
  target_link_libraries(${name} PRIVATE ${ARG_LINK} seldial_options GTest::gtest_main GTest::gmock)
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 300)
  endif()
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS "${ARG_LABELS}")
  if(threaded IN_LIST ARG_LABELS)
    add_dependencies(threaded_tests ${name})
  endif()
endfunction()
