#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/SeldialProcess.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/UcListener.h"
#include "tests/support/Waiting.h"

namespace seldial::tests {

/// The real program between two sockets, without a desktop.
class ProgramTest : public testing::Test {
 protected:
  void start(std::vector<std::string> flags = {"-log"},
             const SeldialProcess::Options& options = {}) {
    flags.push_back("dialerpipename=" + in);
    flags.push_back("clientpipename=" + out);
    process.emplace(std::move(flags), options);
  }

  /// As start(), and waits until commands can be sent.
  void startListening() {
    start();
    ASSERT_TRUE(process->waitForLine("listen ok"));
  }

  /// As startListening(), without log lines: for what would be millions of them.
  void startQuietly() {
    start({});
    ASSERT_TRUE(eventually([this] {
      const int connection = connectTo(in);
      if (connection != -1) close(connection);
      return connection != -1;
    }));
    ASSERT_TRUE(client.nextMessage()) << "the answer to the empty connection";
  }

  /// Sends one command and gives what comes back over the client's socket.
  std::optional<std::string> answerTo(const std::string& command) {
    sendCommand(in, {command});
    return client.nextMessage();
  }

  tests::TemporaryDirectory directory;
  std::string in = directory.path("in");
  std::string out = directory.path("out");
  tests::UcListener client{out};
  std::optional<SeldialProcess> process;
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

}  // namespace seldial::tests
