// Socket operations that differ between Linux and macOS: making sockets, writes without SIGPIPE and
// an accept that can be ended.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace seldial::platform {

/// Makes a stream socket of the Unix domain, which is closed on exec and, on macOS, raises no
/// SIGPIPE. Returns its descriptor, which the caller owns; -1 and errno on failure. Any thread.
int makeStreamSocket();

/// write(2) without SIGPIPE on sockets, also on those that this file has not made: returns
/// the number of bytes written, or -1 and errno (EPIPE if the peer is gone). Blocks as write(2)
/// does. Any thread.
std::int64_t writeOnce(int number, const void* bytes, std::size_t size);

/// Writes what fits into the buffer of a socket, like writeOnce() but without blocking: -1 and
/// EAGAIN if nothing fits. Any thread.
std::int64_t writeNow(int number, const void* bytes, std::size_t size);

/// Whether the peer of a stream socket has closed it or shut it down for writing: nothing can
/// arrive any more, so that reading to the end of the stream does not block. Any thread.
bool peerHasClosed(int number);

/// Accepts connections on one listening socket until it is told to end. Any thread.
class Acceptor {
 public:
  virtual ~Acceptor() = default;

  /// accept(2) on the listening socket `number`: blocks until there is a connection and returns
  /// its descriptor, which the caller then owns; its flags are those of makeStreamSocket(). -1 and
  /// errno: accept failed, or end() was called.
  virtual int accept(int number) = 0;

  /// Makes every accept() on the listening socket `number` return, present and future ones.
  virtual void end(int number) = 0;
};

std::unique_ptr<Acceptor> makeAcceptor();

}  // namespace seldial::platform
