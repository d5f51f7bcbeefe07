#include "unixsocket/Descriptor.h"

#include <sys/socket.h>

#include <cerrno>
#include <utility>

#include "platform/Sockets.h"

namespace seldial {

Descriptor::Descriptor() = default;
Descriptor::~Descriptor() = default;

int Descriptor::number() const {
  const MutexLock lock(mutex_);
  return number_;
}

Descriptor::Serial Descriptor::serial() const {
  const MutexLock lock(mutex_);
  return serial_;
}

bool Descriptor::holds(Serial serial) const {
  const MutexLock lock(mutex_);
  return serial_ == serial && number_ != -1;
}

Descriptor::Serial Descriptor::store(int number) {
  const MutexLock lock(mutex_);
  number_ = number;
  accepting_ = nullptr;
  return ++serial_;
}

int Descriptor::take() {
  const MutexLock lock(mutex_);
  const int number = std::exchange(number_, -1);
  if (number == -1) return number;
  const int error = errno;
  if (uses_ > 0) endUses(number);
  while (uses_ > 0) noUses_.wait(mutex_);
  accepting_ = nullptr;
  errno = error;
  return number;
}

/// Closing alone would not wake a read or an accept.
void Descriptor::endUses(int number) {
  if (accepting_) {
    accepting_->end(number);
  } else {
    ::shutdown(number, SHUT_RDWR);
  }
}

Descriptor::Use::Use(Descriptor& descriptor) : descriptor_(descriptor) {
  const MutexLock lock(descriptor_.mutex_);
  number_ = descriptor_.number_;
  if (number_ != -1) ++descriptor_.uses_;
}

Descriptor::Use::Use(Descriptor& descriptor, Serial serial) : descriptor_(descriptor) {
  const MutexLock lock(descriptor_.mutex_);
  if (descriptor_.serial_ != serial) return;
  number_ = descriptor_.number_;
  if (number_ != -1) ++descriptor_.uses_;
}

Descriptor::Use::~Use() {
  if (number_ == -1) return;
  const MutexLock lock(descriptor_.mutex_);
  if (--descriptor_.uses_ == 0) descriptor_.noUses_.notifyAll();
}

int Descriptor::Use::accept() const {
  auto* const accepting = number_ == -1 ? nullptr : descriptor_.accepting();
  if (accepting != nullptr) return accepting->accept(number_);
  errno = EBADF;
  return -1;
}

platform::Accepting* Descriptor::accepting() {
  const MutexLock lock(mutex_);
  if (number_ == -1) return nullptr;
  if (!accepting_) accepting_ = platform::makeAccepting();
  return accepting_.get();
}

}  // namespace seldial
