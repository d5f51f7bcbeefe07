#include "tests/faults/Scenario.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <stdexcept>
#include <thread>

#include "tests/support/ProcessState.h"
#include "tests/support/Waiting.h"
#include "tests/support/desktop/Keys.h"

namespace seldial::tests {
namespace {

using Clock = std::chrono::steady_clock;

/// How long to wait for a message that the fault may have suppressed, before it is requested again.
constexpr std::chrono::milliseconds kTimeLimitAfterFault{1500};

const std::vector<std::uint8_t> kModifiers{kKeyLeftControl, kKeyLeftAlt};
constexpr const char* kSetHotKey =
    R"({"command":"SetHotKey","modifierCtrl":true,"modifierAlt":true,"virtualkey":2,)"
    R"("readdelay":50})";

}  // namespace

Scenario::Scenario(FaultDesktop& desktop, FaultInjector& injector, std::optional<Fault> fault,
                   std::optional<std::size_t> mostDescriptors)
    : desktop_(desktop),
      injector_(injector),
      fault_(std::move(fault)),
      mostDescriptors_(mostDescriptors) {}

void Scenario::run() {
  start();
  if (listening_) command();
  if (hasHotKey_) press();
  if (listening_ && !hasEnded()) countDescriptors();
  end();
}

void Scenario::enter(Phase phase) {
  phase_ = phase;
  injector_.enter(phase);
}

/// Whether the fault has occurred in this phase.
bool Scenario::mayFail() const {
  return fault_ && fault_->phase == phase_ && injector_.hasInjected();
}

bool Scenario::hasEnded() {
  ended_ = ended_ || !process_->isRunning();
  return ended_;
}

void Scenario::start() {
  enter(kStart);
  auto environment = injector_.environment();
  environment.push_back(desktop_.server.environment());
  process_.emplace(injector_.command({SELDIAL_PROGRAM, "-log", "dialerpipename=" + in_,
                                      "clientpipename=" + out_}),
                   std::move(environment), std::string(), Streams{Streams::Errors::kCaptured, {}});
  std::optional<Clock::time_point> struck;
  const bool settled = eventually([&] {
    if (!struck && mayFail()) struck = Clock::now();
    listening_ = Peer::connectedTo(in_).connected();
    return listening_ || hasEnded() || (struck && Clock::now() > *struck + kTimeLimitAfterFault);
  });
  EXPECT_TRUE(settled) << "neither listens nor ends";
  // The connection above is also a command, an empty one.
  if (listening_) listening_ = isAnswered("empty string", true) || mayFail();
}

/// Waits for the next message that contains `part`. The fault may have suppressed the first one.
bool Scenario::isAnswered(const std::string& part, bool first) {
  const auto begin = Clock::now();
  while (Clock::now() < begin + (first && mayFail() ? kTimeLimitAfterFault : kTimeLimit)) {
    if (client_.hasConnection()) {
      messages_.push_back(client_.nextMessage().value_or(""));
      if (messages_.back().find(part) != std::string::npos) return true;
    } else if (hasEnded()) {
      return false;
    } else {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  }
  return false;
}

/// False if nobody listens, or no answer contains `part`.
bool Scenario::ask(const std::string& text, const std::string& part, bool first) {
  Peer peer = Peer::connectedTo(in_);
  if (!peer.connected() || !peer.send(text)) return false;
  peer.leave();
  return isAnswered(part, first);
}

void Scenario::command() {
  enter(kCommand);
  // A request from before the fault may fail because of it; a later request must not.
  bool answered = false;
  for (int attempt = 0; attempt < 2 && !hasHotKey_; ++attempt) {
    answered = ask(kSetHotKey, "HotkeyState", attempt == 0);
    hasHotKey_ = answered && messages_.back().find(R"("result":true)") != std::string::npos;
  }
  if (hasEnded()) return;
  listening_ = Peer::connectedTo(in_).connected();
  if (!listening_) return;  // the program must report this, which end() checks
  const bool desktopMayBeMissing = fault_ && fault_->phase == kStart;
  const bool served = answered && (hasHotKey_ || desktopMayBeMissing);
  // A program that has lost its desktop still listens for a moment.
  if (!served && eventually([this] { return hasEnded(); })) return;
  EXPECT_TRUE(answered) << "a second command is lost";
  EXPECT_TRUE(hasHotKey_ || desktopMayBeMissing) << "a second SetHotKey is refused";
}

void Scenario::press() {
  enter(kPress);
  bool dialled = false;
  for (int attempt = 0; attempt < 2 && !dialled && !hasEnded(); ++attempt) {
    desktop_.keyboard.press(kModifiers);
    desktop_.keyboard.tap(kKeyD);
    desktop_.keyboard.release(kModifiers);
    dialled = isAnswered("+31 20 123 4567", attempt == 0);
  }
  EXPECT_TRUE(dialled || hasEnded()) << "a second press is lost";
}

void Scenario::countDescriptors() {
  const auto few = [this] {
    try {
      descriptors_ = openDescriptors(process_->id());
    } catch (const std::filesystem::filesystem_error&) {
      return hasEnded();  // while it ends, it shows them to root alone
    }
    return !mostDescriptors_ || *descriptors_ <= *mostDescriptors_;
  };
  EXPECT_TRUE(eventually(few)) << descriptors_.value_or(0) << " descriptors are open";
}

void Scenario::end() {
  enter(kEnd);
  if (hasEnded()) {
    expectStatedError();
  } else {
    if (!listening_ && !writeFails()) expectCloseMessage();
    process_->signal(SIGTERM);
    expectOrderlyEnd();
  }
  expectKeysUp();
  if (!listening_ || writeFails()) return;
  const auto lines = process_->restOfLines();
  for (const auto& message : messages_) {
    EXPECT_THAT(lines, testing::Contains(message)) << "a message is not on standard output";
  }
}

/// Whether writing fails; then any line may be missing.
bool Scenario::writeFails() const {
  return fault_ && fault_->name == "write";
}

/// Waits until the program has reported that it accepts no more commands, or has ended.
void Scenario::expectCloseMessage() {
  const auto says = [](const std::string& line) {
    return line.find("did close") != std::string::npos ||
           line.find("listen failed") != std::string::npos;
  };
  try {
    while (!says(process_->readLine())) continue;
  } catch (const std::runtime_error& error) {
    EXPECT_TRUE(eventually([this] { return hasEnded(); })) << "it is deaf, but: " << error.what();
  }
}

/// Status 1 means that it ended with an error just before it was told to end.
void Scenario::expectOrderlyEnd() {
  const int status = process_->wait();
  if (status != 0 && injector_.hasInjected()) {
    expectStatedError();
    return;
  }
  EXPECT_EQ(status, 0) << process_->errors();
  const bool mayStay = fault_ && fault_->phase == kEnd;
  EXPECT_TRUE(mayStay || !std::filesystem::exists(in_)) << "the socket is left behind";
}

void Scenario::expectStatedError() {
  const int status = process_->wait();
  EXPECT_TRUE(status == 1 || status == 128 + SIGABRT) << "ended with " << status;
  EXPECT_NE(process_->errors(), "") << "ended without a word, with " << status;
  EXPECT_TRUE(mayFail() || injector_.hasInjected()) << "ended without a fault";
  EXPECT_FALSE(status == 1 && std::filesystem::exists(in_)) << "the socket is left behind";
}

void Scenario::expectKeysUp() {
  EXPECT_TRUE(eventually([this] { return desktop_.keyboard.down().empty(); }))
      << "keys are stuck: " << testing::PrintToString(desktop_.keyboard.down());
}

}  // namespace seldial::tests
