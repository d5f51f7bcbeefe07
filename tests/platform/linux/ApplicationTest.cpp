#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include "platform/linux/Application.h"
#include "platform/posix/ProcessSetUp.h"

namespace seldial::platform::linux_port {
namespace {

using testing::ElementsAre;

class RecordingDelegate final : public ApplicationDelegate {
 public:
  void applicationWillFinishLaunching() override { calls.emplace_back("will finish"); }
  void applicationDidFinishLaunching() override {
    calls.emplace_back("did finish");
    onLaunched();
  }
  void applicationWillTerminate() override { calls.emplace_back("will terminate"); }

  std::vector<std::string> calls;
  std::function<void()> onLaunched = [] {};
};

struct ApplicationTest : testing::Test {
  ApplicationTest() {
    std::signal(SIGHUP, SIG_DFL);  // where the tests themselves were started to outlive a hang-up
    const sigset_t signals = posix_port::terminationSignals();
    pthread_sigmask(SIG_BLOCK, &signals, &before);
  }
  ~ApplicationTest() override { pthread_sigmask(SIG_SETMASK, &before, nullptr); }

  sigset_t before{};
  MainLoop loop;
  LinuxApplication application{{"seldial", "-log"}, loop};
  RecordingDelegate delegate;
};

TEST_F(ApplicationTest, TerminateEndsItInOrderWithStatus0) {
  delegate.onLaunched = [this] { application.terminate(&delegate); };
  EXPECT_EQ(application.run(delegate), 0);
  EXPECT_THAT(delegate.calls, ElementsAre("will finish", "did finish", "will terminate"));
}

TEST_F(ApplicationTest, ASignalEndsItInOrderWithStatus0) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    MainLoop own;
    LinuxApplication signalled({}, own);
    RecordingDelegate told;
    told.onLaunched = [signal] { raise(signal); };
    EXPECT_EQ(signalled.run(told), 0);
    EXPECT_EQ(told.calls.back(), "will terminate");
    // What was read as a signal of one application is no signal to the next.
    const sigset_t signals = posix_port::terminationSignals();
    const timespec now{};
    sigtimedwait(&signals, nullptr, &now);
  }
}

TEST_F(ApplicationTest, ALossEndsItInOrderWithItsStatus) {
  loop.async([this] { application.terminateWithStatus(1); });
  EXPECT_EQ(application.run(delegate), 1);
  EXPECT_EQ(delegate.calls.back(), "will terminate");
}

TEST_F(ApplicationTest, GivesItsArguments) {
  EXPECT_THAT(application.arguments(), ElementsAre("seldial", "-log"));
}

}  // namespace
}  // namespace seldial::platform::linux_port
