// The real program as a child process, and a fixture that runs it between a UC client's sockets.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/ChildProcess.h"
#include "tests/support/Sockets.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/Waiting.h"

namespace seldial::tests {

/// Its standard error is captured by default.
class SeldialProcess : public ChildProcess {
 public:
  /// Runs without an X server if `display` is empty.
  explicit SeldialProcess(std::vector<std::string> arguments, const std::string& display = {},
                          const Streams& streams = {Streams::Errors::kCaptured, {}})
      : ChildProcess(commandLine(std::move(arguments)),
                     display.empty()
                         ? std::vector<std::string>{"DISPLAY"}
                         : std::vector<std::string>{"DISPLAY=" + display, "WAYLAND_DISPLAY"},
                     {}, streams) {}

 private:
  static std::vector<std::string> commandLine(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), SELDIAL_PROGRAM);
    return arguments;
  }
};

/// Whether `message` is an "Error" with that message text.
MATCHER_P(IsError, text, "") {
  const std::string& message = arg.value_or("nothing");
  *result_listener << message;
  return message.find(R"("response":"Error")") != std::string::npos &&
         message.find(R"("message":")" + std::string(text) + "\"") != std::string::npos;
}

/// Whether `message` is a "HotkeyState" that failed for that reason.
MATCHER_P(IsHotkeyStateFalse, reason, "") {
  const std::string& message = arg.value_or("nothing");
  *result_listener << message;
  return message.find(R"("response":"HotkeyState")") != std::string::npos &&
         message.find(R"("result":false)") != std::string::npos &&
         message.find(R"("failreason":")" + std::string(reason) + "\"") != std::string::npos;
}

/// The real program between the two sockets of a UC client.
class ProgramTest : public testing::Test {
 protected:
  void start(std::vector<std::string> flags = {"-log"}, const std::string& display = {},
             const Streams& streams = {Streams::Errors::kCaptured, {}}) {
    flags.push_back("dialerpipename=" + in);
    flags.push_back("clientpipename=" + out);
    process.emplace(std::move(flags), display, streams);
  }

  /// Like start(), and waits until commands can be sent.
  void startListening(const std::string& display = {}) {
    start({"-log"}, display);
    ASSERT_TRUE(process->waitForLine("listen ok"));
  }

  /// Like startListening(), but without log lines, for tests that would produce millions of them.
  void startQuietly() {
    start({});
    waitUntilListening();
  }

  /// Connects until the program listens, and reads the answer to that empty connection.
  void waitUntilListening() {
    ASSERT_TRUE(eventually([this] { return Peer::connectedTo(in).connected(); }));
    EXPECT_THAT(client.nextMessage(), IsError("empty string on standard input stream"));
  }

  /// Sends one command and returns the answer on the client's socket.
  std::optional<std::string> answerTo(const std::string& command) {
    sendCommand(in, {command});
    return client.nextMessage();
  }

  /// Ends the program with SIGTERM.
  void terminate() {
    process->signal(SIGTERM);
    EXPECT_EQ(process->wait(), 0);
  }

  TemporaryDirectory directory;
  std::string in = directory.path("in");
  std::string out = directory.path("out");
  UcListener client{out};
  std::optional<SeldialProcess> process;
};

}  // namespace seldial::tests
