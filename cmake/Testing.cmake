# GoogleTest, ctest and the environment in which ctest runs the tests of this build.
find_package(GTest REQUIRED)
include(GoogleTest)
enable_testing()
add_custom_target(threaded_tests)  # every test program with the label `threaded`

set(home ${PROJECT_BINARY_DIR}/test-home)
file(MAKE_DIRECTORY ${home})
configure_file(${CMAKE_CURRENT_LIST_DIR}/TestEnvironment.cmake.in
  ${PROJECT_BINARY_DIR}/TestEnvironment.cmake @ONLY)
set_property(DIRECTORY APPEND PROPERTY
  TEST_INCLUDE_FILES ${PROJECT_BINARY_DIR}/TestEnvironment.cmake)
