#include "ucclient/ChildProcess.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <string_view>
#include <thread>
#include <utility>

#include "platform/System.h"

namespace seldial {
namespace {

/// A pipe. Both ends are closed by the destructor and by exec.
struct Pipe {
  Pipe() {
    int ends[2] = {-1, -1};
    if (pipe(ends) != 0) return;
    reading = ends[0];
    writing = ends[1];
    fcntl(reading, F_SETFD, FD_CLOEXEC);
    fcntl(writing, F_SETFD, FD_CLOEXEC);
  }
  ~Pipe() {
    if (reading != -1) close(reading);
    if (writing != -1) close(writing);
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  int reading = -1;
  int writing = -1;
};

/// Standard streams of a child; -1: the parent's own.
struct Streams {
  int input;
  int output;
  int error;
};

bool replaceStream(int descriptor, int stream) {
  return descriptor == -1 || dup2(descriptor, stream) != -1;
}

/// In the child: executes the program, or writes errno to `failure`. `leave` detaches the child
/// from its parent. Other threads of the parent may have held any lock at the fork, so nothing here
/// may allocate.
[[noreturn]] void executeProgram(char* const* arguments, const Streams& streams,
                                 bool (*leave)(pid_t), pid_t parent, int failure) {
  sigset_t none;
  sigemptyset(&none);
  pthread_sigmask(SIG_SETMASK, &none, nullptr);
  std::signal(SIGPIPE, SIG_DFL);  // an ignored signal would stay ignored in the program
  if (replaceStream(streams.input, STDIN_FILENO) && replaceStream(streams.output, STDOUT_FILENO) &&
      replaceStream(streams.error, STDERR_FILENO) && leave(parent)) {
    execvp(arguments[0], arguments);
  }
  const int code = errno;
  const auto written = write(failure, &code, sizeof code);
  _exit(written == sizeof code ? 127 : 126);
}

/// For a child that ends with its parent, but receives no signals from the parent's terminal.
bool startNewGroup(pid_t parent) {
  setpgid(0, 0);
  return platform::endWithParent(parent);
}

/// For a child that may outlive its parent.
bool startNewSession(pid_t /*parent*/) {
  setsid();
  return true;
}

/// Waits until the child has executed the program: 0, or the errno of the failure.
int startResult(Pipe& failure) {
  close(std::exchange(failure.writing, -1));  // now only the child has it open, until exec
  int code = 0;
  ssize_t count = 0;
  do {
    count = read(failure.reading, &code, sizeof code);
  } while (count == -1 && errno == EINTR);
  return count == sizeof code ? code : 0;
}

void readLines(int descriptor, const std::function<void(const std::string&)>& wroteLine) {
  std::string line;
  char buffer[4096];
  for (ssize_t count = 0; (count = read(descriptor, buffer, sizeof buffer)) > 0;) {
    for (const char letter : std::string_view(buffer, static_cast<std::size_t>(count))) {
      if (letter == '\n') {
        wroteLine(line);
        line.clear();
      } else {
        line += letter;
      }
    }
  }
  close(descriptor);
}

/// Leaves the status for wait(): until then the process ID is not reused.
void waitForEnd(pid_t process) {
  siginfo_t ignored;
  while (waitid(P_PID, static_cast<id_t>(process), &ignored, WEXITED | WNOWAIT) == -1 &&
         errno == EINTR) {
  }
}

/// Returns the process ID, or -1 if the program cannot be started; `error` then says why.
pid_t startProgram(std::vector<std::string> command, const Streams& streams, bool (*leave)(pid_t),
                   std::string& error) {
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (std::string& argument : command) arguments.push_back(argument.data());
  arguments.push_back(nullptr);
  Pipe failure;
  const pid_t parent = getpid();
  const pid_t process = failure.writing != -1 ? fork() : -1;
  if (process == 0) executeProgram(arguments.data(), streams, leave, parent, failure.writing);
  const int code = process == -1 ? errno : startResult(failure);
  if (code == 0) return process;
  error = "cannot start " + command.front() + ": " + platform::errorText(code);
  if (process != -1) waitpid(process, nullptr, 0);
  return -1;
}

}  // namespace

std::unique_ptr<ChildProcess> ChildProcess::start(std::vector<std::string> command, Events events,
                                                  std::string& error, const std::string& input) {
  Pipe output;
  Pipe source;
  if (write(source.writing, input.data(), input.size()) != static_cast<ssize_t>(input.size())) {
    error = std::string("cannot create a pipe: ") + platform::errorText(errno);
    return nullptr;
  }
  close(std::exchange(source.writing, -1));
  const pid_t process =
      startProgram(std::move(command), {source.reading, output.writing, -1}, startNewGroup, error);
  if (process == -1) return nullptr;
  std::thread(readLines, std::exchange(output.reading, -1), std::move(events.wroteLine)).detach();
  std::thread([process, ended = std::move(events.ended)] {
    waitForEnd(process);
    ended();
  }).detach();
  return std::unique_ptr<ChildProcess>(new ChildProcess(process));
}

bool startDetached(std::vector<std::string> command, std::function<void(int status)> ended,
                   std::string& error) {
  const int null = open("/dev/null", O_RDWR | O_CLOEXEC);
  const pid_t process =
      startProgram(std::move(command), {null, null, null}, startNewSession, error);
  close(null);
  if (process == -1) return false;
  std::thread([process, ended = std::move(ended)] {
    int status = 0;
    while (waitpid(process, &status, 0) == -1 && errno == EINTR) {
    }
    ended(status);
  }).detach();
  return true;
}

ChildProcess::~ChildProcess() {
  if (process_ == -1) return;
  signal(SIGKILL);
  wait();
}

void ChildProcess::signal(int number) const {
  if (process_ != -1) kill(process_, number);
}

int ChildProcess::wait() {
  int status = 0;
  while (waitpid(process_, &status, 0) == -1 && errno == EINTR) {
  }
  process_ = -1;
  return status;
}

std::string describeExitStatus(int status) {
  if (WIFEXITED(status)) return "ended with status " + std::to_string(WEXITSTATUS(status));
  const int signal = WTERMSIG(status);
  return "was killed by signal " + std::to_string(signal) + " (" + strsignal(signal) + ")";
}

}  // namespace seldial
