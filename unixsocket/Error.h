// Errors of the socket library.
#pragma once

#include <cstdint>
#include <string>

namespace seldial {

/// The domain of every error of the socket library.
inline constexpr const char* GDUnixSocketErrorDomain = "org.seldial.GDUnixSocket";

/// The codes of the socket library's errors, each with its message. They never change.
enum GDUnixSocketError : std::int64_t {
  GDUnixSocketErrorBadSocket = -3024,   ///< "Bad socket": no descriptor, or none could be created
  GDUnixSocketErrorBindFailed = -3023,  ///< "Failed to bind socket"
  GDUnixSocketErrorListenFailed =
      -3022,  ///< "Failed to listen on socket"; servers and clients also
              ///< report it when the path does not fit into an address
  GDUnixSocketErrorAcceptFailed = -3021,   ///< "Failed to accept connection, closing socket"
  GDUnixSocketErrorUnlinkFailed = -3020,   ///< "Failed to unlink socket": the file is still there
  GDUnixSocketErrorConnectFailed = -3019,  ///< "Failed to connect to socket"
  GDUnixSocketErrorWriteFailed = -3018,    ///< "Failed to write to socket"
  GDUnixSocketErrorReadFailed = -3017,     ///< "Failed to read from socket"
  GDUnixSocketErrorCloseFailed = -3016,    ///< "Failed to close socket"
  GDUnixSocketErrorUnknownClient = -3015,  ///< "Unknown client. It is either disconnected or never
                                           ///< existed"
};

/// One error.
struct Error {
  std::string domain;                ///< GDUnixSocketErrorDomain for errors of this library
  std::int64_t code = 0;             ///< a GDUnixSocketError for errors of this library
  std::string localizedDescription;  ///< one line of English, with the system's text of an errno
  int errorNumber = 0;               ///< the errno of the system call that failed; 0 if none did

  /// The library's error for `code`. The description is the message of the code ("Unknown Error"
  /// for a code that is not in the table; the code is kept), followed by ". " and `info` unless
  /// that is empty. Any thread.
  static Error gduds_errorForCode(std::int64_t code, const std::string& info = {},
                                  int errorNumber = 0);

  /// Whether domain, code and description are equal; the errno is part of the description.
  bool operator==(const Error& other) const;
};

/// The library's error for a system call that has just failed on `descriptor`, with the calling
/// thread's errno. Any thread.
Error errorOfFailedCall(std::int64_t code, std::int32_t descriptor);

/// For example "fd: 5. errno: 32. Broken pipe": `descriptor`, which may be any number, and the
/// calling thread's errno with its text. Any thread.
std::string errorInfoForDescriptor(std::int32_t descriptor);

}  // namespace seldial
