#pragma once

#include <string>

/// Where everything of this system lives.
namespace seldial {

/// Bytes as they travel through a socket; not text, any byte may occur.
using Data = std::string;

}  // namespace seldial
