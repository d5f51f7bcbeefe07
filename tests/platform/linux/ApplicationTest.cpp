#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <limits>
#include <mutex>

#include "platform/linux/Application.h"
#include "platform/posix/ProcessSetUp.h"
#include "tests/support/Waiting.h"

namespace seldial::platform::linux_port {
namespace {

using testing::ElementsAre;

class RecordingDelegate final : public ApplicationDelegate {
 public:
  void applicationWillFinishLaunching() override { note("will finish"); }
  void applicationDidFinishLaunching() override {
    note("did finish");
    onLaunched();
  }
  void applicationWillTerminate() override { note("will terminate"); }
  void applicationMustEnd() override { note("must end"); }

  /// Any thread.
  void note(const char* call) {
    const std::lock_guard lock(mutex_);
    calls.emplace_back(call);
  }

  std::vector<std::string> calls;
  std::function<void()> onLaunched = [] {};

 private:
  std::mutex mutex_;
};

struct ApplicationTest : testing::Test {
  ApplicationTest() {
    std::signal(SIGHUP, SIG_DFL);  // in case the tests themselves run under nohup
    const sigset_t signals = posix_port::terminationSignals();
    pthread_sigmask(SIG_BLOCK, &signals, &before);
  }
  ~ApplicationTest() override { pthread_sigmask(SIG_SETMASK, &before, nullptr); }

  sigset_t before{};
  const std::shared_ptr<MainLoop> loop = std::make_shared<MainLoop>();
  LinuxApplication application{{"seldial", "-log"}, loop};
  const std::shared_ptr<RecordingDelegate> delegate = std::make_shared<RecordingDelegate>();
};

TEST_F(ApplicationTest, TerminateEndsItCleanlyWithStatus0) {
  delegate->onLaunched = [this] { application.terminate(delegate.get()); };
  EXPECT_EQ(application.run(delegate), 0);
  EXPECT_THAT(delegate->calls, ElementsAre("will finish", "did finish", "will terminate"));
}

TEST_F(ApplicationTest, ASignalEndsItCleanlyWithStatus0) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    LinuxApplication signalled({}, std::make_shared<MainLoop>());
    const auto told = std::make_shared<RecordingDelegate>();
    told->onLaunched = [signal] { kill(getpid(), signal); };
    EXPECT_EQ(signalled.run(told), 0);
    EXPECT_THAT(told->calls, ElementsAre("will finish", "did finish", "will terminate"));
  }
}

TEST_F(ApplicationTest, TasksFromBeforeTheSignalRunFirst) {
  delegate->onLaunched = [this] {
    loop->async([this] {
      kill(getpid(), SIGTERM);
      delegate->note("task");
    });
    loop->async([this] { delegate->note("task"); });
  };
  EXPECT_EQ(application.run(delegate), 0);
  EXPECT_THAT(delegate->calls,
              ElementsAre("will finish", "did finish", "task", "task", "will terminate"));
}

TEST_F(ApplicationTest, ASignalInterruptsALongWait) {
  delegate->onLaunched = [this] {
    kill(getpid(), SIGTERM);
    application.usleep(std::numeric_limits<std::uint32_t>::max());  // more than an hour
    delegate->note("waited");
  };
  EXPECT_EQ(application.run(delegate), 0);
  EXPECT_THAT(delegate->calls,
              ElementsAre("will finish", "did finish", "must end", "waited", "will terminate"));
}

TEST_F(ApplicationTest, AMainThreadThatNeverReturnsIsLeftBehind) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto runForEver = [this] {
    delegate->onLaunched = [] {
      kill(getpid(), SIGTERM);
      for (;;) pause();
    };
    return application.run(delegate);
  };
  EXPECT_EXIT(runForEver(), testing::ExitedWithCode(0), "");
}

TEST_F(ApplicationTest, ASecondSignalEndsItAtOnce) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto sleepAfterTwoSignals = [this] {
    delegate->onLaunched = [this] {
      kill(getpid(), SIGTERM);
      kill(getpid(), SIGINT);
      application.usleep(std::numeric_limits<std::uint32_t>::max());
      ::usleep(100'000);
      _exit(EXIT_FAILURE);
    };
    return application.run(delegate);
  };
  const auto endsAtOnce = [&] {
    const pid_t child = fork();
    if (child == 0) _exit(sleepAfterTwoSignals());
    int status = 0;
    waitpid(child, &status, 0);
    return status == 0;
  };
  // The end races against the main thread, and on a busy machine it may lose.
  EXPECT_EXIT(_exit(tests::eventually(endsAtOnce) ? 0 : 1), testing::ExitedWithCode(0), "");
}

TEST_F(ApplicationTest, TheDelegateIsReleasedWhileSignalsAreStillHandled) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  class Stuck final : public ApplicationDelegate {
   public:
    ~Stuck() override {
      kill(getpid(), SIGTERM);
      for (;;) pause();
    }
    void applicationWillFinishLaunching() override {}
    void applicationDidFinishLaunching() override {}
    void applicationWillTerminate() override {}
  };
  application.terminate(nullptr);
  EXPECT_EXIT(application.run(std::make_shared<Stuck>()), testing::ExitedWithCode(0), "");
}

TEST_F(ApplicationTest, ALostDesktopEndsItCleanlyWithItsStatus) {
  loop->async([this] { application.terminateWithStatus(1); });
  EXPECT_EQ(application.run(delegate), 1);
  EXPECT_EQ(delegate->calls.back(), "will terminate");
}

TEST_F(ApplicationTest, GivesItsArguments) {
  EXPECT_THAT(application.arguments(), ElementsAre("seldial", "-log"));
}

}  // namespace
}  // namespace seldial::platform::linux_port
