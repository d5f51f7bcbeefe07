# Cross-compiles for macOS with clang, LLVM's tools and an SDK folder. scripts/check-macos sets
# SELDIAL_SYSROOT (the SDK folder), SELDIAL_STUBS (see link-missing-stubs), SELDIAL_ARCHITECTURE and
# SELDIAL_MACOS (the oldest system).
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR ${SELDIAL_ARCHITECTURE})
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES
  SELDIAL_SYSROOT SELDIAL_STUBS SELDIAL_ARCHITECTURE SELDIAL_MACOS)

set(CMAKE_OSX_SYSROOT ${SELDIAL_SYSROOT})
set(CMAKE_OSX_ARCHITECTURES ${SELDIAL_ARCHITECTURE})
set(CMAKE_OSX_DEPLOYMENT_TARGET ${SELDIAL_MACOS})
set(CMAKE_FIND_ROOT_PATH ${SELDIAL_SYSROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
# CMake must not try to link while it configures: the stubs may be incomplete.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)

foreach(language C CXX OBJCXX)
  set(CMAKE_${language}_COMPILER_TARGET ${SELDIAL_ARCHITECTURE}-apple-macos${SELDIAL_MACOS})
endforeach()
# Debian puts some of the tools only into LLVM's own folder.
execute_process(COMMAND llvm-config --bindir
  OUTPUT_VARIABLE llvm OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
find_program(CMAKE_C_COMPILER clang REQUIRED)
find_program(CMAKE_CXX_COMPILER clang++ REQUIRED)
set(CMAKE_OBJCXX_COMPILER ${CMAKE_CXX_COMPILER})
find_program(CMAKE_AR llvm-ar REQUIRED)
find_program(CMAKE_RANLIB llvm-ranlib REQUIRED)
find_program(CMAKE_INSTALL_NAME_TOOL llvm-install-name-tool HINTS ${llvm} REQUIRED)

set(libcxx "-stdlib=libc++ -nostdinc++ -isystem ${SELDIAL_SYSROOT}/usr/include/c++/v1")
set(CMAKE_CXX_FLAGS_INIT "${libcxx} -Wunguarded-availability")
set(CMAKE_OBJCXX_FLAGS_INIT "${libcxx} -Wunguarded-availability")

# Without a stub of libSystem, symbols may stay undefined; scripts/check-macos looks at them afterwards.
find_program(lld ld64.lld HINTS ${llvm} REQUIRED)
set(linking "--ld-path=${lld} -mlinker-version=609 -Wl,-syslibroot,${SELDIAL_STUBS}")
string(APPEND linking " -Wno-unused-command-line-argument")
if(NOT EXISTS ${SELDIAL_SYSROOT}/usr/lib/libSystem.tbd)
  string(APPEND linking " -nostdlib -Wl,-undefined,dynamic_lookup -lobjc")
endif()
set(CMAKE_EXE_LINKER_FLAGS_INIT "${linking}")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "${linking}")
