#pragma once

#include <optional>
#include <string>

#include "api/ClickToDialSource.h"

namespace seldial {

/// A number to dial and where it came from. It has no JSON form.
struct ClickToDialApi {
  std::optional<ClickToDialSource> Source;
  std::optional<std::string> Number;
};

}  // namespace seldial
