// Socket operations that differ between Linux and macOS: socket flags, writes without SIGPIPE and
// an accept that can be ended.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace seldial::platform {

/// Sets close-on-exec on a new socket and, on macOS, SO_NOSIGPIPE. Returns `number`; passes on -1
/// and leaves errno alone then. Any thread.
int setSocketFlags(int number);

/// write(2) without SIGPIPE on sockets, also on those that setSocketFlags() has not seen: returns
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
  /// its descriptor, which the caller then owns. -1 and errno: accept failed, or end() was called.
  virtual int accept(int number) = 0;

  /// Makes every accept() on the listening socket `number` return, present and future ones.
  virtual void end(int number) = 0;
};

std::unique_ptr<Acceptor> makeAcceptor();

}  // namespace seldial::platform
