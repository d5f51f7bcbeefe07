#include "unixsocket/Descriptor.h"

#include <sys/socket.h>

#include <cerrno>
#include <utility>

#include "platform/System.h"

namespace seldial {

Descriptor::Descriptor() = default;
Descriptor::~Descriptor() = default;

int Descriptor::number() const {
  const MutexLock lock(mutex_);
  return number_;
}

Descriptor::Generation Descriptor::generation() const {
  const MutexLock lock(mutex_);
  return generation_;
}

bool Descriptor::holds(Generation generation) const {
  const MutexLock lock(mutex_);
  return generation_ == generation && number_ != -1;
}

Descriptor::Generation Descriptor::store(int number) {
  const MutexLock lock(mutex_);
  number_ = number;
  acceptor_ = nullptr;
  return ++generation_;
}

int Descriptor::take() {
  const MutexLock lock(mutex_);
  const int number = std::exchange(number_, -1);
  if (number == -1) return number;
  const int error = errno;
  if (uses_ > 0) endUses(number);
  while (uses_ > 0) noUses_.wait(mutex_);
  acceptor_ = nullptr;
  errno = error;
  return number;
}

void Descriptor::endCalls() {
  const MutexLock lock(mutex_);
  const int error = errno;
  if (number_ != -1 && uses_ > 0) endUses(number_);
  errno = error;
}

/// Closing the descriptor would not wake a read or an accept.
void Descriptor::endUses(int number) {
  if (acceptor_) {
    acceptor_->end(number);
  } else {
    ::shutdown(number, SHUT_RDWR);
  }
}

Descriptor::Use::Use(Descriptor& descriptor) : descriptor_(descriptor) {
  const MutexLock lock(descriptor_.mutex_);
  number_ = descriptor_.number_;
  if (number_ != -1) ++descriptor_.uses_;
}

Descriptor::Use::Use(Descriptor& descriptor, Generation generation) : descriptor_(descriptor) {
  const MutexLock lock(descriptor_.mutex_);
  if (descriptor_.generation_ != generation) return;
  number_ = descriptor_.number_;
  if (number_ != -1) ++descriptor_.uses_;
}

Descriptor::Use::~Use() {
  if (number_ == -1) return;
  const MutexLock lock(descriptor_.mutex_);
  if (--descriptor_.uses_ == 0) descriptor_.noUses_.notifyAll();
}

int Descriptor::Use::accept() const {
  auto* const acceptor = number_ == -1 ? nullptr : descriptor_.acceptor();
  if (acceptor != nullptr) return acceptor->accept(number_);
  errno = EBADF;
  return -1;
}

platform::Acceptor* Descriptor::acceptor() {
  const MutexLock lock(mutex_);
  if (number_ == -1) return nullptr;
  if (!acceptor_) acceptor_ = platform::makeAcceptor();
  return acceptor_.get();
}

}  // namespace seldial
