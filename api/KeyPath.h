// Values of nested dictionaries by a path of keys, such as a.b.c.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "api/JSONValue.h"

namespace seldial {

/// What joins the keys of a path, "." at first. Read at each lookup. Not guarded: change it before
/// other threads look values up.
extern std::string keyPathDelimiter;

/// The value at `keyPath`, split at every occurrence of `delimiter` (not at all when that is
/// empty), exactly as stored, a null too; null when there is none. Only dictionaries are walked
/// into: arrays have no keys. The value belongs to `dictionary`.
[[nodiscard]] const JSONValue* valueForKeyPath(std::string_view keyPath, std::string_view delimiter,
                                               const JSONDictionary& dictionary);

/// The same with the current keyPathDelimiter.
[[nodiscard]] const JSONValue* valueForKeyPath(std::string_view keyPath,
                                               const JSONDictionary& dictionary);

/// The same for a path that is split already. Without any key it gives null and says so in a line
/// on standard output that names `keyPath`.
[[nodiscard]] const JSONValue* valueForKeys(const std::vector<std::string_view>& keys,
                                            std::string_view keyPath,
                                            const JSONDictionary& dictionary);

}  // namespace seldial
