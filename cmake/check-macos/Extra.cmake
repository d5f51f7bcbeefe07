# Included by scripts/check-macos to build more than the program.
set(SELDIAL_CHECK_MACOS ${CMAKE_CURRENT_LIST_DIR})
cmake_language(DEFER CALL include ${SELDIAL_CHECK_MACOS}/ExtraTargets.cmake)
