#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <future>
#include <string>
#include <thread>

#include "platform/linux/BackgroundQueue.h"
#include "tests/support/ProcessState.h"
#include "tests/support/Waiting.h"

namespace {

std::atomic<int> refusedThreads = 0;  // this many starts of a thread fail

}  // namespace

// The names are the linker's (--wrap, see CMakeLists.txt).
// NOLINTBEGIN
extern "C" {
int __real_pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                          void* (*start)(void*), void* argument);
int __wrap_pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                          void* (*start)(void*), void* argument) {
  if (refusedThreads > 0) {
    --refusedThreads;
    return EAGAIN;
  }
  return __real_pthread_create(thread, attributes, start, argument);
}
}
// NOLINTEND

namespace seldial::platform {
namespace {

using tests::kTimeLimit;

bool threadsFallTo(std::size_t count) {
  return tests::eventually([count] { return tests::runningThreads() <= count; });
}

/// Runs `work` on the queue and waits for its result.
template <class Work>
auto onBackgroundThread(Work work) {
  std::promise<decltype(work())> promise;
  sharedBackgroundQueue()->async([&] { promise.set_value(work()); });
  auto result = promise.get_future();
  EXPECT_EQ(result.wait_for(kTimeLimit), std::future_status::ready);
  return result.get();
}

TEST(BackgroundQueue, RunsATaskOnAnotherThread) {
  EXPECT_NE(onBackgroundThread(&std::this_thread::get_id), std::this_thread::get_id());
}

TEST(BackgroundQueue, TasksThatBlockForeverDelayNoOtherTask) {
  std::thread([] {}).join();  // ThreadSanitizer starts its own thread with the first one
  const std::size_t before = tests::runningThreads();
  std::promise<void> release;
  const auto released = release.get_future().share();
  std::atomic<int> running{0};
  for (int i = 0; i < 500; ++i) {
    sharedBackgroundQueue()->async([&running, released] {
      ++running;
      released.wait();
    });
  }
  EXPECT_TRUE(onBackgroundThread([] { return true; }));
  release.set_value();
  EXPECT_TRUE(threadsFallTo(before)) << tests::runningThreads();
  EXPECT_EQ(running, 500);
}

TEST(BackgroundQueue, AnIdleThreadIsUsedAgain) {
  const auto first = onBackgroundThread([] { return gettid(); });
  // The thread becomes idle shortly after its task has ended, so a later task finds it.
  bool again = false;
  for (int i = 0; i < 1000 && !again; ++i) {
    again = onBackgroundThread([] { return gettid(); }) == first;
  }
  EXPECT_TRUE(again);
}

/// Holds a task and runs another one to its end before releasing the first.
void expectHeldUntilReleased(BackgroundQueue& queue) {
  std::atomic<bool> released = false;
  std::promise<bool> ran;
  const auto release = queue.asyncHeld([&] { ran.set_value(released); });
  std::promise<void> other;
  queue.async([&other] { other.set_value(); });
  ASSERT_EQ(other.get_future().wait_for(kTimeLimit), std::future_status::ready);
  released = true;
  release();
  auto wasReleased = ran.get_future();
  ASSERT_EQ(wasReleased.wait_for(kTimeLimit), std::future_status::ready);
  EXPECT_TRUE(wasReleased.get());
}

TEST(BackgroundQueue, AHeldTaskRunsWhenItIsReleased) {
  // A queue without an idle thread, never destroyed.
  static auto* const queue = new linux_port::ThreadPerTaskQueue;
  expectHeldUntilReleased(*queue);
  for (int round = 0; round < 100; ++round) expectHeldUntilReleased(*queue);  // idle threads
}

TEST(BackgroundQueue, AHeldTaskRunsEvenAfterTheIdleTimeOfItsThread) {
  static auto* const queue = new linux_port::ThreadPerTaskQueue;
  static std::atomic<bool> ended = false;
  std::promise<void> first;
  queue->async([&first] { first.set_value(); });
  ASSERT_EQ(first.get_future().wait_for(kTimeLimit), std::future_status::ready);
  std::promise<void> held;
  const auto release = queue->asyncHeld([&held] { held.set_value(); });
  linux_port::setBackgroundThreadEndAction([] { ended = true; });
  queue->async([] {});  // its thread becomes idle later than the other one, and ends
  EXPECT_TRUE(tests::eventually([] { return ended.load(); }));
  linux_port::setBackgroundThreadEndAction(nullptr);
  release();
  EXPECT_EQ(held.get_future().wait_for(kTimeLimit), std::future_status::ready);
}

TEST(BackgroundQueue, ADelayedTaskStartsNoSoonerThanItsDelay) {
  std::promise<std::chrono::steady_clock::time_point> started;
  const auto begin = std::chrono::steady_clock::now();
  sharedBackgroundQueue()->after(std::chrono::milliseconds(20),
                                 [&] { started.set_value(std::chrono::steady_clock::now()); });
  auto result = started.get_future();
  ASSERT_EQ(result.wait_for(kTimeLimit), std::future_status::ready);
  EXPECT_GE(result.get() - begin, std::chrono::milliseconds(20));
}

TEST(BackgroundQueue, SignalsNeverReachItsThreads) {
  const sigset_t mask = onBackgroundThread([] {
    sigset_t current;
    pthread_sigmask(SIG_SETMASK, nullptr, &current);
    return current;
  });
  for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGCHLD, SIGUSR1, SIGALRM}) {
    EXPECT_EQ(sigismember(&mask, signal), 1) << signal;
  }
}

TEST(BackgroundQueue, ATaskWhoseThreadIsRefusedRunsSoonAfter) {
  // A queue without an idle thread, never destroyed.
  static auto* const queue = new linux_port::ThreadPerTaskQueue;
  std::promise<void> ran;
  refusedThreads = 3;
  queue->async([&ran] { ran.set_value(); });
  EXPECT_EQ(ran.get_future().wait_for(kTimeLimit), std::future_status::ready);
  EXPECT_EQ(refusedThreads, 0);
}

TEST(BackgroundQueue, AThreadThatEndsRunsTheEndActionFirst) {
  static std::atomic<bool> ran = false;
  linux_port::setBackgroundThreadEndAction([] { ran = true; });
  sharedBackgroundQueue()->async([] {});
  EXPECT_TRUE(tests::eventually([] { return ran.load(); }));
  linux_port::setBackgroundThreadEndAction(nullptr);
}

TEST(BackgroundQueue, EveryTaskOfABurstRunsOnce) {
  constexpr int kTasks = 20000;
  std::promise<void> done;
  std::atomic<int> count{0};
  for (int i = 0; i < kTasks; ++i) {
    sharedBackgroundQueue()->async([&] {
      if (++count == kTasks) done.set_value();
    });
  }
  EXPECT_EQ(done.get_future().wait_for(kTimeLimit), std::future_status::ready);
  EXPECT_EQ(count, kTasks);
}

}  // namespace
}  // namespace seldial::platform
