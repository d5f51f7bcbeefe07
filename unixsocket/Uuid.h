#pragma once

#include <string>

namespace seldial {

/// A fresh random UUID (version 4): 36 characters, upper-case hexadecimal digits in groups of
/// 8-4-4-4-12. Any thread; costs one short system call. Ends the process if the system has no
/// random numbers to give.
std::string makeUuid();

}  // namespace seldial
