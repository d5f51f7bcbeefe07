#include "bench/unixsocket/Bare.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <vector>

namespace seldial::bench {
namespace {

constexpr int kBacklog = 128;

int checked(ssize_t result, const char* what) {
  if (result == -1) throw std::runtime_error(std::string(what) + ": " + std::strerror(errno));
  return static_cast<int>(result);
}

Descriptor streamSocket() {
  return Descriptor(checked(socket(AF_UNIX, SOCK_STREAM, 0), "socket"));
}

/// `call` is bind or connect.
template <class Call>
void atPath(Call call, const char* what, const Descriptor& socket, const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::snprintf(address.sun_path, sizeof address.sun_path, "%s", path.c_str());
  checked(call(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address), what);
}

}  // namespace

void ByteCounter::add(std::size_t count) {
  const std::lock_guard lock(mutex_);
  added_ += count;
  if (added_ >= wanted_) enough_.notify_one();
}

void ByteCounter::waitFor(std::size_t total) {
  std::unique_lock lock(mutex_);
  wanted_ = total;
  enough_.wait(lock, [this] { return added_ >= wanted_; });
}

TemporarySocketPath::TemporarySocketPath() : directory_("/tmp/seldial-bench-XXXXXX") {
  if (mkdtemp(directory_.data()) == nullptr) checked(-1, "mkdtemp");
  path_ = directory_ + "/socket";
}

TemporarySocketPath::~TemporarySocketPath() {
  unlink(path_.c_str());
  rmdir(directory_.c_str());
}

Descriptor bareListen(const std::string& path) {
  Descriptor listener = streamSocket();
  atPath(&bind, "bind", listener, path);
  checked(listen(listener.number(), kBacklog), "listen");
  return listener;
}

Descriptor bareConnect(const std::string& path) {
  Descriptor connection = streamSocket();
  atPath(&connect, "connect", connection, path);
  return connection;
}

Descriptor bareAccept(const Descriptor& listener) {
  return Descriptor(checked(accept(listener.number(), nullptr, nullptr), "accept"));
}

void bareSend(const Descriptor& connection, const std::string& bytes) {
  std::size_t sent = 0;
  while (sent < bytes.size()) {
    sent += static_cast<std::size_t>(checked(
        send(connection.number(), bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL), "send"));
  }
}

void bareReadAll(const Descriptor& connection, std::size_t fragment, ByteCounter& bytes) {
  std::vector<char> buffer(fragment);
  while (const int count = checked(read(connection.number(), buffer.data(), fragment), "read")) {
    bytes.add(static_cast<std::size_t>(count));
  }
}

BareServer::BareServer(const std::string& path)
    : listener_(bareListen(path)), thread_([this] { serve(); }) {}

BareServer::~BareServer() {
  shutdown(listener_.number(), SHUT_RDWR);
  thread_.join();
}

void BareServer::serve() {
  for (;;) {
    const Descriptor connection(accept(listener_.number(), nullptr, nullptr));
    if (connection.number() == -1) return;  // the destructor's shutdown
    acceptedAt_ = Clock::now();
    accepted.add();
    ByteCounter bytes;
    bareReadAll(connection, 256, bytes);
    ended.add();
  }
}

}  // namespace seldial::bench
