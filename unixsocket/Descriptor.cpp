#include "unixsocket/Descriptor.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace seldial {

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
  return ++serial_;
}

int Descriptor::take() {
  const MutexLock lock(mutex_);
  const int number = std::exchange(number_, -1);
  if (number == -1 || uses_ == 0) return number;
  const int error = errno;
  ::shutdown(number, SHUT_RDWR);  // closing alone would not wake a read or an accept
  errno = error;
  while (uses_ > 0) noUses_.wait(mutex_);
  return number;
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

int closedOnExec(int number) {
  if (number != -1) ::fcntl(number, F_SETFD, FD_CLOEXEC);
  return number;
}

std::int64_t writeOnce(int number, const void* bytes, std::size_t size) {
  const auto written = ::send(number, bytes, size, MSG_NOSIGNAL);
  if (written != -1 || errno != ENOTSOCK) return written;
  return ::write(number, bytes, size);
}

}  // namespace seldial
