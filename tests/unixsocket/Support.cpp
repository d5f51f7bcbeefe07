#include "tests/unixsocket/Support.h"

#include <dirent.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <thread>

namespace seldial::tests {
namespace {

std::size_t entriesOf(const char* directory) {
  std::size_t entries = 0;
  DIR* const stream = opendir(directory);
  while (readdir(stream) != nullptr) ++entries;
  closedir(stream);
  return entries;
}

sockaddr_un addressOf(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  return address;
}

int newSocket() {
  return ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
}

}  // namespace

Peer Peer::connectedTo(const std::string& path) {
  Peer peer(newSocket());
  const sockaddr_un address = addressOf(path);
  if (::connect(peer.fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    peer.leave();
  }
  return peer;
}

Peer Peer::listeningAt(const std::string& path, int backlog) {
  Peer peer(newSocket());
  const sockaddr_un address = addressOf(path);
  EXPECT_EQ(0, ::bind(peer.fd, reinterpret_cast<const sockaddr*>(&address), sizeof address));
  EXPECT_EQ(0, ::listen(peer.fd, backlog));
  return peer;
}

Peer Peer::accepted() const {
  return Peer(::accept4(fd, nullptr, nullptr, SOCK_CLOEXEC));
}

void Peer::send(const std::string& bytes) const {
  std::size_t sent = 0;
  while (sent < bytes.size()) {
    const auto count =
        ::sendto(fd, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL, nullptr, 0);
    if (count <= 0) return;  // the reader is gone: what arrived is the test's to judge
    sent += static_cast<std::size_t>(count);
  }
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
  std::string all;
  for (std::string some = receive(1); !some.empty(); some = receive(1)) all += some;
  return all;
}

void Peer::leave() {
  if (fd != -1) ::close(fd);
  fd = -1;
}

SocketAndPeer makePair(std::uint64_t fragmentSize) {
  int ends[2] = {-1, -1};
  EXPECT_EQ(0, ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends));
  auto socket = GDUnixSocket::initWithSocketPath("(dummy)", fragmentSize);
  socket->setFd(ends[0]);
  return {socket, Peer(ends[1])};
}

void Journal::add(const std::string& line) {
  const std::lock_guard lock(mutex_);
  lines_.push_back(line);
  changed_.notify_all();
}

std::vector<std::string> Journal::lines() const {
  const std::lock_guard lock(mutex_);
  return lines_;
}

std::size_t Journal::count(const std::string& line) const {
  const std::lock_guard lock(mutex_);
  return countLocked(line);
}

bool Journal::waitFor(const std::string& line, std::size_t times) const {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, kTimeLimit, [&] { return countLocked(line) >= times; });
}

void Journal::clear() {
  const std::lock_guard lock(mutex_);
  lines_.clear();
}

std::size_t Journal::countLocked(const std::string& line) const {
  return static_cast<std::size_t>(std::count(lines_.begin(), lines_.end(), line));
}

void RecordingServerDelegate::unixSocketServerDidStartListening(GDUnixSocketServer& server) {
  if (onListening) onListening(server);
  journal.add("listening");
}

void RecordingServerDelegate::unixSocketServerDidClose(GDUnixSocketServer& server,
                                                       const std::optional<Error>& error) {
  if (onClose) onClose(server);
  journal.add(error ? "close " + error->localizedDescription : "close");
}

void RecordingServerDelegate::unixSocketServerDidAcceptClientWithID(GDUnixSocketServer& server,
                                                                    const std::string& clientID) {
  {
    const std::lock_guard lock(mutex_);
    clientIDs_.push_back(clientID);
  }
  if (onAccept) onAccept(server, clientID);
  journal.add("accept");
}

void RecordingServerDelegate::unixSocketServerClientWithIDDidDisconnect(
    GDUnixSocketServer& server, const std::string& clientID) {
  if (onDisconnect) onDisconnect(server, clientID);
  journal.add("disconnect");
}

void RecordingServerDelegate::unixSocketServerDidReceiveData(GDUnixSocketServer& server,
                                                             const Data& data,
                                                             const std::string& clientID) {
  {
    const std::lock_guard lock(mutex_);
    received_ += data;
  }
  if (onData) onData(server, clientID);
  journal.add("data " + std::to_string(data.size()));
}

void RecordingServerDelegate::unixSocketServerDidFailToReadForClientID(
    GDUnixSocketServer& /*server*/, const std::string& /*clientID*/, const Error& error) {
  journal.add("read failed " + std::to_string(error.code));
}

void RecordingServerDelegate::unixSocketServerDidFailToAcceptConnection(
    GDUnixSocketServer& /*server*/, const Error& error) {
  journal.add("accept failed " + error.localizedDescription);
}

std::vector<std::string> RecordingServerDelegate::clientIDs() const {
  const std::lock_guard lock(mutex_);
  return clientIDs_;
}

std::string RecordingServerDelegate::received() const {
  const std::lock_guard lock(mutex_);
  return received_;
}

void RecordingClientDelegate::unixSocketClientDidReceiveData(GDUnixSocketClient& client,
                                                             const Data& data) {
  if (onData) onData(client);
  journal.add("data " + std::to_string(data.size()));
}

void RecordingClientDelegate::unixSocketClientDidFailToReadWithError(GDUnixSocketClient& /*client*/,
                                                                     const Error& error) {
  journal.add("failed " + std::to_string(error.code));
}

std::size_t openDescriptors() {
  return entriesOf("/proc/self/fd");
}

std::size_t runningThreads() {
  return entriesOf("/proc/self/task") - 2;
}

bool exists(const std::string& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0;
}

int threadNumber() {
  return ::gettid();
}

bool isAsleepOrGone(int thread) {
  std::ifstream file("/proc/self/task/" + std::to_string(thread) + "/stat");
  std::string line;
  std::getline(file, line);
  // The state follows the thread's name, which stands in parentheses.
  const std::size_t name = line.rfind(')');
  return name == std::string::npos || line[name + 2] != 'R';
}

}  // namespace seldial::tests
