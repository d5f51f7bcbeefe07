# seldial_dispatch: the background queue alone, all that the socket library needs of a platform.
seldial_library(seldial_dispatch
  ${SELDIAL_ROOT}/platform/BackgroundQueue.cpp
  ${SELDIAL_ROOT}/platform/linux/BackgroundQueue.cpp
  LINK Threads::Threads)
