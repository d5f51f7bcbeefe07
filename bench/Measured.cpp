#include "bench/Measured.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <stdexcept>

#include "tests/support/ArgumentVector.h"

namespace seldial::bench {
namespace {

std::vector<std::string> environmentWith(const std::string& display) {
  std::vector<std::string> result;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    if (std::strncmp(*entry, "DISPLAY=", 8) != 0) result.emplace_back(*entry);
  }
  if (!display.empty()) result.push_back("DISPLAY=" + display);
  return result;
}

CommandLine floorProgram(const std::string& name, const std::string& argument) {
  return [=](const UcClient& client) {
    return std::vector<std::string>{std::string(SELDIAL_FLOORS "/") + name, client.dialerSocket(),
                                    client.clientSocket(), argument};
  };
}

}  // namespace

Program::Program(std::vector<std::string> command, const std::string& display) {
  auto environment = environmentWith(display);
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

CommandLine seldial() {
  return [](const UcClient& client) {
    return std::vector<std::string>{SELDIAL_PROGRAM, "dialerpipename=" + client.dialerSocket(),
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

CommandLine bareDial(unsigned keyCode, unsigned delay) {
  return [=](const UcClient& client) {
    return std::vector<std::string>{SELDIAL_FLOORS "/dial", client.clientSocket(),
                                    std::to_string(keyCode), std::to_string(delay)};
  };
}

Measured::Measured(const CommandLine& commandLine, const std::string& display)
    : watch_(client.watch()), program(commandLine(client), display) {
  client.awaitListening(watch_);
  if (client.receive().empty()) throw std::runtime_error("a measured program does not answer");
}

}  // namespace seldial::bench
