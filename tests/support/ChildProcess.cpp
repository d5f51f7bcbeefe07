#include "tests/support/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "tests/support/ArgumentVector.h"
#include "tests/support/Waiting.h"

namespace seldial::tests {
namespace {

std::string nameOf(const std::string& variable) {
  return variable.substr(0, variable.find('='));
}

std::vector<std::string> mergedEnvironment(const std::vector<std::string>& changes) {
  std::vector<std::string> result;
  const auto isChanged = [&](const std::string& name) {
    return std::any_of(changes.begin(), changes.end(),
                       [&](const std::string& change) { return nameOf(change) == name; });
  };
  for (char** entry = environ; *entry != nullptr; ++entry) {
    if (!isChanged(nameOf(*entry))) result.emplace_back(*entry);
  }
  std::copy_if(changes.begin(), changes.end(), std::back_inserter(result),
               [](const std::string& change) { return change.find('=') != std::string::npos; });
  return result;
}

struct Pipe {
  Pipe() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe for a child process");
    reading = ends[0];
    writing = ends[1];
  }
  int reading;
  int writing;
};

/// Everything that the child needs between fork and exec, where nothing may allocate.
struct Start {
  char* const* command;
  char* const* environment;
  int output;
  int errors;   ///< -1: inherited
  int failure;  ///< receives errno if there is no such program
  const std::vector<int>& closed;
  pid_t parent;
};

[[noreturn]] void become(const Start& start) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != start.parent) _exit(127);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
  if (nothing < 0) _exit(127);
  dup2(nothing, STDIN_FILENO);
  dup2(start.output, STDOUT_FILENO);
  if (start.errors != -1) dup2(start.errors, STDERR_FILENO);
  for (const int descriptor : start.closed) close(descriptor);
  execvpe(start.command[0], start.command, start.environment);
  const int error = errno;
  [[maybe_unused]] const auto written = write(start.failure, &error, sizeof error);
  _exit(127);
}

/// Forks; returns 0, or the errno with which fork or exec failed.
int startProcess(pid_t& pid, Start start, Pipe failure) {
  start.failure = failure.writing;
  start.parent = getpid();
  pid = fork();
  if (pid == 0) become(start);
  int error = pid == -1 ? errno : 0;
  close(failure.writing);
  [[maybe_unused]] const auto size = read(failure.reading, &error, sizeof error);
  close(failure.reading);
  if (error != 0 && pid != -1) waitpid(pid, nullptr, 0);
  return error;
}

}  // namespace

ChildProcess::ChildProcess(std::vector<std::string> command,
                           const std::vector<std::string>& environment, const std::string& hint,
                           const Streams& streams) {
  auto whole = mergedEnvironment(environment);
  const auto arguments = argumentVector(command);
  const auto variables = argumentVector(whole);
  int output = streams.output;
  if (output == -1) {
    const Pipe read;
    output_.emplace(read.reading);
    output = read.writing;
  }
  int errors = streams.errors == Streams::Errors::kWithOutput ? output : -1;
  if (streams.errors == Streams::Errors::kCaptured) {
    const Pipe captured;
    errors_.emplace(captured.reading);
    errors = captured.writing;
  }
  const int error = startProcess(
      pid_, {arguments.data(), variables.data(), output, errors, -1, streams.closed, 0}, Pipe());
  if (errors != -1 && errors != output) close(errors);
  if (output != streams.output) close(output);
  if (error != 0) {
    throw std::runtime_error("cannot start " + command.front() + ": " + std::strerror(error) +
                             (hint.empty() ? "" : " (" + hint + ")"));
  }
}

ChildProcess::~ChildProcess() {
  if (!isRunning()) return;
  kill(pid_, SIGKILL);
  reap(0);
}

std::string ChildProcess::readLine() {
  auto line = output_->nextLine();
  if (!line) throw std::runtime_error("a child process ended without the awaited line");
  return std::move(*line);
}

bool ChildProcess::waitForLine(const std::string& part) {
  while (const auto line = output_->nextLine()) {
    if (line->find(part) != std::string::npos) return true;
  }
  return false;
}

std::vector<std::string> ChildProcess::restOfLines() {
  std::vector<std::string> result;
  while (auto line = output_->nextLine()) result.push_back(std::move(*line));
  return result;
}

std::string ChildProcess::errors() {
  return errors_->rest();
}

void ChildProcess::closeOutput() {
  output_.reset();
}

void ChildProcess::signal(int number) const {
  if (!status_) kill(pid_, number);
}

void ChildProcess::reap(int options) {
  int status = 0;
  if (!status_ && waitpid(pid_, &status, options) == pid_) status_ = status;
}

int ChildProcess::wait() {
  if (isRunning()) {
    pollfd end{static_cast<int>(syscall(SYS_pidfd_open, pid_, 0)), POLLIN, 0};
    const std::chrono::milliseconds limit = kTimeLimit;
    const bool ended = poll(&end, 1, static_cast<int>(limit.count())) > 0;
    close(end.fd);
    if (!ended) throw std::runtime_error("a child process did not end in time");
    reap(0);
  }
  return WIFEXITED(*status_) ? WEXITSTATUS(*status_) : 128 + WTERMSIG(*status_);
}

bool ChildProcess::isRunning() {
  reap(WNOHANG);
  return !status_;
}

}  // namespace seldial::tests
