# seldial_options: the warnings of this repository, the hardening options and, if requested, the
# sanitizers. Warnings are errors in the development presets only: other compilers may have more
# warnings.
option(SELDIAL_WERROR "Warnings are errors" OFF)
# The root of the repository, even if one folder is configured on its own or in another project.
cmake_path(GET CMAKE_CURRENT_LIST_DIR PARENT_PATH SELDIAL_ROOT)
if(TARGET seldial_options)  # another library of this repository is in the same build
  return()
endif()
add_library(seldial_options INTERFACE)
target_compile_features(seldial_options INTERFACE cxx_std_20)
target_include_directories(seldial_options INTERFACE ${SELDIAL_ROOT})
target_compile_options(seldial_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
  -Woverloaded-virtual -Wold-style-cast -Wcast-qual -Wformat=2 -Wundef
  $<$<BOOL:${SELDIAL_WERROR}>:-Werror>
  # g++ 12 wrongly reports overlapping copies in std::string (GCC bug 105651).
  $<$<AND:$<COMPILE_LANGUAGE:CXX>,$<CXX_COMPILER_ID:GNU>>:-Wno-restrict>
  $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety -Wthread-safety-beta>)
if(SELDIAL_SANITIZE)
  target_compile_options(seldial_options INTERFACE
    -fsanitize=${SELDIAL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(seldial_options INTERFACE -fsanitize=${SELDIAL_SANITIZE})
endif()
include(${CMAKE_CURRENT_LIST_DIR}/Hardening.cmake)
