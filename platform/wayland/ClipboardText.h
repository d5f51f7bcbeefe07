// The text of a Wayland clipboard: its types, and how it is read.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>

namespace seldial::platform::wayland {

/// The types of UTF-8 text, best first. All are one text; programs differ in what they offer.
inline constexpr const char* kTextTypes[]{"text/plain;charset=utf-8", "text/plain;charset=UTF-8",
                                          "UTF8_STRING", "text/plain"};

/// The place of a type in kTextTypes; their number when it is no text.
[[nodiscard]] std::size_t textTypeRank(const char* type);

/// What our empty clipboard offers: a clipboard without any type is one that clipboard managers
/// fill with an old text again.
inline constexpr const char* kEmptyClipboardType = "application/x-seldial-empty";

/// Reads a pipe to its end. Nothing when a second passes without a piece, the end is not reached by
/// `deadline`, it is more than 256 MiB, or a read fails.
std::optional<std::string> readToEnd(int pipe, std::chrono::steady_clock::time_point deadline);

/// The text that an owner writes into a pipe, made valid. Nothing when it is longer than 256 MiB, a
/// second passes without a piece of it, or all of it takes longer than 5 seconds: the main thread
/// waits, and an owner can send byte by byte.
[[nodiscard]] std::optional<std::string> readClipboardText(int pipe);

}  // namespace seldial::platform::wayland
