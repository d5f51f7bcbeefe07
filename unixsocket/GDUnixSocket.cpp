#include "unixsocket/GDUnixSocket.h"

#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <utility>

#include "platform/Output.h"
#include "platform/System.h"
#include "unixsocket/SocketPath.h"

namespace seldial {
namespace {

/// A buffer of zeroes; nothing, with errno set, if there is no memory for it.
std::optional<Data> makeBuffer(std::uint64_t size) {
  try {
    return Data(size, '\0');
  } catch (const std::exception&) {  // bad_alloc or length_error
    errno = ENOMEM;
    return {};
  }
}

using UuidBytes = std::array<unsigned char, 16>;

/// Ends the process if the system has no random numbers: without them no identifier is unique.
UuidBytes randomBytes() {
  UuidBytes bytes{};
  if (!platform::fillWithRandom(bytes.data(), bytes.size())) {
    platform::printError("seldial: no random numbers: " + platform::errorText(errno));
    std::abort();
  }
  return bytes;
}

/// A random UUID (version 4): 36 characters, upper-case hexadecimal digits in groups of 8-4-4-4-12.
std::string makeUuid() {
  constexpr auto kDigits = "0123456789ABCDEF";
  UuidBytes bytes = randomBytes();
  bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0FU) | 0x40U);  // version 4
  bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3FU) | 0x80U);  // variant 1
  std::string text;
  text.reserve(36);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
    text += kDigits[bytes[i] >> 4U];
    text += kDigits[bytes[i] & 0x0FU];
  }
  return text;
}

}  // namespace

void storeError(std::optional<Error>* outParameter, std::optional<Error> error) {
  if (outParameter != nullptr) *outParameter = std::move(error);
}

std::shared_ptr<GDUnixSocket> GDUnixSocket::initWithSocketPath(const std::string& socketPath,
                                                               std::uint64_t andFragmentSize,
                                                               const Queue& queue) {
  return make<GDUnixSocket>(socketPath, andFragmentSize, queue);
}

GDUnixSocket::GDUnixSocket(Key /*key*/, std::string socketPath, std::uint64_t fragmentSize,
                           Queue queue)
    : socketPath_(std::move(socketPath)), queue_(std::move(queue)), fragmentSize_(fragmentSize) {}

GDUnixSocket::~GDUnixSocket() {
  if (fd() != -1) GDUnixSocket::closeWithError(nullptr);
}

bool GDUnixSocket::acceptsPath(const std::string& socketPath) {
  return isAcceptedSocketPath(socketPath);
}

std::optional<Data> GDUnixSocket::readWithError(std::optional<Error>* error) {
  const Descriptor::Use use(descriptor_);
  return readFromSocket(use.number(), error);
}

std::optional<Data> GDUnixSocket::readOf(Descriptor::Generation generation,
                                         std::optional<Error>* error) {
  const Descriptor::Use use(descriptor_, generation);
  return readFromSocket(use.number(), error);
}

std::optional<Data> GDUnixSocket::readFromSocket(std::int32_t descriptor,
                                                 std::optional<Error>* error) const {
  storeError(error, {});
  std::optional<Data> buffer = makeBuffer(fragmentSize_);
  const auto count = buffer ? ::read(descriptor, buffer->data(), buffer->size()) : -1;
  if (count == -1) {
    storeError(error, errorOfFailedCall(GDUnixSocketErrorReadFailed, descriptor));
  }
  if (count <= 0) return {};
  buffer->resize(static_cast<std::size_t>(count));
  return buffer;
}

void GDUnixSocket::readWithCompletion(ReadCompletion completion) {
  queue_->async([self = shared_from_this(), completion = std::move(completion)] {
    std::optional<Error> error;
    const std::optional<Data> data = self->readWithError(&error);
    if (completion) completion(error, data);
  });
}

std::int64_t GDUnixSocket::writeData(const Data& data, std::optional<Error>* error) {
  const Descriptor::Use use(descriptor_);
  return write(data, use.number(), error);
}

std::int64_t GDUnixSocket::write(const Data& data, std::int32_t toSocket,
                                 std::optional<Error>* error) const {
  storeError(error, {});
  if (data.empty()) return 0;
  if (auto badSocket = checkForBadSocket(toSocket)) {
    storeError(error, std::move(badSocket));
    return -1;
  }
  const std::int64_t count = platform::writeOnce(toSocket, data.data(), data.size());
  if (count == -1 && error != nullptr) {
    *error = errorOfFailedCall(GDUnixSocketErrorWriteFailed, toSocket);
  }
  return count;
}

void GDUnixSocket::writeData(const Data& data, WriteCompletion completion) {
  queue_->async([self = shared_from_this(), data, completion = std::move(completion)] {
    std::optional<Error> error;
    const std::int64_t count = self->writeData(data, &error);
    if (completion) completion(error, count);
  });
}

bool GDUnixSocket::closeWithError(std::optional<Error>* error) {
  return closeDescriptor(descriptor_.generation(), error);
}

bool GDUnixSocket::closeDescriptor(Descriptor::Generation generation, std::optional<Error>* error) {
  const MutexLock lock(lock_);
  if (state_ == GDUnixSocketStateClosed || descriptor_.generation() != generation) return true;
  std::optional<Error> failure;
  const int number = descriptor_.take();
  if (const auto badSocket = checkForBadSocket(number)) {
    failure =
        Error::gduds_errorForCode(GDUnixSocketErrorCloseFailed, badSocket->localizedDescription);
  } else if (::close(number) == -1) {
    failure = errorOfFailedCall(GDUnixSocketErrorCloseFailed, number);
  }
  if (!failure) state_ = GDUnixSocketStateClosed;
  const bool closed = !failure;
  storeError(error, std::move(failure));
  return closed;
}

std::optional<Error> GDUnixSocket::openSocket() {
  std::optional<Error> failure;
  const int number = platform::makeStreamSocket();
  if (number == -1) {
    failure = errorOfFailedCall(GDUnixSocketErrorBadSocket, number);
  }
  const MutexLock lock(lock_);
  const int before = descriptor_.take();
  if (before != -1) ::close(before);
  descriptor_.store(number);
  // Not closed any more: otherwise the next close would do nothing.
  if (number != -1) state_ = GDUnixSocketStateIdle;
  return failure;
}

void GDUnixSocket::setStateOf(Descriptor::Generation generation, GDUnixSocketState state) {
  const MutexLock lock(lock_);
  if (descriptor_.holds(generation)) state_ = state;
}

std::optional<Error> GDUnixSocket::checkForBadSocket() const {
  return checkForBadSocket(fd());
}

std::optional<Error> GDUnixSocket::checkForBadSocket(std::int32_t descriptor) {
  if (descriptor != -1) return {};
  return Error::gduds_errorForCode(GDUnixSocketErrorBadSocket);
}

std::string GDUnixSocket::lastErrorInfo() const {
  return lastErrorInfoForSocket(fd());
}

std::string GDUnixSocket::lastErrorInfoForSocket(std::int32_t descriptor) {
  return errorInfoForDescriptor(descriptor);
}

bool GDUnixSocket::peerHasClosed(GDUnixSocket& socket) {
  const Descriptor::Use use(socket.descriptor_);
  return use.number() != -1 && platform::peerHasClosed(use.number());
}

const std::string& GDUnixSocket::uniqueID() const {
  const MutexLock lock(uniqueIDLock_);
  if (uniqueID_.empty()) uniqueID_ = makeUuid();
  return uniqueID_;
}

}  // namespace seldial
