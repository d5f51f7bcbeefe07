// The queues and the termination signals on Dispatch.
#include <csignal>
#include <memory>

#include "platform/BackgroundQueue.h"
#include "platform/macos/Application.h"
#include "tests/platform/macos/AppleTest.h"

namespace seldial::platform::macos {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using tests::apple;

using MacMainQueue = tests::AppleTest;

TEST_F(MacMainQueue, UsesTheMainQueueOfDispatchAndRunsEachTaskOnce) {
  DispatchMainQueue queue;
  std::vector<int> ran;
  queue.async([&ran] { ran.push_back(1); });
  queue.async([&ran] { ran.push_back(2); });
  EXPECT_THAT(apple().calls,
              ElementsAre("dispatch_async_f main queue", "dispatch_async_f main queue"));
  EXPECT_THAT(ran, IsEmpty());
  for (const auto& task : apple().submitted) task.run();
  EXPECT_THAT(ran, ElementsAre(1, 2));
}

TEST_F(MacMainQueue, DestroysATaskAfterItHasRun) {
  const auto held = std::make_shared<int>();
  DispatchMainQueue().async([held] {});
  EXPECT_EQ(held.use_count(), 2);
  apple().submitted.at(0).run();
  EXPECT_EQ(held.use_count(), 1);
}

TEST_F(MacMainQueue, KnowsTheMainThread) {
  const DispatchMainQueue queue;
  EXPECT_TRUE(queue.isMainThread());
  apple().onMainThread = false;
  EXPECT_FALSE(queue.isMainThread());
}

struct MacBackgroundQueue : tests::AppleTest {
  const std::shared_ptr<BackgroundQueue> queue = sharedBackgroundQueue();
};

TEST_F(MacBackgroundQueue, GivesEachTaskASerialQueueAndReleasesIt) {
  int ran = 0;
  queue->async([&ran] { ++ran; });
  queue->async([&ran] { ++ran; });
  EXPECT_THAT(apple().calls, ElementsAre("dispatch_queue_create org.seldial.background serial",
                                         "dispatch_async_f queue 1", "dispatch_release queue 1",
                                         "dispatch_queue_create org.seldial.background serial",
                                         "dispatch_async_f queue 2", "dispatch_release queue 2"));
  for (const auto& task : apple().submitted) task.run();
  EXPECT_EQ(ran, 2);
}

TEST_F(MacBackgroundQueue, DelaysATask) {
  int ran = 0;
  queue->after(std::chrono::milliseconds(1), [&ran] { ++ran; });
  EXPECT_THAT(
      apple().calls,
      ElementsAre("dispatch_queue_create org.seldial.background serial", "dispatch_time 0 1000000",
                  "dispatch_after_f 1000001 queue 1", "dispatch_release queue 1"));
  apple().submitted.at(0).run();
  EXPECT_EQ(ran, 1);
}

/// Restores the actions of the termination signals.
struct MacTerminationSignals : tests::AppleTest {
  MacTerminationSignals() {
    for (std::size_t i = 0; i < 3; ++i) {
      sigaction(kSignals[i], nullptr, &before[i]);
      std::signal(kSignals[i], SIG_DFL);
    }
  }
  ~MacTerminationSignals() override {
    for (std::size_t i = 0; i < 3; ++i) sigaction(kSignals[i], &before[i], nullptr);
    apple().living.clear();  // the sources stay for the rest of the process
  }

  static bool isIgnored(int signal) {
    struct sigaction action {};
    sigaction(signal, nullptr, &action);
    return action.sa_handler == SIG_IGN;
  }

  static constexpr int kSignals[] = {SIGTERM, SIGINT, SIGHUP};
  struct sigaction before[3];
};

TEST_F(MacTerminationSignals, ArriveOnTheMainQueueEachTime) {
  int received = 0;
  onTerminationSignals([&received] { ++received; });
  EXPECT_THAT(apple().calls, ElementsAre("dispatch_source_create 15 0 on main queue",
                                         "dispatch_source_create 2 0 on main queue",
                                         "dispatch_source_create 1 0 on main queue"));
  for (const auto& [object, source] : apple().sources) {
    EXPECT_EQ(source.type, DISPATCH_SOURCE_TYPE_SIGNAL);
    EXPECT_TRUE(source.resumed);
    source.handler(source.context);
    source.handler(source.context);
  }
  EXPECT_EQ(received, 6);
}

TEST_F(MacTerminationSignals, DoNotEndTheProcessByThemselves) {
  onTerminationSignals([] {});
  for (const int signal : kSignals) EXPECT_TRUE(isIgnored(signal)) << signal;
}

TEST_F(MacTerminationSignals, LeaveAnIgnoredHangUpAlone) {
  std::signal(SIGHUP, SIG_IGN);
  onTerminationSignals([] {});
  EXPECT_THAT(apple().sources, SizeIs(2));
  for (const auto& [object, source] : apple().sources) EXPECT_NE(source.handle, SIGHUP);
}

}  // namespace
}  // namespace seldial::platform::macos
