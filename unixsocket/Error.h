// What the socket library reports when something failed.
#pragma once

#include <cstdint>
#include <string>

namespace seldial {

/// The domain of every error of the socket library.
inline constexpr const char* GDUnixSocketErrorDomain = "org.seldial.GDUnixSocket";

/// The codes of the socket library's errors. They are part of its interface and never change.
enum GDUnixSocketError : std::int64_t {
  GDUnixSocketErrorBadSocket = -3024,      ///< "Bad socket": none could be made, or there is none
  GDUnixSocketErrorBindFailed = -3023,     ///< "Failed to bind socket"
  GDUnixSocketErrorListenFailed = -3022,   ///< "Failed to listen on socket"; also, of servers and
                                           ///< clients: the path does not fit into an address
  GDUnixSocketErrorAcceptFailed = -3021,   ///< "Failed to accept connection, closing socket"
  GDUnixSocketErrorUnlinkFailed = -3020,   ///< "Failed to unlink socket": its file stays
  GDUnixSocketErrorConnectFailed = -3019,  ///< "Failed to connect to socket"
  GDUnixSocketErrorWriteFailed = -3018,    ///< "Failed to write to socket"
  GDUnixSocketErrorReadFailed = -3017,     ///< "Failed to read from socket"
  GDUnixSocketErrorCloseFailed = -3016,    ///< "Failed to close socket"
  GDUnixSocketErrorUnknownClient = -3015,  ///< "Unknown client. It is either disconnected or never
                                           ///< existed"
};

/// One failure, as a value. Copies are independent; equal when all three parts are.
struct Error {
  std::string domain;                ///< of the library's errors, GDUnixSocketErrorDomain
  std::int64_t code = 0;             ///< of the library's errors, a GDUnixSocketError
  std::string localizedDescription;  ///< for people: one line of English, always the same but for
                                     ///< the system's own texts in it

  /// The library's error for `code`. Its description is the message of the code ("Unknown Error"
  /// for a code outside the table, which is kept all the same), followed by ". " and `info` unless
  /// that is empty. Any thread.
  static Error gduds_errorForCode(std::int64_t code, const std::string& info = {});

  /// Whether domain, code and description are the same.
  bool operator==(const Error& other) const = default;
};

/// "fd: 5. errno: 32. Broken pipe", from `descriptor`, which may be any number, and what the
/// calling thread's errno says now. Any thread.
std::string errorInfoForDescriptor(std::int32_t descriptor);

}  // namespace seldial
