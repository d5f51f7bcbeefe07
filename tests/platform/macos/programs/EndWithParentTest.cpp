// The watcher of macOS among real processes, over a double of the system's event queues.
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "platform/EndWithParent.h"

namespace seldial::platform {
namespace {

template <class Body>
pid_t forked(const Body& body) {
  const pid_t process = fork();
  if (process != 0) return process;
  body();
  _exit(0);
}

/// The descendants of the test whose own parents are gone become its children.
class EndWithParent : public testing::Test {
 protected:
  EndWithParent() {
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    EXPECT_EQ(pipe(told_), 0);
  }
  ~EndWithParent() override {
    close(told_[0]);
    close(told_[1]);
    prctl(PR_SET_CHILD_SUBREAPER, 0);
  }

  /// Told by a child to the test: its number, when endWithParent() has agreed, otherwise errno.
  void tell(bool agreed) {
    const int number = agreed ? getpid() : errno;
    if (write(told_[1], &number, sizeof number) != sizeof number) _exit(1);
    close(told_[1]);
  }
  int hear() {
    int number = -1;
    EXPECT_EQ(read(told_[0], &number, sizeof number), static_cast<ssize_t>(sizeof number));
    return number;
  }

  static int statusOf(pid_t process) {
    int status = -1;
    EXPECT_EQ(waitpid(process, &status, 0), process);
    return status;
  }

  /// Waits until no descendant is left; how many there still were.
  static int goneDescendants() {
    int count = 0;
    while (waitpid(-1, nullptr, 0) > 0) ++count;
    return count;
  }

  int told_[2] = {-1, -1};
};

TEST_F(EndWithParent, AChildIsToldToEndWhenItsParentIsKilled) {
  const pid_t parent = forked([&] {
    const pid_t self = getpid();
    forked([&] {
      tell(endWithParent(self));
      execlp("sleep", "sleep", "1000", nullptr);
    });
    pause();
  });
  const pid_t child = hear();
  kill(parent, SIGKILL);
  statusOf(parent);
  const int status = statusOf(child);
  ASSERT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(WTERMSIG(status), SIGTERM);
  EXPECT_EQ(goneDescendants(), 1);  // the watcher
}

TEST_F(EndWithParent, NobodyIsLeftWhenTheChildEndsFirst) {
  const pid_t child = forked([&, self = getpid()] { tell(endWithParent(self)); });
  EXPECT_EQ(hear(), child);
  EXPECT_EQ(statusOf(child), 0);
  EXPECT_EQ(goneDescendants(), 1);
}

TEST_F(EndWithParent, TheChildHasNoChild) {
  const pid_t child = forked([&, self = getpid()] {
    tell(endWithParent(self));
    _exit(waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD ? 0 : 1);
  });
  EXPECT_EQ(hear(), child);
  EXPECT_EQ(statusOf(child), 0);
  EXPECT_EQ(goneDescendants(), 1);
}

TEST_F(EndWithParent, TheWatcherHoldsNobodysPipe) {
  const pid_t child = forked([&, self = getpid()] {
    tell(endWithParent(self));
    pause();
  });
  EXPECT_EQ(hear(), child);
  close(std::exchange(told_[1], -1));
  char end = 0;
  EXPECT_EQ(read(told_[0], &end, 1), 0);  // while the child and its watcher live
  kill(child, SIGKILL);
  statusOf(child);
  EXPECT_EQ(goneDescendants(), 1);
}

TEST_F(EndWithParent, AParentThatIsGoneAlreadyIsSaid) {
  const pid_t gone = forked([] {});
  statusOf(gone);
  const pid_t child = forked([&] { tell(endWithParent(gone)); });
  EXPECT_EQ(hear(), ESRCH);
  statusOf(child);
  goneDescendants();
}

TEST_F(EndWithParent, AProcessThatIsNoParentIsNotOne) {
  const pid_t other = forked([] { pause(); });
  const pid_t child = forked([&] { tell(endWithParent(other)); });
  EXPECT_EQ(hear(), ESRCH);
  EXPECT_EQ(statusOf(child), 0);
  kill(other, SIGKILL);
  EXPECT_EQ(goneDescendants(), 2);  // the other process and the watcher
}

}  // namespace
}  // namespace seldial::platform
