// What the socket library reports when something failed.
#pragma once

#include <cstdint>
#include <string>

namespace seldial {

/// The domain of every error of the socket library.
inline constexpr const char* GDUnixSocketErrorDomain = "org.seldial.GDUnixSocket";

/// The codes of the socket library's errors. They are part of its interface and never change.
enum GDUnixSocketError : std::int64_t {
  GDUnixSocketErrorBadSocket = -3024,
  GDUnixSocketErrorBindFailed = -3023,
  GDUnixSocketErrorListenFailed = -3022,  ///< also: the path does not fit into an address
  GDUnixSocketErrorAcceptFailed = -3021,
  GDUnixSocketErrorUnlinkFailed = -3020,
  GDUnixSocketErrorConnectFailed = -3019,
  GDUnixSocketErrorWriteFailed = -3018,
  GDUnixSocketErrorReadFailed = -3017,
  GDUnixSocketErrorCloseFailed = -3016,
  GDUnixSocketErrorUnknownClient = -3015,
};

/// One failure, as a value. Copies are independent; equal when all three parts are.
struct Error {
  std::string domain;
  std::int64_t code = 0;
  std::string localizedDescription;

  /// The library's error for `code`. Its description is the message of the code ("Unknown Error"
  /// for a code outside the table, which is kept all the same), followed by ". " and `info` unless
  /// that is empty. Any thread.
  static Error gduds_errorForCode(std::int64_t code, const std::string& info = {});

  bool operator==(const Error& other) const = default;
};

/// "fd: 5. errno: 32. Broken pipe", from `descriptor` and what errno says now.
std::string errorInfoForDescriptor(std::int32_t descriptor);

}  // namespace seldial
