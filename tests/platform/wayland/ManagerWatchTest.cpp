// Telling a copy from what a clipboard manager does.
#include <gtest/gtest.h>

#include "platform/wayland/ManagerWatch.h"

namespace seldial::platform::wayland {
namespace {

using std::chrono::milliseconds;

class Managers : public testing::Test {
 protected:
  /// A use of the hot key in which the application copies, and a manager does something before
  /// and after that.
  template <class Before, class After>
  void use(Before before, After after) {
    watch.cleared(now);
    watch.clearingReported();
    before();
    now = std::max(now, watch.quietFrom());
    watch.becameQuiet();
    watch.expectCopy();
    copy();
    after();
    watch.copyWasRead();
  }
  void use() {
    use([] {}, [] {});
  }
  void copy() {
    now += milliseconds(10);
    watch.taken(now, true);
  }

  void clearAgain() {
    watch.clearedAgain(now);
    watch.clearingReported();
  }
  /// A manager reads the empty clipboard and takes it.
  void answer(bool withText) {
    watch.emptyWasRead(now);
    now += milliseconds(10);
    watch.taken(now, withText);
  }
  /// As the first manager that reads it.
  void refillTheEmptyClipboard(bool withText) {
    use([] {}, [&] { watch.emptyWasRead(now); });
    clearAgain();
    answer(withText);
  }

  [[nodiscard]] bool isQuiet() const { return watch.quietFrom() <= now; }

  ManagerWatch watch;
  ManagerWatch::Clock::time_point now = ManagerWatch::Clock::time_point() + std::chrono::hours(1);
};

TEST_F(Managers, NoneIsAwaitedWithoutAReason) {
  for (int i = 0; i < 3; ++i) {
    watch.cleared(now);
    EXPECT_TRUE(isQuiet());
    use();
    EXPECT_FALSE(watch.mayBeFromManager());
  }
}

TEST_F(Managers, ATextJustBeforeTheClearingIsWaitedFor) {
  watch.taken(now, true);
  now += milliseconds(100);
  watch.cleared(now);
  EXPECT_EQ(watch.quietFrom(), now - milliseconds(100) + ManagerWatch::kReaction);
  watch.taken(now, true);  // a manager takes up the old text
  EXPECT_EQ(watch.quietFrom(), now + ManagerWatch::kReaction);
}

TEST_F(Managers, ATextThatIsReportedLateIsNotTheCopy) {
  watch.cleared(now);
  EXPECT_TRUE(isQuiet());
  watch.expectCopy();
  watch.taken(now, true);  // before our clearing
  watch.clearingReported();
  watch.taken(now, true);
  EXPECT_TRUE(watch.mayBeFromManager());
}

TEST_F(Managers, OneThatTakesUpACopyIsRememberedAndWaitedFor) {
  use([] {}, [&] { copy(); });
  use();
  watch.cleared(now);
  EXPECT_FALSE(isQuiet());
}

TEST_F(Managers, OneIsNotMissedForBeingSlow) {
  use([] {}, [&] { copy(); });
  now += ManagerWatch::kReaction;
  use();
  EXPECT_TRUE(watch.mayBeFromManager());
  now += ManagerWatch::kLatest;
  use();
  EXPECT_FALSE(watch.mayBeFromManager());
}

TEST_F(Managers, OneIsForgottenAfterItHasLeftACopyAlone) {
  use([] {}, [&] { copy(); });  // perhaps not a manager, but the user's own copy
  now += ManagerWatch::kReaction;
  use();
  now += ManagerWatch::kLatest;
  watch.taken(now, true);
  now += ManagerWatch::kLatest;
  use();
  watch.cleared(now);
  EXPECT_TRUE(isQuiet());
  use();
  EXPECT_FALSE(watch.mayBeFromManager());
}

TEST_F(Managers, ACopyThatComesTooLateIsNotTakenForOne) {
  use();
  watch.cleared(now);
  watch.clearingReported();
  watch.expectCopy();
  watch.copyWasRead();
  copy();
  now += ManagerWatch::kReaction;
  use();
  watch.cleared(now);
  EXPECT_TRUE(isQuiet());
}

TEST_F(Managers, OneThatStillTakesUpCopiesIsNotForgotten) {
  for (int i = 0; i < 2; ++i) {
    use([] {}, [&] { copy(); });
    now += ManagerWatch::kLatest;
  }
  use();
  watch.cleared(now);
  EXPECT_FALSE(isQuiet());
}

TEST_F(Managers, OneThatReadsTheEmptyClipboardIsTriedOnce) {
  use([] {}, [&] { watch.emptyWasRead(now); });
  EXPECT_TRUE(watch.mayBeFromManager());
  clearAgain();
  EXPECT_EQ(watch.quietFrom(), now + ManagerWatch::kKnownReaction);
  now += milliseconds(1500);
  watch.emptyWasRead(now);
  EXPECT_EQ(watch.quietFrom(), now + ManagerWatch::kReaction);
  now = watch.quietFrom();
  watch.becameQuiet();
  EXPECT_FALSE(watch.mayBeFromManager());
  now += ManagerWatch::kLatest;
  use([] {}, [&] { watch.emptyWasRead(now); });
  EXPECT_FALSE(watch.mayBeFromManager());
}

TEST_F(Managers, OneThatRefillsTheEmptyClipboardIsWaitedForEachTime) {
  refillTheEmptyClipboard(true);
  watch.becameQuiet();
  for (int i = 0; i < 2; ++i) {
    now += ManagerWatch::kLatest;
    watch.cleared(now);
    EXPECT_EQ(watch.quietFrom(), now + ManagerWatch::kKnownReaction);
    use([&] { answer(true); }, [] {});
    EXPECT_TRUE(watch.mayBeFromManager());
  }
  now += ManagerWatch::kLatest;
  use();  // it has ended
  now += ManagerWatch::kLatest;
  watch.cleared(now);
  EXPECT_TRUE(isQuiet());
}

TEST_F(Managers, OneThatCopiesTheEmptyClipboardDelaysAUseLess) {
  refillTheEmptyClipboard(false);
  EXPECT_EQ(watch.quietFrom(), now + ManagerWatch::kPause);
}

TEST_F(Managers, OneThatReplacesACopyByTheEmptyClipboardIsWaitedForFromThenOn) {
  use([] {}, [&] { answer(false); });
  EXPECT_TRUE(watch.isCopyReplaced());
  EXPECT_TRUE(watch.mayBeFromManager());
  clearAgain();
  EXPECT_FALSE(watch.isCopyReplaced());
  answer(false);
  now = watch.quietFrom();
  watch.becameQuiet();
  now += ManagerWatch::kLatest;
  use([&] { answer(false); }, [] {});
  EXPECT_FALSE(watch.isCopyReplaced());
  EXPECT_FALSE(watch.mayBeFromManager());
}

TEST_F(Managers, OneThatAnswersButHasNotReadTheEmptyClipboardYetIsWaitedFor) {
  refillTheEmptyClipboard(true);
  watch.becameQuiet();
  now += ManagerWatch::kLatest;
  watch.cleared(now);
  watch.clearingReported();
  watch.taken(now, false);  // because of something earlier
  EXPECT_EQ(watch.quietFrom(), now + ManagerWatch::kKnownReaction);
  answer(false);
  EXPECT_EQ(watch.quietFrom(), now + ManagerWatch::kPause);
}

TEST_F(Managers, OneThatRefillsTheEmptyClipboardAfterTheUseIsWaitedForInTheNext) {
  watch.cleared(now);
  watch.clearingReported();
  watch.expectCopy();
  watch.emptyWasRead(now);
  watch.copyWasRead();  // nothing is selected
  now += milliseconds(1500);
  watch.taken(now, true);
  now += ManagerWatch::kLatest;
  watch.cleared(now);
  EXPECT_EQ(watch.quietFrom(), now + ManagerWatch::kKnownReaction);
}

TEST_F(Managers, OneThatTookTheClearedClipboardAndOnlyReadsItNowIsWaitedForTwice) {
  refillTheEmptyClipboard(true);
  watch.becameQuiet();
  now += ManagerWatch::kLatest;
  use([&] { watch.emptyWasRead(now); }, [] {});
  EXPECT_TRUE(watch.mayBeFromManager());
  clearAgain();
  watch.emptyWasRead(now);
  now = watch.quietFrom();
  watch.becameQuiet();
  now += ManagerWatch::kLatest;
  use([&] { watch.emptyWasRead(now); }, [] {});
  EXPECT_FALSE(watch.mayBeFromManager());
}

}  // namespace
}  // namespace seldial::platform::wayland
