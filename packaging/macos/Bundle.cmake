# seldial_bundle(TARGET): on macOS, builds the program as the bundle Seldial.app.
set(SELDIAL_BUNDLE_IDENTIFIER org.seldial.Seldial CACHE STRING
  "The bundle identifier. macOS ties the user's consent to it and to the signature")
configure_file(${CMAKE_CURRENT_LIST_DIR}/Info.plist.in ${PROJECT_BINARY_DIR}/Info.plist @ONLY)
set(SELDIAL_ICON ${CMAKE_CURRENT_LIST_DIR}/Seldial.icns)

function(seldial_bundle name)
  if(NOT APPLE)
    return()
  endif()
  target_sources(${name} PRIVATE ${SELDIAL_ICON})
  set_source_files_properties(${SELDIAL_ICON} PROPERTIES MACOSX_PACKAGE_LOCATION Resources)
  set_target_properties(${name} PROPERTIES
    OUTPUT_NAME Seldial
    MACOSX_BUNDLE ON
    MACOSX_BUNDLE_INFO_PLIST ${PROJECT_BINARY_DIR}/Info.plist)
endfunction()
