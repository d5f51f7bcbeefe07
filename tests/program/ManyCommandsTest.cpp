// Commands one after another, never two connections open at once: each gets its answer, in order.
// SELDIAL_COMMANDS sets how many, such as 100000.
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/SeldialProcess.h"

namespace seldial::tests {
namespace {

unsigned commandCount() {
  const char* const wanted = std::getenv("SELDIAL_COMMANDS");
  return wanted == nullptr ? 2000 : static_cast<unsigned>(std::strtoul(wanted, nullptr, 10));
}

class ManyCommands : public ProgramTest {
 protected:
  static std::string command(unsigned number) {
    return R"({"command":")" + std::to_string(number) + "\"}";
  }

  void expectAllAnswersInOrder() const {
    for (unsigned number = 0; number < commandCount(); ++number) {
      ASSERT_THAT(client.nextMessage(), IsError("invalid command: " + std::to_string(number)));
    }
  }
};

TEST_F(ManyCommands, OfOneProcessThatDoesNotWaitAreAllAnsweredInOrder) {
  startQuietly();
  std::thread sender([this] {
    for (unsigned number = 0; number < commandCount(); ++number) sendCommand(in, {command(number)});
  });
  expectAllAnswersInOrder();
  sender.join();
}

/// Processes that take turns: each sends a command and passes the number of the next one on.
class Ring {
 public:
  static constexpr std::size_t kProcesses = 8;

  explicit Ring(const std::function<void(unsigned number)>& send) {
    for (auto& ends : pipes_) EXPECT_EQ(0, ::pipe(ends.data()));
    for (std::size_t i = 0; i < kProcesses; ++i) {
      processes_.at(i) = ::fork();
      if (processes_.at(i) != 0) continue;
      takeTurns(pipes_.at(i)[0], pipes_.at((i + 1) % kProcesses)[1], send);
      ::_exit(0);
    }
  }
  ~Ring() {
    for (const pid_t process : processes_) {
      int status = -1;
      EXPECT_EQ(process, ::waitpid(process, &status, 0));
      EXPECT_EQ(0, status);
    }
    for (const auto& ends : pipes_) {
      for (const int end : ends) ::close(end);
    }
  }
  Ring(const Ring&) = delete;
  Ring& operator=(const Ring&) = delete;

  void start() const { pass(0, pipes_.front()[1]); }

 private:
  static void pass(unsigned number, int to) {
    if (::write(to, &number, sizeof number) != sizeof number) std::abort();
  }

  static void takeTurns(int from, int to, const std::function<void(unsigned)>& send) {
    unsigned number = 0;
    while (number < commandCount()) {
      if (::read(from, &number, sizeof number) != sizeof number) std::abort();
      if (number < commandCount()) send(number++);
      pass(number, to);
    }
  }

  std::array<std::array<int, 2>, kProcesses> pipes_{};
  std::array<pid_t, kProcesses> processes_{};
};

TEST_F(ManyCommands, OfEightAlternatingProcessesAreAllAnsweredInOrder) {
  const Ring ring([this](unsigned number) { sendCommand(in, {command(number)}); });
  startQuietly();
  ring.start();
  expectAllAnswersInOrder();
}

}  // namespace
}  // namespace seldial::tests
