# The parts of the repository's build that a library needs when it is not built with the program:
# configured on its own, or as a subdirectory of another project, with or without the other library.
option(SELDIAL_TESTS "Build the tests" OFF)
option(SELDIAL_INSTALL "Install the library" ${PROJECT_IS_TOP_LEVEL})
if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

find_package(Threads REQUIRED)
include(${CMAKE_CURRENT_LIST_DIR}/Warnings.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/Targets.cmake)

if(PROJECT_IS_TOP_LEVEL AND SELDIAL_TESTS)
  include(${CMAKE_CURRENT_LIST_DIR}/Testing.cmake)
endif()
