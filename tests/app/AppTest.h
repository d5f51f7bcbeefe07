// An application on doubles: no desktop, and a main queue that the test drains.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/AppDelegate.h"
#include "app/GDUnixSocketEventsCS.h"
#include "hotkey/QKHotKey.h"
#include "hotkey/QKHotKeyCenter.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/PlatformDoubles.h"
#include "tests/support/Sockets.h"
#include "tests/support/TemporaryDirectory.h"

namespace seldial {

class AppTest : public testing::Test {
 protected:
  AppTest() {
    app->connectToDesktop();
    // The centre is shared by the process: each test starts with a fresh one on its own port.
    QKHotKeyCenter::sharedHotKeyCenter()->init();
    desktopConnections = 0;
  }
  ~AppTest() override {
    if (const auto center = QKHotKeyCenter::sharedHotKeyCenter()) center->unregisterAllHotKeys();
    QKHotKeyCenter::setHotKeyEvents(nullptr);
  }

  /// The lines on standard output, with the times of log lines removed: "Log> message".
  [[nodiscard]] std::vector<std::string> lines() const {
    auto all = output.lines();
    for (auto& line : all) {
      const auto log = line.find("Log ");
      if (log != std::string::npos && line.compare(log + 12, 2, "> ") == 0) line.erase(log + 3, 9);
    }
    return all;
  }

  void setCommandLine(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "seldial");
    application->commandLine = std::move(arguments);
  }

  tests::Calls journal;
  const std::shared_ptr<tests::ManualMainQueue> mainQueue =
      std::make_shared<tests::ManualMainQueue>();
  const std::shared_ptr<tests::RecordingApplication> application =
      std::make_shared<tests::RecordingApplication>(&journal);
  const std::shared_ptr<tests::FakeClipboard> clipboard =
      std::make_shared<tests::FakeClipboard>(&journal);
  const std::shared_ptr<tests::FakeHotKeyEvents> hotKeys =
      std::make_shared<tests::FakeHotKeyEvents>();
  int desktopConnections = 0;
  tests::TemporaryDirectory directory;
  tests::CapturedOutput output;
  const platform::Ports ports{application, mainQueue, [this] {
                                ++desktopConnections;
                                return platform::DesktopPorts{hotKeys, clipboard};
                              }};
  std::shared_ptr<AppDelegate> app = AppDelegate::init(ports);
};

/// The value of a text member of a compact JSON line, still escaped; empty if there is none.
inline std::string jsonText(const std::string& line, const std::string& key) {
  const std::string opening = "\"" + key + "\":\"";
  const auto begin = line.find(opening);
  if (begin == std::string::npos) return {};
  const auto from = begin + opening.size();
  return line.substr(from, line.find('"', from) - from);
}

}  // namespace seldial
