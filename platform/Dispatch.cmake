# seldial_dispatch: the background queue, socket operations and small system services: all that the
# socket library needs of a platform.
if(TARGET seldial_dispatch)  # another library of this repository is in the same build
  return()
endif()
if(APPLE)
  set(port ${SELDIAL_ROOT}/platform/macos)
else()
  set(port ${SELDIAL_ROOT}/platform/linux)
endif()
seldial_library(seldial_dispatch
  ${SELDIAL_ROOT}/platform/BackgroundQueue.cpp ${port}/BackgroundQueue.cpp
  ${port}/System.cpp ${port}/Sockets.cpp
  LINK Threads::Threads)
