#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <memory>
#include <utility>

#include "ucclient/ChildProcess.h"
#include "ucclient/MainThread.h"

namespace seldial {
namespace {

/// A child whose events arrive on the test's thread.
class ChildProcessTest : public testing::Test {
 protected:
  void start(const std::string& script) {
    // A task must not own the thread on which it is to run: a task that never runs would keep it
    // alive.
    ChildProcess::Events events;
    events.wroteLine = [main = main_, lines = lines_](const std::string& line) {
      main->post([&main = *main, lines, line] {
        lines->push_back(line);
        main.stop();
      });
    };
    events.ended = [main = ended_] { main->post([&main = *main] { main.stop(); }); };
    child_ = ChildProcess::start({"sh", "-c", script}, std::move(events), error_);
    ASSERT_TRUE(child_) << error_;
  }

  /// Waits for the next line.
  std::string line() {
    main_->run();
    return lines_->back();
  }

  std::string endOfChild() {
    ended_->run();
    return describeExitStatus(child_->wait());
  }

  const std::shared_ptr<MainThread> main_ = std::make_shared<MainThread>();
  const std::shared_ptr<MainThread> ended_ = std::make_shared<MainThread>();
  const std::shared_ptr<std::vector<std::string>> lines_ =
      std::make_shared<std::vector<std::string>>();
  std::string error_;
  std::unique_ptr<ChildProcess> child_;
};

TEST_F(ChildProcessTest, ItsLinesAndItsEndAreReported) {
  start("echo first; exit 3");
  EXPECT_EQ(line(), "first");
  EXPECT_EQ(endOfChild(), "ended with status 3");
}

TEST_F(ChildProcessTest, ASignalReachesIt) {
  start("echo ready; exec sleep 1000");
  EXPECT_EQ(line(), "ready");
  child_->signal(SIGTERM);
  EXPECT_EQ(endOfChild(), "was killed by signal 15 (Terminated)");
}

TEST_F(ChildProcessTest, ItHasItsOwnProcessGroupAndNoInput) {
  start("cat; cut -d ' ' -f 5 /proc/$$/stat");
  const std::string group = line();
  EXPECT_NE(group, std::to_string(getpgrp()));
  EXPECT_EQ(endOfChild(), "ended with status 0");
}

TEST_F(ChildProcessTest, ItIsKilledWithItsObject) {
  start("trap '' TERM; echo $$; exec sleep 1000");
  const pid_t process = std::stoi(line());
  child_.reset();
  EXPECT_EQ(kill(process, 0), -1);
}

TEST_F(ChildProcessTest, AMissingProgramIsReported) {
  EXPECT_FALSE(ChildProcess::start({"/nowhere/seldial"}, {}, error_));
  EXPECT_EQ(error_, "cannot start /nowhere/seldial: No such file or directory");
}

}  // namespace
}  // namespace seldial
