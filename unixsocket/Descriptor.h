// The descriptor of one socket object and the system calls in progress on it.
//
// The system reuses a descriptor number as soon as it is closed. A thread that has read the number
// but not yet made its call would then read from, or write to, another file. So every call on the
// number is bracketed by a Use, and the number is not closed while a Use exists.
#pragma once

#include <cstdint>
#include <memory>

#include "unixsocket/Mutex.h"

namespace seldial::platform {
class Acceptor;
}

namespace seldial {

/// Holds a descriptor number, or -1 for none. It does not close the descriptor. Any thread; the
/// object must outlive its uses.
class Descriptor {
 public:
  /// Counts the descriptors that were stored in one object. Distinguishes two descriptors with the
  /// same number.
  using Generation = std::uint64_t;

  class Use;

  Descriptor();
  /// No Use may exist any more.
  ~Descriptor();
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  /// The number, or -1. Another thread may take it as soon as it is returned.
  [[nodiscard]] int number() const SELDIAL_EXCLUDES(mutex_);

  /// The generation of the descriptor that was stored last, even if it has been taken since.
  [[nodiscard]] Generation generation() const SELDIAL_EXCLUDES(mutex_);

  /// Whether the descriptor of that generation is still here.
  [[nodiscard]] bool holds(Generation generation) const SELDIAL_EXCLUDES(mutex_);

  /// Stores a new number and returns its generation. The old number is neither closed nor waited
  /// for: call this only while no Use exists.
  Generation store(int number) SELDIAL_EXCLUDES(mutex_);

  /// Takes the number out, for the caller to close: no new call starts on it. Ends the calls in
  /// progress by shutting the socket down, and waits for them. Two kinds of calls cannot be ended,
  /// so it waits until they return: calls on a file that is not a socket, and a connect() that
  /// waits for space in the server's backlog. Preserves errno.
  int take() SELDIAL_EXCLUDES(mutex_);

  /// Ends the calls in progress as take() does, but does not wait for them. Preserves errno.
  void endCalls() SELDIAL_EXCLUDES(mutex_);

 private:
  /// The acceptor of the current descriptor; null without a descriptor. Valid while a Use exists.
  platform::Acceptor* acceptor() SELDIAL_EXCLUDES(mutex_);
  void endUses(int number) SELDIAL_REQUIRES(mutex_);

  mutable Mutex mutex_;
  int number_ SELDIAL_GUARDED_BY(mutex_) = -1;
  std::uint32_t uses_ SELDIAL_GUARDED_BY(mutex_) = 0;
  Generation generation_ SELDIAL_GUARDED_BY(mutex_) = 0;
  std::unique_ptr<platform::Acceptor> acceptor_ SELDIAL_GUARDED_BY(mutex_);  ///< made by accept()
  Condition noUses_;                                                         ///< uses_ became 0
};

/// One system call in progress. Hold it only around the call: never during a callback, and never
/// while closing the same object, which would deadlock. Preserves errno.
class Descriptor::Use {
 public:
  /// Uses the current descriptor.
  explicit Use(Descriptor& descriptor);

  /// Uses the descriptor of that generation; number() is -1 if it is gone.
  Use(Descriptor& descriptor, Generation generation);

  ~Use();
  Use(const Use&) = delete;
  Use& operator=(const Use&) = delete;

  /// The number to make the call on; -1 without a descriptor.
  [[nodiscard]] int number() const { return number_; }

  /// accept(2) on a listening socket: a new descriptor, which the caller then owns, or -1 and
  /// errno.
  [[nodiscard]] int accept() const;

 private:
  Descriptor& descriptor_;
  int number_ = -1;
};

}  // namespace seldial
