// The part of the dynamic linker's interface that the port uses, declared from its documentation.
#pragma once

#include <cstdint>

extern "C" int _NSGetExecutablePath(char* path, std::uint32_t* size);
