# What Info.plist.in is filled in with, besides the project's version.
set(SELDIAL_BUNDLE_IDENTIFIER org.seldial.Seldial CACHE STRING
  "The bundle's identifier: macOS knows the user's consent by it and by the signature")
