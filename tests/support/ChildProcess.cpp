#include "tests/support/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "tests/support/ArgumentVector.h"
#include "tests/support/Waiting.h"

namespace seldial::tests {
namespace {

std::vector<std::string> mergedEnvironment(std::vector<std::string> added) {
  std::vector<std::string> result = std::move(added);
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string text = *entry;
    const auto name = text.substr(0, text.find('=') + 1);
    bool replaced = false;
    for (const auto& own : result) replaced = replaced || own.compare(0, name.size(), name) == 0;
    if (!replaced) result.push_back(text);
  }
  return result;
}

bool readableInTime(int descriptor) {
  pollfd entry{descriptor, POLLIN, 0};
  const std::chrono::milliseconds limit = kTimeLimit;
  return poll(&entry, 1, static_cast<int>(limit.count())) > 0;
}

/// In the child, between fork and exec: nothing that allocates.
[[noreturn]] void become(char* const* command, char* const* environment, int output, int failure,
                         pid_t parent) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) _exit(127);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  dup2(output, STDOUT_FILENO);
  execvpe(command[0], command, environment);
  const int error = errno;
  [[maybe_unused]] const auto written = write(failure, &error, sizeof error);
  _exit(127);
}

}  // namespace

ChildProcess::ChildProcess(std::vector<std::string> command, std::vector<std::string> environment,
                           const std::string& hint) {
  auto whole = mergedEnvironment(std::move(environment));
  const auto arguments = tests::argumentVector(command);
  const auto variables = tests::argumentVector(whole);
  int output[2];
  int failure[2];
  if (pipe2(output, O_CLOEXEC) != 0 || pipe2(failure, O_CLOEXEC) != 0) {
    throw std::runtime_error("no pipe for a child process");
  }
  const pid_t parent = getpid();
  pid_ = fork();
  if (pid_ == 0) become(arguments.data(), variables.data(), output[1], failure[1], parent);
  close(output[1]);
  close(failure[1]);
  output_ = output[0];
  int error = pid_ == -1 ? errno : 0;
  [[maybe_unused]] const auto size = read(failure[0], &error, sizeof error);
  close(failure[0]);
  if (error == 0) return;
  if (pid_ != -1) waitpid(pid_, nullptr, 0);
  close(output_);
  throw std::runtime_error("cannot start " + command.front() + ": " + std::strerror(error) +
                           (hint.empty() ? "" : " (" + hint + ")"));
}

ChildProcess::~ChildProcess() {
  if (pid_ != -1) {
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
  }
  close(output_);
}

std::string ChildProcess::readLine() {
  auto end = buffer_.find('\n');
  while (end == std::string::npos) {
    if (!fillBuffer()) throw std::runtime_error("a child process ended without the awaited line");
    end = buffer_.find('\n');
  }
  auto line = buffer_.substr(0, end);
  buffer_.erase(0, end + 1);
  return line;
}

bool ChildProcess::fillBuffer() {
  if (!readableInTime(output_)) throw std::runtime_error("a child process printed no line in time");
  char bytes[4096];
  const auto count = read(output_, bytes, sizeof bytes);
  if (count <= 0) return false;
  buffer_.append(bytes, static_cast<std::size_t>(count));
  return true;
}

void ChildProcess::signal(int number) const {
  if (pid_ != -1) kill(pid_, number);
}

int ChildProcess::wait() {
  const auto descriptor = static_cast<int>(syscall(SYS_pidfd_open, pid_, 0));
  const bool ended = descriptor != -1 && readableInTime(descriptor);
  close(descriptor);
  if (!ended) throw std::runtime_error("a child process did not end in time");
  int status = 0;
  waitpid(std::exchange(pid_, -1), &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace seldial::tests
