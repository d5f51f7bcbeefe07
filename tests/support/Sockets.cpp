#include "tests/support/Sockets.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <stdexcept>
#include <utility>

#include "tests/support/Waiting.h"

namespace seldial::tests {
namespace {

sockaddr_un addressOf(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  return address;
}

int newSocket() {
  const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (descriptor < 0) throw std::runtime_error("no socket for a test");
  return descriptor;
}

bool readableWithin(int descriptor, std::chrono::milliseconds limit) {
  pollfd readable{descriptor, POLLIN, 0};
  return ::poll(&readable, 1, static_cast<int>(limit.count())) == 1;
}

}  // namespace

Peer Peer::connectedTo(const std::string& path) {
  Peer peer(newSocket());
  const sockaddr_un address = addressOf(path);
  // The socket interface passes every address as this type.
  if (::connect(peer.fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    peer.leave();
  }
  return peer;
}

int connectTo(const std::string& path) {
  Peer peer = Peer::connectedTo(path);
  if (!peer.connected()) throw std::runtime_error("nobody listens at " + path);
  return std::exchange(peer.fd, -1);
}

Peer Peer::listeningAt(const std::string& path, int backlog) {
  Peer peer(newSocket());
  const sockaddr_un address = addressOf(path);
  const auto* const generic = reinterpret_cast<const sockaddr*>(&address);
  if (::bind(peer.fd, generic, sizeof address) != 0 || ::listen(peer.fd, backlog) != 0) {
    throw std::runtime_error("cannot listen at " + path);
  }
  return peer;
}

Peer Peer::accepted() const {
  return Peer(::accept4(fd, nullptr, nullptr, SOCK_CLOEXEC));
}

bool Peer::send(const std::string& bytes) const {
  std::size_t sent = 0;
  while (sent < bytes.size()) {
    const auto count =
        ::sendto(fd, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL, nullptr, 0);
    if (count <= 0) return false;
    sent += static_cast<std::size_t>(count);
  }
  return true;
}

std::string Peer::receive(std::size_t bytes) const {
  std::string all(bytes, '\0');
  std::size_t got = 0;
  while (got < bytes) {
    const auto count = ::recv(fd, all.data() + got, bytes - got, 0);
    if (count <= 0) break;
    got += static_cast<std::size_t>(count);
  }
  all.resize(got);
  return all;
}

std::string Peer::receiveToTheEnd() const {
  constexpr std::size_t kPiece = 65536;
  std::string all;
  for (std::size_t before = 0;; before = all.size()) {
    all += receive(kPiece);
    if (all.size() < before + kPiece) return all;
  }
}

void Peer::leave() {
  if (fd != -1) ::close(fd);
  fd = -1;
}

std::optional<std::string> UcListener::nextMessage() const {
  if (!readableWithin(listening_.fd, kTimeLimit)) return {};
  return listening_.accepted().receiveToTheEnd();
}

bool UcListener::hasConnection() const {
  return readableWithin(listening_.fd, std::chrono::milliseconds(0));
}

void sendCommand(const std::string& path, const std::vector<std::string>& chunks) {
  const Peer peer = Peer::connectedTo(path);
  if (!peer.connected()) throw std::runtime_error("nobody listens at " + path);
  for (const auto& chunk : chunks) {
    if (!peer.send(chunk)) throw std::runtime_error("the program closed the connection");
  }
}

}  // namespace seldial::tests
