# The JSON library of this machine, which is headers alone, without what lies beside it in
# /usr/include: scripts/check-macos gives a folder with a link to it.
add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED)
target_include_directories(nlohmann_json::nlohmann_json SYSTEM INTERFACE ${SELDIAL_JSON_HEADERS})
