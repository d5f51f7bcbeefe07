// The start at login, with a fake systemctl.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "client/Configuration.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryDirectory.h"

namespace seldial {
namespace {

using testing::HasSubstr;

class LoginStart : public testing::Test {
 protected:
  LoginStart() {
    setenv("XDG_CONFIG_HOME", directory_.path("config").c_str(), 1);
    setenv("PATH", (directory_.path("") + ":/usr/bin:/bin").c_str(), 1);
    unsetenv("XDG_RUNTIME_DIR");
  }

  /// Creates a systemctl that records its arguments and exits with that status: 0 means that
  /// systemd runs the session.
  void makeSystemctl(int status) {
    const std::string path = directory_.path("systemctl");
    std::ofstream(path) << "#!/bin/sh\necho \"$@\" >>" << directory_.path("calls") << "\nexit "
                        << status << "\n";
    ASSERT_EQ(chmod(path.c_str(), 0700), 0);
  }

  [[nodiscard]] std::string content(const std::string& name) const {
    std::ostringstream text;
    text << std::ifstream(directory_.path(name)).rdbuf();
    return text.str();
  }

  std::string enable() {
    std::string result;
    return (enableLoginStart("/opt/a b/seldial-uc", result) ? "" : "failed: ") + result;
  }

  std::string disable() {
    std::string result;
    return (disableLoginStart(result) ? "" : "failed: ") + result;
  }

  const tests::TemporaryDirectory directory_;
  const std::string unit_ = "config/systemd/user/seldial-uc.service";
  const std::string entry_ = "config/autostart/seldial-uc.desktop";
};

TEST_F(LoginStart, WhereSystemdRunsTheSessionItIsAUnit) {
  makeSystemctl(0);
  EXPECT_EQ(enable(), "seldial-uc starts at login, by " + directory_.path(unit_));
  EXPECT_THAT(content(unit_), HasSubstr("\nExecStart=\"/opt/a b/seldial-uc\"\n"));
  EXPECT_EQ(content(entry_), "");
  EXPECT_TRUE(startsAtLogin());
  EXPECT_TRUE(startsBySystemd());
  EXPECT_EQ(disable(), "seldial-uc does not start at login");
  EXPECT_NE(access(directory_.path(unit_).c_str(), F_OK), 0);
  EXPECT_FALSE(startsAtLogin());
  EXPECT_EQ(content("calls"),
            "--user --quiet is-active graphical-session.target\n"
            "--user --quiet daemon-reload\n"
            "--user --quiet enable seldial-uc.service\n"
            "--user --quiet start seldial-uc.service\n"
            "--user --quiet disable --now seldial-uc.service\n"
            "--user --quiet daemon-reload\n");
}

TEST_F(LoginStart, ElsewhereItIsAnAutostartEntry) {
  makeSystemctl(3);
  EXPECT_EQ(enable(), "seldial-uc starts at the next login, by " + directory_.path(entry_));
  EXPECT_THAT(content(entry_), HasSubstr("\nExec=\"/opt/a b/seldial-uc\"\n"));
  EXPECT_EQ(content(unit_), "");
  EXPECT_TRUE(startsAtLogin());
  EXPECT_FALSE(startsBySystemd());
  EXPECT_EQ(disable(), "seldial-uc does not start at login");
  EXPECT_FALSE(startsAtLogin());
}

TEST_F(LoginStart, NeverByBoth) {
  makeSystemctl(3);
  (void)enable();
  makeSystemctl(0);
  (void)enable();
  EXPECT_EQ(content(entry_), "");
  EXPECT_NE(content(unit_), "");
}

TEST_F(LoginStart, WhatFailsIsReported) {
  setenv("PATH", directory_.path("").c_str(), 1);  // without systemctl
  std::ofstream(directory_.path("config")) << "no directory";
  EXPECT_EQ(enable(), "failed: cannot write " + directory_.path(entry_));
}

TEST_F(LoginStart, PathsAreQuoted) {
  const std::string path = R"(/opt/50% "$x\`)";
  EXPECT_THAT(loginUnit(path), HasSubstr(R"(ExecStart="/opt/50%% \"$$x\\`")"));
  EXPECT_THAT(autostartEntry(path), HasSubstr(R"(Exec="/opt/50%% \\"\\$x\\\\\\`")"));
}

}  // namespace
}  // namespace seldial
