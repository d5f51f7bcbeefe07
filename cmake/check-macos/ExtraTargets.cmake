# Checks the tests' declarations of Apple's interfaces against Apple's headers.
add_library(seldial_layouts OBJECT ${SELDIAL_ROOT}/tests/platform/macos/AppleInterfaces.cpp)
target_link_libraries(seldial_layouts PRIVATE seldial_options)

# All objects of all libraries, used by a program or not.
set(libraries seldial_api seldial_app seldial_application seldial_carbon seldial_dispatch seldial_hotkey
  seldial_hotkey_appkit seldial_keyboard_layout seldial_posix seldial_client
  seldial_ucclient seldial_unixsocket)
add_library(seldial_everything SHARED)
foreach(library ${libraries})
  target_sources(seldial_everything PRIVATE $<TARGET_OBJECTS:${library}>)
endforeach()
set_target_properties(seldial_everything PROPERTIES LINKER_LANGUAGE OBJCXX)
target_link_libraries(seldial_everything PRIVATE
  "-framework AppKit" "-framework ApplicationServices" "-framework Carbon"
  "-framework CoreFoundation" "-framework CoreGraphics")
