# What scripts/check-macos builds beside the program.
set(SELDIAL_CHECK_MACOS ${CMAKE_CURRENT_LIST_DIR})
cmake_language(DEFER CALL include ${SELDIAL_CHECK_MACOS}/ExtraTargets.cmake)
