# Adds options to seldial_options that make memory errors harder to exploit, and defines
# seldial_hardened_linking, the link options for programs and shared libraries. On macOS these are
# the defaults. On Debian, hardening-check still reports missing control flow integrity: the start
# files of Debian's C library are not marked for it, so no program is.
option(SELDIAL_HARDENED "Harden the programs and libraries" ON)
add_library(seldial_hardened_linking INTERFACE)
if(NOT SELDIAL_HARDENED OR APPLE)
  return()
endif()

include(CheckCompilerFlag)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
foreach(flag -fstack-protector-strong -fstack-clash-protection -fcf-protection)
  string(MAKE_C_IDENTIFIER "SELDIAL_HAS${flag}" is_known)  # not available on every processor
  check_compiler_flag(CXX ${flag} ${is_known})
  if(${is_known})
    target_compile_options(seldial_options INTERFACE ${flag})
  endif()
endforeach()
# _FORTIFY_SOURCE needs an optimised build, and hides calls from the sanitizers.
if(NOT SELDIAL_SANITIZE)
  target_compile_options(seldial_options INTERFACE
    "$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=3>")
endif()
target_link_options(seldial_hardened_linking INTERFACE LINKER:-z,relro LINKER:-z,now)
