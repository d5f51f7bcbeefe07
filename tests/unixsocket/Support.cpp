#include "tests/unixsocket/Support.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

namespace seldial::tests {

SocketAndPeer makePair(std::uint64_t fragmentSize, const GDUnixSocket::Queue& queue) {
  int ends[2] = {-1, -1};
  EXPECT_EQ(0, ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends));
  auto socket = GDUnixSocket::initWithSocketPath("(dummy)", fragmentSize, queue);
  socket->setFd(ends[0]);
  return {socket, Peer(ends[1])};
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

void RecordingServerDelegate::unixSocketServerDidFailToAcceptConnection(GDUnixSocketServer& server,
                                                                        const Error& error) {
  if (onAcceptFailed) onAcceptFailed(server);
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
