// The text of a Wayland clipboard: its types, and reading it.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>

namespace seldial::platform::wayland {

/// The types of UTF-8 text, best first. All stand for the same text; programs differ in which they
/// offer.
inline constexpr const char* kTextTypes[]{"text/plain;charset=utf-8", "text/plain;charset=UTF-8",
                                          "UTF8_STRING", "text/plain"};

/// The index of a type in kTextTypes; their number if it is not text.
[[nodiscard]] std::size_t textTypeRank(const char* type);

/// The type that our empty clipboard offers: clipboard managers would fill a clipboard without any
/// type with an old text.
inline constexpr const char* kEmptyClipboardType = "application/x-seldial-empty";

/// Reads a pipe to its end. Nothing if no data arrives for a second, the end is not reached by
/// `deadline`, there are more than 256 MiB, or a read fails.
std::optional<std::string> readToEnd(int pipe, std::chrono::steady_clock::time_point deadline);

/// Reads the text that an owner writes into a pipe, and repairs invalid UTF-8. Nothing if it is
/// longer than 256 MiB, no data arrives for a second, or the transfer takes longer than 5 seconds:
/// the main thread waits, and an owner could send byte by byte.
[[nodiscard]] std::optional<std::string> readClipboardText(int pipe);

}  // namespace seldial::platform::wayland
