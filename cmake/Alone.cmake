# What a library has from the rest of the repository when it is configured by itself.
option(SELDIAL_TESTS "Build the tests" OFF)
# A later compiler may warn of more than those that this is written with.
option(SELDIAL_WERROR "Warnings are errors" OFF)
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

find_package(Threads REQUIRED)
include(${CMAKE_CURRENT_LIST_DIR}/Warnings.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/Targets.cmake)

if(SELDIAL_TESTS)
  find_package(GTest REQUIRED)
  include(GoogleTest)
  enable_testing()
endif()
