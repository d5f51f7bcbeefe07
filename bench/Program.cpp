#include "bench/Program.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string_view>
#include <thread>

#include "tests/support/ArgumentVector.h"

namespace seldial::bench {
namespace {

/// The environment of this process, with a desktop in place of its own.
std::vector<std::string> environmentWith(const std::vector<std::string>& desktop) {
  std::vector<std::string> result = desktop;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string_view variable = *entry;
    const auto name = variable.substr(0, variable.find('=') + 1);
    const bool replaced =
        name == "DISPLAY=" || name == "WAYLAND_DISPLAY=" || name == "SWAYSOCK=" ||
        std::any_of(desktop.begin(), desktop.end(),
                    [&](const std::string& other) { return other.starts_with(name); });
    if (!replaced) result.emplace_back(variable);
  }
  return result;
}

std::filesystem::path directoryOf(pid_t process) {
  return "/proc/" + std::to_string(process);
}

/// The sum of the numbers in the lines that begin with `name`.
long sumOf(const std::filesystem::path& file, const std::string& name) {
  std::ifstream stream(file);
  long sum = 0;
  for (std::string line; std::getline(stream, line);) {
    if (line.compare(0, name.size(), name) == 0) sum += std::stol(line.substr(name.size()));
  }
  return sum;
}

/// In bytes, from a file that states kilobytes.
double memoryOf(const std::filesystem::path& file, const std::string& name) {
  return static_cast<double>(sumOf(file, name)) * 1024;
}

CommandLine floorProgram(const std::string& name, const std::string& argument) {
  return [=](const UcClient& client) {
    return std::vector<std::string>{std::string(SELDIAL_FLOORS "/") + name, client.dialerSocket(),
                                    client.clientSocket(), argument};
  };
}

}  // namespace

Program::Program(std::vector<std::string> command, const std::vector<std::string>& desktop) {
  auto environment = environmentWith(desktop);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  const int error =
      posix_spawn(&process_, command.front().c_str(), &actions, nullptr,
                  tests::argumentVector(command).data(), tests::argumentVector(environment).data());
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) throw std::runtime_error(command.front() + ": " + std::strerror(error));
}

Program::~Program() {
  kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
}

double Program::uniqueMemory() const {
  const auto file = directoryOf(process_) / "smaps_rollup";
  const auto bytes = memoryOf(file, "Private_Clean:") + memoryOf(file, "Private_Dirty:");
  if (bytes == 0) throw std::runtime_error("a measured program is gone");
  return bytes;
}

double Program::peakMemory() const {
  return memoryOf(directoryOf(process_) / "status", "VmHWM:");
}

double Program::resetPeakMemory() const {
  std::ofstream(directoryOf(process_) / "clear_refs") << "5";
  return peakMemory();
}

int Program::threadCount() const {
  return static_cast<int>(sumOf(directoryOf(process_) / "status", "Threads:"));
}

long Program::wakeUps() const {
  long sum = 0;
  for (const auto& task : std::filesystem::directory_iterator(directoryOf(process_) / "task")) {
    const auto file = task.path() / "status";
    sum += sumOf(file, "voluntary_ctxt_switches:") + sumOf(file, "nonvoluntary_ctxt_switches:");
  }
  return sum;
}

void Program::settle() const {
  for (long before = -1; before != wakeUps();) {
    before = wakeUps();
    std::this_thread::sleep_for(std::chrono::seconds(3));
  }
}

CommandLine seldial(const std::string& program) {
  return [=](const UcClient& client) {
    return std::vector<std::string>{program.empty() ? SELDIAL_PROGRAM : program,
                                    "dialerpipename=" + client.dialerSocket(),
                                    "clientpipename=" + client.clientSocket()};
  };
}

CommandLine threadPerConnection(std::size_t answerLength) {
  return floorProgram("thread_per_connection", std::to_string(answerLength));
}

CommandLine listenAndWait() {
  return [](const UcClient& client) {
    return std::vector<std::string>{SELDIAL_FLOORS "/listen_and_wait", client.dialerSocket()};
  };
}

CommandLine bareDial(const std::string& floor, unsigned keyCode, unsigned delay) {
  return [=](const UcClient& client) {
    return std::vector<std::string>{std::string(SELDIAL_FLOORS "/") + floor, client.clientSocket(),
                                    std::to_string(keyCode), std::to_string(delay)};
  };
}

Measured::Measured(const CommandLine& commandLine, const std::vector<std::string>& desktop)
    : watch_(client.watch()), program(commandLine(client), desktop) {
  client.awaitListening(watch_);
  if (client.receive().empty()) throw std::runtime_error("a measured program does not answer");
}

}  // namespace seldial::bench
