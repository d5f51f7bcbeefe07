# seldial_dispatch: the background queue, the socket calls that differ between systems, small system
# services and the standard outputs, which is all that the socket library needs from a platform.
if(TARGET seldial_dispatch)  # another library of this repository is in the same build
  return()
endif()
if(APPLE)
  set(port ${SELDIAL_ROOT}/platform/macos)
else()
  set(port ${SELDIAL_ROOT}/platform/linux)
endif()
seldial_library(seldial_dispatch
  ${port}/BackgroundQueue.cpp ${port}/System.cpp ${SELDIAL_ROOT}/platform/posix/Output.cpp
  LINK Threads::Threads)
