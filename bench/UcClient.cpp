#include "bench/UcClient.h"

#include <poll.h>
#include <sched.h>
#include <sys/inotify.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace seldial::bench {
namespace {

template <class Result>
Result checked(Result result, const char* what) {
  if (result == -1) throw std::runtime_error(std::string(what) + ": " + std::strerror(errno));
  return result;
}

sockaddr_un addressOf(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::snprintf(address.sun_path, sizeof address.sun_path, "%s", path.c_str());
  return address;
}

const sockaddr* general(const sockaddr_un& address) {
  return reinterpret_cast<const sockaddr*>(&address);
}

bool readableWithin(int descriptor, std::chrono::milliseconds limit) {
  pollfd entry{descriptor, POLLIN, 0};
  return poll(&entry, 1, static_cast<int>(limit.count())) > 0;
}

std::string makeDirectory() {
  char path[] = "/tmp/seldial-bench-XXXXXX";
  if (mkdtemp(path) == nullptr) checked(-1, "mkdtemp");
  return path;
}

Descriptor streamSocket() {
  return Descriptor(checked(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket"));
}

}  // namespace

Descriptor::~Descriptor() {
  if (number_ != -1) close(number_);
}

void write(const Descriptor& connection, const std::string& bytes) {
  for (std::size_t written = 0; written < bytes.size();) {
    const auto count = ::write(connection.number(), bytes.data() + written, bytes.size() - written);
    written += static_cast<std::size_t>(checked(count, "write"));
  }
}

UcClient::UcClient() : directory_(makeDirectory()), listener_(streamSocket()) {
  const auto address = addressOf(clientSocket());
  checked(bind(listener_.number(), general(address), sizeof address), "bind");
  checked(listen(listener_.number(), 5), "listen");
}

UcClient::~UcClient() {
  unlink(dialerSocket().c_str());
  unlink(clientSocket().c_str());
  rmdir(directory_.c_str());
}

Descriptor UcClient::connect() const {
  auto connection = streamSocket();
  const auto address = addressOf(dialerSocket());
  if (::connect(connection.number(), general(address), sizeof address) != 0) return Descriptor(-1);
  return connection;
}

Descriptor UcClient::watch() const {
  Descriptor inotify(checked(inotify_init1(IN_CLOEXEC), "inotify_init"));
  checked(inotify_add_watch(inotify.number(), directory_.c_str(), IN_CREATE), "inotify_add_watch");
  return inotify;
}

void UcClient::awaitListening(const Descriptor& watch) const {
  if (!readableWithin(watch.number(), kLimit)) throw std::runtime_error("nobody listens");
  // The file exists, but the program may be between bind() and listen(), on the same processor.
  while (connect().number() == -1) sched_yield();
}

void UcClient::send(const std::string& command) const {
  const auto connection = connect();
  write(connection, command);
}

std::string UcClient::receive(std::chrono::milliseconds limit) const {
  if (!readableWithin(listener_.number(), limit)) return {};
  const Descriptor connection(checked(accept(listener_.number(), nullptr, nullptr), "accept"));
  std::string message;
  char bytes[65536];
  for (ssize_t count = 1; count > 0;) {
    count = read(connection.number(), bytes, sizeof bytes);
    if (count > 0) message.append(bytes, static_cast<std::size_t>(count));
  }
  return message;
}

std::string UcClient::ask(const std::string& command, std::chrono::milliseconds limit) const {
  send(command);
  auto answer = receive(limit);
  if (answer.empty()) throw std::runtime_error("no answer to " + command.substr(0, 80));
  return answer;
}

}  // namespace seldial::bench
