# seldial_programs: what a program that starts another one needs of its system.
if(APPLE)
  set(port ${SELDIAL_ROOT}/platform/macos)
else()
  set(port ${SELDIAL_ROOT}/platform/linux)
endif()
seldial_library(seldial_programs ${port}/EndWithParent.cpp ${port}/OwnProgram.cpp)
