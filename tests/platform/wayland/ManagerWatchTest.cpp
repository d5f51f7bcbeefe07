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

  /// As the first manager that reads it.
  void refillTheEmptyClipboard(bool withText) {
    use([] {}, [&] { watch.emptyWasRead(); });
    watch.clearedAgain(now);
    watch.clearingReported();
    watch.taken(now, withText);
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
  use([] {}, [&] { watch.emptyWasRead(); });
  EXPECT_TRUE(watch.mayBeFromManager());
  watch.clearedAgain(now);
  watch.clearingReported();
  watch.emptyWasRead();
  EXPECT_EQ(watch.quietFrom(), now + ManagerWatch::kReaction);
  watch.becameQuiet();
  EXPECT_FALSE(watch.mayBeFromManager());
  now += ManagerWatch::kLatest;
  use([] {}, [&] { watch.emptyWasRead(); });
  EXPECT_FALSE(watch.mayBeFromManager());
}

TEST_F(Managers, OneThatRefillsTheEmptyClipboardIsWaitedForEachTime) {
  refillTheEmptyClipboard(true);
  watch.becameQuiet();
  for (int i = 0; i < 2; ++i) {
    now += ManagerWatch::kLatest;
    watch.cleared(now);
    EXPECT_EQ(watch.quietFrom(), now + ManagerWatch::kReaction);
    use([&] { copy(); }, [] {});
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

}  // namespace
}  // namespace seldial::platform::wayland
