// The descriptor of one socket object, and the calls that are under way on it.
//
// The system hands out a number again as soon as it is closed. A thread that took the number and
// was held up before its system call would then read from, or write to, somebody else's file. So
// each call on the number is bracketed by a Use, and the number is not closed while a Use lives.
#pragma once

#include <cstdint>
#include <memory>

#include "unixsocket/Mutex.h"

namespace seldial::platform {
class Accepting;
}

namespace seldial {

/// A descriptor number, -1 for none. It does not close the number by itself. Any thread; the object
/// must outlive its uses.
class Descriptor {
 public:
  /// Of none yet.
  Descriptor();
  /// While no Use lives.
  ~Descriptor();
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

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
  /// are ended, by shutting the socket down or as the system lets an accept end, and waited for. A
  /// file that is no socket cannot be shut down: there the wait lasts until the call returns by
  /// itself. So does the wait for a connect() that waits for room in its server's queue. Leaves
  /// errno alone.
  int take() SELDIAL_EXCLUDES(mutex_);

 private:
  /// Of the descriptor that is here now; null when there is none. It stays while a Use lives.
  platform::Accepting* accepting() SELDIAL_EXCLUDES(mutex_);
  void endUses(int number) SELDIAL_REQUIRES(mutex_);

  mutable Mutex mutex_;
  int number_ SELDIAL_GUARDED_BY(mutex_) = -1;
  std::uint32_t uses_ SELDIAL_GUARDED_BY(mutex_) = 0;
  Serial serial_ SELDIAL_GUARDED_BY(mutex_) = 0;
  /// Of this descriptor; null until it accepts.
  std::unique_ptr<platform::Accepting> accepting_ SELDIAL_GUARDED_BY(mutex_);
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

  /// accept(2) on a listening socket: the descriptor of a connection, which is the caller's then,
  /// or -1 and errno.
  [[nodiscard]] int accept() const;

 private:
  Descriptor& descriptor_;
  int number_ = -1;
};

}  // namespace seldial
