// seldial_soak MINUTES: runs the program under mixed load: commands, presses, clients that stay
// connected, clients that send invalid input, keyboard layout changes, and lost X servers. At every
// pause the program must answer each command once and must not have grown. Exits with status 1
// otherwise.
#include <sys/socket.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <functional>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "tests/soak/Slope.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/ProcessState.h"
#include "tests/support/Sockets.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/Waiting.h"
#include "tests/support/desktop/Keyboard.h"
#include "tests/support/desktop/Keys.h"
#include "tests/support/desktop/XClient.h"
#include "tests/support/desktop/XServer.h"

namespace seldial::tests {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr seconds kBusyTime{15};   ///< between two pauses
constexpr int kPausesPerRun = 12;  ///< then the X server is killed
constexpr int kCommandsPerPause = 100;
constexpr double kMaxBytesPerCommand = 8;
constexpr auto kFence = R"({"command":"fence"})";  ///< is answered after all earlier commands

struct Totals {
  std::atomic<long> commands{0};
  std::atomic<long> presses{0};
  std::atomic<long> answers{0};
  std::atomic<long> calls{0};
  std::atomic<long> fences{0};  ///< answers to the command kFence
};

void require(bool condition, const std::string& what) {
  if (!condition) throw std::runtime_error(what);
}

std::string setHotKey(int virtualKey) {
  return R"({"command":"SetHotKey","modifierCtrl":true,"modifierAlt":true,"readdelay":20,)"
         R"("virtualkey":)" +
         std::to_string(virtualKey) + "}";
}

/// Receives and counts all messages on a separate thread.
class Receiver {
 public:
  Receiver(std::string path, Totals& totals)
      : path_(std::move(path)), totals_(totals), thread_([this] { run(); }) {}
  ~Receiver() {
    stopping_ = true;
    Peer::connectedTo(path_).leave();  // wakes the thread up
    thread_.join();
  }
  Receiver(const Receiver&) = delete;
  Receiver& operator=(const Receiver&) = delete;

 private:
  void run() {
    while (!stopping_) {
      const auto message = listener_.nextMessage();
      if (!message || message->empty()) continue;
      const auto contains = [&message](const char* text) {
        return message->find(text) != std::string::npos;
      };
      ++(contains("MakeCall") ? totals_.calls
         : contains("fence")  ? totals_.fences
                              : totals_.answers);
    }
  }

  const std::string path_;
  Totals& totals_;
  const UcListener listener_{path_};
  std::atomic<bool> stopping_{false};
  std::thread thread_;
};

/// One run of the program, with its desktop.
class ProgramRun {
 public:
  explicit ProgramRun(Totals& totals) : totals_(totals) {
    require(eventually([this] { return Peer::connectedTo(in_).connected(); }),
            "it does not listen");
    pause();
    std::this_thread::sleep_for(seconds(3));  // longer than an idle thread lives
    descriptors_ = openDescriptors(process_.id());
    threads_ = runningThreads(process_.id());
  }

  /// Generates all kinds of load at once.
  void applyLoad() {
    const auto end = Clock::now() + kBusyTime;
    std::vector<std::thread> threads;
    for (void (ProgramRun::*const work)() :
         {&ProgramRun::command, &ProgramRun::press, &ProgramRun::hold,
          &ProgramRun::sendInvalidInput, &ProgramRun::changeLayout}) {
      threads.emplace_back([this, work, end] {
        while (Clock::now() < end) (this->*work)();
      });
    }
    for (auto& thread : threads) thread.join();
  }

  /// With a single well-behaved client, each command is answered once, and nothing is left of the
  /// load.
  void pause() {
    settle();
    const long before = totals_.answers;
    for (int i = 1; i <= kCommandsPerPause; ++i) {
      sendCommand(in_, {setHotKey(2)});
      ++totals_.commands;
      require(eventually([&] { return totals_.answers >= before + i; }), "an answer is lost");
    }
    settle();
    require(totals_.answers == before + kCommandsPerPause, "an answer came twice");
    require(eventually([this] { return keyboard_.down().empty(); }), "a key is stuck");
    if (descriptors_ == 0) return;
    require(openDescriptors(process_.id()) <= descriptors_, "descriptors are left open");
    require(runningThreads(process_.id()) <= threads_, "threads are left running");
    memory_.add(static_cast<double>(totals_.commands),
                static_cast<double>(statusValue("RssAnon", process_.id())) * 1024);
  }

  void loseServer() {
    server_.kill();
    require(process_.wait() == 1, "it does not end with its X server");
    require(!std::filesystem::exists(in_), "the socket is left behind");
  }

  void terminate() {
    process_.signal(SIGTERM);
    require(process_.wait() == 0, "it does not end cleanly");
    require(!std::filesystem::exists(in_), "the socket is left behind");
  }

  [[nodiscard]] const Slope& memory() const { return memory_; }

 private:
  /// Waits until each earlier command has been answered or dropped, and until no more threads run
  /// than after the start.
  void settle() {
    const long fence = totals_.fences + 1;
    sendCommand(in_, {kFence});
    ++totals_.commands;
    require(eventually([&] { return totals_.fences == fence; }), "it does not come to rest");
    require(
        eventually([this] { return threads_ == 0 || runningThreads(process_.id()) <= threads_; }),
        "its threads do not end");
  }

  void command() {
    const long before = totals_.answers;
    const Peer peer = Peer::connectedTo(in_);
    (void)peer.send(setHotKey(static_cast<int>(totals_.commands++ % 2) + 2));
    ::shutdown(peer.fd, SHUT_WR);
    // Another client may have replaced this one as the current client.
    const auto limit = Clock::now() + milliseconds(20);
    while (totals_.answers == before && Clock::now() < limit) std::this_thread::yield();
  }

  void press() {
    const std::vector<std::uint8_t> modifiers{kKeyLeftControl, kKeyLeftAlt};
    keyboard_.press(modifiers);
    keyboard_.hold(kKeyD, milliseconds(5));
    keyboard_.release(modifiers);
    ++totals_.presses;
    std::this_thread::sleep_for(milliseconds(100));
  }

  void hold() {
    std::vector<Peer> held;
    held.reserve(50);
    for (int i = 0; i < 50; ++i) held.push_back(Peer::connectedTo(in_));
    std::this_thread::sleep_for(milliseconds(700));
  }

  void sendInvalidInput() {
    static const std::vector<std::string> kTexts{"",
                                                 "{\"command\":",
                                                 "\xff\xfe",
                                                 std::string("\0{}", 3),
                                                 std::string(1U << 20U, '['),
                                                 std::string(200000, 'x'),
                                                 R"({"command":"SetHotKey","virtualkey":-1})"};
    static thread_local std::minstd_rand random;
    const Peer peer = Peer::connectedTo(in_);
    (void)peer.send(kTexts[random() % kTexts.size()]);
    ++totals_.commands;
    std::this_thread::sleep_for(milliseconds(random() % 50));
  }

  void changeLayout() {
    // Not ChildProcess, which would end with the thread that started it.
    static const std::vector<std::string> kLayouts{"us", "de", "fr", "us"};
    const auto line =
        "setxkbmap -display " + server_.display() + " " + kLayouts[layout_++ % kLayouts.size()];
    (void)!std::system(line.c_str());
    std::this_thread::sleep_for(seconds(2));
  }

  Totals& totals_;
  XServer server_;
  Keyboard keyboard_{server_.display()};
  const XClient editor_{server_.display()};
  const TemporaryDirectory directory_;
  const std::string in_ = directory_.path("in");
  const Receiver receiver_{directory_.path("out"), totals_};
  ChildProcess process_{{"sh", "-c", R"(exec "$0" "$@" > /dev/null)", SELDIAL_PROGRAM,
                         "dialerpipename=" + in_, "clientpipename=" + directory_.path("out")},
                        {server_.environment()}};
  std::size_t descriptors_ = 0;
  std::size_t threads_ = 0;
  std::size_t layout_ = 0;
  Slope memory_;
};

/// Returns the bytes per command that the longest run grew by.
double soak(Clock::time_point end, Totals& totals) {
  Slope longest;
  while (Clock::now() < end) {
    ProgramRun programRun(totals);
    for (int i = 0; i < kPausesPerRun && Clock::now() < end; ++i) {
      programRun.applyLoad();
      programRun.pause();
    }
    if (programRun.memory().count() > longest.count()) longest = programRun.memory();
    Clock::now() < end ? programRun.loseServer() : programRun.terminate();
  }
  return longest.value();
}

}  // namespace
}  // namespace seldial::tests

int main(int argc, char* argv[]) {
  using namespace seldial::tests;
  const auto minutes = std::chrono::minutes(argc > 1 ? std::strtol(argv[1], nullptr, 10) : 60);
  Totals totals;
  int status = 0;
  double slope = 0;
  try {
    slope = soak(Clock::now() + minutes, totals);
    if (!SELDIAL_SANITIZED && slope > kMaxBytesPerCommand) throw std::runtime_error("it grows");
  } catch (const std::exception& failure) {
    std::printf("FAILED: %s\n", failure.what());
    status = 1;
  }
  std::printf("%ld commands, %ld answers, %ld presses, %ld calls, %.2f bytes per command\n",
              totals.commands.load(), totals.answers.load(), totals.presses.load(),
              totals.calls.load(), slope);
  return status;
}
