#include "tests/support/SeldialProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <thread>
#include <utility>

#include "tests/support/ArgumentVector.h"
#include "tests/support/Waiting.h"

namespace seldial::tests {
namespace {

std::string readToEnd(int descriptor) {
  std::string all;
  char buffer[4096];
  for (ssize_t count = read(descriptor, buffer, sizeof buffer); count > 0;
       count = read(descriptor, buffer, sizeof buffer)) {
    all.append(buffer, static_cast<std::size_t>(count));
  }
  return all;
}

/// The test's own environment without a desktop, or with the one given.
std::vector<std::string> environmentWith(const std::string& display) {
  std::vector<std::string> result;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string text = *variable;
    if (text.compare(0, 8, "DISPLAY=") != 0) result.push_back(text);
  }
  if (!display.empty()) result.push_back("DISPLAY=" + display);
  return result;
}

}  // namespace

SeldialProcess::SeldialProcess(std::vector<std::string> arguments, const Options& options) {
  int out[2];
  int err[2];
  if (pipe2(out, O_CLOEXEC) != 0 || pipe2(err, O_CLOEXEC) != 0) throw std::runtime_error("pipe");
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, out[1], 1);
  posix_spawn_file_actions_adddup2(&actions, err[1], 2);
  for (const int descriptor : options.closedDescriptors) {
    posix_spawn_file_actions_addclose(&actions, descriptor);
  }
  arguments.insert(arguments.begin(), SELDIAL_PROGRAM);
  auto environment = environmentWith(options.display);
  const int failure = posix_spawn(&pid_, SELDIAL_PROGRAM, &actions, nullptr,
                                  tests::argumentVector(arguments).data(),
                                  tests::argumentVector(environment).data());
  posix_spawn_file_actions_destroy(&actions);
  close(out[1]);
  close(err[1]);
  output_ = out[0];
  errors_ = err[0];
  stopReading_ = eventfd(0, EFD_CLOEXEC);
  if (failure != 0) throw std::runtime_error("cannot start " SELDIAL_PROGRAM);
  reader_ = std::thread([this] { readOutput(); });
}

SeldialProcess::~SeldialProcess() {
  if (isRunning()) {
    signal(SIGKILL);
    wait();
  }
  closeOutput();
  close(errors_);
  close(stopReading_);
}

/// Reads what is there and hands over the whole lines in it; false at the end.
bool SeldialProcess::takeLines(std::string& unfinished) {
  char chunk[65536];
  const ssize_t count = read(output_, chunk, sizeof chunk);
  const std::lock_guard lock(mutex_);
  for (ssize_t i = 0; i < count; ++i) {
    if (chunk[i] == '\n') {
      lines_.push_back(std::exchange(unfinished, {}));
    } else {
      unfinished += chunk[i];
    }
  }
  ended_ = count <= 0;
  linesChanged_.notify_all();
  return !ended_;
}

void SeldialProcess::readOutput() {
  std::string unfinished;
  pollfd descriptors[2] = {{output_, POLLIN, 0}, {stopReading_, POLLIN, 0}};
  do {
    poll(descriptors, 2, -1);
  } while (descriptors[1].revents == 0 && takeLines(unfinished));
}

std::optional<std::string> SeldialProcess::nextLine() {
  std::unique_lock lock(mutex_);
  linesChanged_.wait_for(lock, kTimeLimit, [this] { return ended_ || !lines_.empty(); });
  if (lines_.empty()) return {};
  std::string line = std::move(lines_.front());
  lines_.pop_front();
  return line;
}

bool SeldialProcess::waitForLine(const std::string& part) {
  while (const auto line = nextLine()) {
    if (line->find(part) != std::string::npos) return true;
  }
  return false;
}

std::vector<std::string> SeldialProcess::restOfLines() {
  std::vector<std::string> result;
  while (auto line = nextLine()) result.push_back(std::move(*line));
  return result;
}

std::string SeldialProcess::errors() {
  return readToEnd(errors_);
}

void SeldialProcess::closeOutput() {
  if (!reader_.joinable()) return;
  eventfd_write(stopReading_, 1);
  reader_.join();
  close(output_);
}

void SeldialProcess::signal(int number) const {
  kill(pid_, number);
}

int SeldialProcess::wait() {
  int status = 0;
  if (!status_ && waitpid(pid_, &status, 0) == pid_) status_ = status;
  return WIFEXITED(*status_) ? WEXITSTATUS(*status_) : -WTERMSIG(*status_);
}

bool SeldialProcess::isRunning() {
  int status = 0;
  if (!status_ && waitpid(pid_, &status, WNOHANG) == pid_) status_ = status;
  return !status_;
}

long SeldialProcess::statusValue(const std::string& key) const {
  std::ifstream file("/proc/" + std::to_string(pid_) + "/status");
  for (std::string line; std::getline(file, line);) {
    if (line.compare(0, key.size() + 1, key + ":") == 0)
      return std::stol(line.substr(key.size() + 1));
  }
  return -1;
}

int SeldialProcess::openDescriptors() const {
  const std::filesystem::directory_iterator directory("/proc/" + std::to_string(pid_) + "/fd");
  return static_cast<int>(std::distance(begin(directory), end(directory)));
}

int connectTo(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
  const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  // The socket interface passes every address as this type.
  if (connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
    return descriptor;
  }
  close(descriptor);
  return -1;
}

void sendCommand(const std::string& path, const std::vector<std::string>& chunks) {
  const int descriptor = connectTo(path);
  if (descriptor == -1) throw std::runtime_error("nobody listens at " + path);
  for (const auto& chunk : chunks) {
    for (std::size_t sent = 0; sent < chunk.size();) {
      const ssize_t count =
          send(descriptor, chunk.data() + sent, chunk.size() - sent, MSG_NOSIGNAL);
      if (count <= 0) throw std::runtime_error("the program closed the connection");
      sent += static_cast<std::size_t>(count);
    }
  }
  close(descriptor);
}

}  // namespace seldial::tests
