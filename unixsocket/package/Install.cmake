# What `cmake --install` (alone: `--component unixsocket`) puts for programs outside: the headers
# that they may include, the library, and how CMake and pkg-config find both. The prefix may be
# moved afterwards.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

target_compile_features(seldial_unixsocket PUBLIC cxx_std_20)
if(SELDIAL_SANITIZE)  # then whoever links the library has to link the sanitizer
  set(sanitizer -fsanitize=${SELDIAL_SANITIZE})
  target_link_options(seldial_unixsocket INTERFACE $<INSTALL_INTERFACE:${sanitizer}>)
endif()

set(package ${CMAKE_CURRENT_BINARY_DIR}/package)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/SeldialUnixSocket)
write_basic_package_version_file(${package}/SeldialUnixSocketConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
set(prefix_from_pc /)
cmake_path(RELATIVE_PATH prefix_from_pc BASE_DIRECTORY /${CMAKE_INSTALL_LIBDIR}/pkgconfig)
configure_file(${CMAKE_CURRENT_LIST_DIR}/seldial-unixsocket.pc.in
  ${package}/seldial-unixsocket.pc @ONLY)

set_target_properties(seldial_unixsocket PROPERTIES EXPORT_NAME SeldialUnixSocket)
install(TARGETS seldial_unixsocket EXPORT SeldialUnixSocketTargets COMPONENT unixsocket
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/seldial)
install(FILES
  Data.h Descriptor.h Error.h GDUnixSocket.h GDUnixSocketClient.h GDUnixSocketServer.h
  GDUnixSocketServerDelegate.h Mutex.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/seldial/unixsocket COMPONENT unixsocket)
install(EXPORT SeldialUnixSocketTargets NAMESPACE SeldialUnixSocket::
  DESTINATION ${package_dir} COMPONENT unixsocket)
install(FILES
  ${CMAKE_CURRENT_LIST_DIR}/SeldialUnixSocketConfig.cmake
  ${package}/SeldialUnixSocketConfigVersion.cmake
  DESTINATION ${package_dir} COMPONENT unixsocket)
install(FILES ${package}/seldial-unixsocket.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT unixsocket)
