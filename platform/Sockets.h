// What the systems have not in common where sockets are concerned.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace seldial::platform {

/// Fits a new socket out: programs that this process starts do not inherit it, and a peer that is
/// gone is an error and never a signal. Returns `number`, which stays the caller's; -1 is passed on
/// as it is, with errno as it was. Any thread.
int fittedOut(int number);

/// As write(2): the count of bytes that were taken, or -1 and errno. But on a socket, also on one
/// that was not fitted out, a peer that is gone is an error (EPIPE) and never a signal. Any thread;
/// blocks it as write(2) does.
std::int64_t writeOnce(int number, const void* bytes, std::size_t size);

/// Takes the connections of one listening socket, until it is told to end. Any thread.
class Accepting {
 public:
  virtual ~Accepting() = default;

  /// As accept(2) on the listening socket `number`: blocks until there is a connection, of which
  /// the caller then owns the descriptor. -1 and errno: it failed, or end() was called.
  virtual int accept(int number) = 0;

  /// Makes every accept() on the listening socket `number` return that is under way, and every
  /// later one at once.
  virtual void end(int number) = 0;
};

std::unique_ptr<Accepting> makeAccepting();

}  // namespace seldial::platform
