// System services that differ between Linux and macOS: sockets, then small services.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

namespace seldial::platform {

/// Creates a Unix domain stream socket, which is closed on exec and, on macOS, raises no SIGPIPE.
/// Returns its descriptor, which the caller owns; -1 and errno on failure. Any thread.
int makeStreamSocket();

/// write(2) without SIGPIPE on sockets, including those that makeStreamSocket() has not created:
/// returns the number of bytes written, or -1 and errno (EPIPE if the peer is gone). Blocks as
/// write(2) does. Any thread.
std::int64_t writeOnce(int number, const void* bytes, std::size_t size);

/// Writes what fits into the buffer of a socket, like writeOnce() but without blocking: -1 and
/// EAGAIN if nothing fits. Any thread.
std::int64_t writeNow(int number, const void* bytes, std::size_t size);

/// Whether the peer of a stream socket has closed it or shut it down for writing: nothing can
/// arrive any more, so that reading to the end of the stream does not block. Any thread.
bool peerHasClosed(int number);

/// Accepts connections on one listening socket until end() is called. Any thread.
class Acceptor {
 public:
  virtual ~Acceptor() = default;

  /// accept(2) on the listening socket `number`: blocks until there is a connection and returns
  /// its descriptor, which the caller then owns; its flags are those of makeStreamSocket(). -1 and
  /// errno: accept failed, or end() was called.
  virtual int accept(int number) = 0;

  /// Makes every current and future accept() on the listening socket `number` return.
  virtual void end(int number) = 0;
};

std::unique_ptr<Acceptor> makeAcceptor();

/// Fills `bytes` with unpredictable random bytes from the kernel, at most 256. The two processes of
/// a fork() get different bytes. False if the kernel provides none. Any thread.
[[nodiscard]] bool fillWithRandom(void* bytes, std::size_t size);

/// The system's text for an errno value. Any thread, unlike std::strerror().
[[nodiscard]] std::string errorText(int number);

/// The path of the running executable with all symbolic links resolved; empty when unknown.
[[nodiscard]] std::string executablePath();

/// Called in a child process between fork() and exec(): makes the child get SIGTERM when the thread
/// of `parent` that forked it ends, also after exec(). Does not allocate. False, with errno, if the
/// system refuses or `parent` is gone already. On macOS, which has no such feature, it does nothing
/// and returns true.
[[nodiscard]] bool endWithParent(pid_t parent);

/// The program that opens a URI in the application that the user has chosen for it.
[[nodiscard]] const char* uriOpener();

/// The process that listens at a local socket; nothing if none does. Always nothing on macOS. Any
/// thread.
[[nodiscard]] std::optional<pid_t> socketOwner(const std::string& path);

// What follows is the same on both systems.

/// The directory for runtime files that a user's Seldials share; empty if the session has no
/// runtime directory.
inline std::string sharedRuntimeDirectory() {
  const char* const variable = std::getenv("XDG_RUNTIME_DIR");
  std::string directory = variable != nullptr ? variable : "";
  while (directory.ends_with('/')) directory.pop_back();
  return directory.empty() ? "" : directory + "/seldial";
}

/// The path of the socket on which a Seldial waits for "seldial-uc press", in sessions that give
/// programs no hot key. Each connection to it is one use of the hot key; nothing is sent over it.
/// Empty where the session has no runtime directory.
inline std::string pressSocketPath() {
  const std::string directory = sharedRuntimeDirectory();
  return directory.empty() ? "" : directory + "/press";
}

}  // namespace seldial::platform
