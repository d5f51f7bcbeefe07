// The descriptor of one socket object, and the calls that are under way on it.
//
// The system hands out a number again as soon as it is closed. A thread that took the number and
// was held up before its system call would then read from, or write to, somebody else's file. So
// each call on the number is bracketed by a Use, and the number is not closed while a Use lives.
#pragma once

#include <cstddef>
#include <cstdint>

#include "unixsocket/Mutex.h"

namespace seldial {

/// A descriptor number, -1 for none. It does not close the number by itself. Any thread; the object
/// must outlive its uses.
class Descriptor {
 public:
  /// Tells the descriptors that were stored in one object apart, also when their numbers are the
  /// same.
  using Serial = std::uint64_t;

  class Use;

  /// The number, -1 for none. Another thread may take it as soon as it is returned.
  [[nodiscard]] int number() const SELDIAL_EXCLUDES(mutex_);

  /// The serial of the descriptor that was stored last; it stays when that one is taken.
  [[nodiscard]] Serial serial() const SELDIAL_EXCLUDES(mutex_);

  /// Whether the descriptor with that serial is still here.
  [[nodiscard]] bool holds(Serial serial) const SELDIAL_EXCLUDES(mutex_);

  /// Replaces the number, under a new serial. What was there before is neither closed nor waited
  /// for: to be called while nothing is under way.
  Serial store(int number) SELDIAL_EXCLUDES(mutex_);

  /// Takes the number out, for closing: from now on no call starts on it. Calls that are under way
  /// are ended by shutting the socket down, and waited for. A file that is no socket cannot be
  /// shut down: there the wait lasts until the call returns by itself. So does the wait for a
  /// connect() that waits for room in its server's queue. Leaves errno alone.
  int take() SELDIAL_EXCLUDES(mutex_);

 private:
  mutable Mutex mutex_;
  int number_ SELDIAL_GUARDED_BY(mutex_) = -1;
  std::uint32_t uses_ SELDIAL_GUARDED_BY(mutex_) = 0;
  Serial serial_ SELDIAL_GUARDED_BY(mutex_) = 0;
  Condition noUses_;  ///< uses_ became 0
};

/// One system call under way. To be held around the call alone, never around a callback, and never
/// around a close of the same object, which would wait for itself. Leaves errno alone.
class Descriptor::Use {
 public:
  /// Of whatever descriptor is there now.
  explicit Use(Descriptor& descriptor);

  /// Of the descriptor with that serial; number() is -1 when it is gone.
  Use(Descriptor& descriptor, Serial serial);

  ~Use();
  Use(const Use&) = delete;
  Use& operator=(const Use&) = delete;

  /// What to make the call on; -1 when there was no descriptor.
  [[nodiscard]] int number() const { return number_; }

 private:
  Descriptor& descriptor_;
  int number_ = -1;
};

/// Makes programs that this process starts not inherit `number`, and returns it; it stays the
/// caller's. -1 is passed on as it is, with errno as it was. Any thread.
int closedOnExec(int number);

/// As write(2): the count of bytes that were taken, or -1 and errno. But a peer that is gone is an
/// error (EPIPE) and never a signal. Any thread; blocks it as write(2) does.
std::int64_t writeOnce(int number, const void* bytes, std::size_t size);

}  // namespace seldial
