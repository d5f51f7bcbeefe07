// Connecting to a desktop, failing to, and losing it.
#include <algorithm>
#include <cstdlib>

#include "platform/x11/Desktop.h"
#include "tests/platform/x11/X11Test.h"

namespace seldial::platform::x11 {
namespace {

/// The output of an attempt to connect.
struct Attempt {
  bool connected = false;
  std::string output;
  std::string errors;
};

Attempt attempt() {
  Attempt result;
  ::testing::internal::CaptureStdout();
  ::testing::internal::CaptureStderr();
  result.connected = connect(std::make_shared<linux_port::MainLoop>(), [] {}) != nullptr;
  result.output = ::testing::internal::GetCapturedStdout();
  result.errors = ::testing::internal::GetCapturedStderr();
  return result;
}

void expectOneLineAbout(const std::string& what, const Attempt& attempt) {
  EXPECT_FALSE(attempt.connected);
  EXPECT_EQ(attempt.output, "");
  EXPECT_NE(attempt.errors.find(what), std::string::npos) << attempt.errors;
  EXPECT_EQ(std::count(attempt.errors.begin(), attempt.errors.end(), '\n'), 1) << attempt.errors;
}

TEST(Desktop, WithoutADisplayThereIsNoDesktopAndNoMessage) {
  unsetenv("DISPLAY");
  EXPECT_FALSE(attempt().connected);
  setenv("DISPLAY", "", 1);
  const auto empty = attempt();
  EXPECT_FALSE(empty.connected);
  EXPECT_EQ(empty.output + empty.errors, "");
}

TEST(Desktop, AnUnreachableServerIsReportedInOneLine) {
  setenv("DISPLAY", ":60123", 1);
  expectOneLineAbout(":60123", attempt());
  setenv("DISPLAY", "no display", 1);
  expectOneLineAbout("no display", attempt());
}

TEST(Desktop, AServerThatDoesNotAnswerIsReportedInOneLine) {
  XServer server;
  setenv("DISPLAY", server.display().c_str(), 1);
  server.freeze();
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(Connection::open(std::chrono::milliseconds(20)), nullptr);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(),
            "seldial: the X server at " + server.display() +
                " does not answer; there will be no hot key\n");
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(Connection::open(std::chrono::milliseconds(20), "nothing else follows"), nullptr);
  EXPECT_EQ(
      ::testing::internal::GetCapturedStderr(),
      "seldial: the X server at " + server.display() + " does not answer; nothing else follows\n");
}

TEST(Desktop, WithoutADisplayNoProgramIsSaidToOwnTheClipboard) {
  unsetenv("DISPLAY");
  ::testing::internal::CaptureStderr();
  EXPECT_FALSE(focusedProgramOwnsClipboard());
  EXPECT_EQ(::testing::internal::GetCapturedStderr(),
            "seldial: DISPLAY is not set, so X11 programs cannot be told apart\n");
}

TEST(EventPump, EventsThatNeverEndDoNotMoveADeadline) {
  const XServer server;
  setenv("DISPLAY", server.display().c_str(), 1);
  const auto connection = Connection::open();
  ASSERT_NE(connection, nullptr);
  linux_port::MainLoop loop;
  EventPump pump(*connection, loop, [] {});
  const auto causeAnEvent = [&] {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.window = connection->window();
    xcb_send_event(connection->xcb(), 0, event.window, 0, reinterpret_cast<const char*>(&event));
    connection->synchronise();
    return false;
  };
  EXPECT_FALSE(
      pump.serveUntil(EventPump::Clock::now() + std::chrono::milliseconds(20), causeAnEvent));
}

TEST(Desktop, AServerWithoutXTestIsReportedInOneLine) {
  const XServer server({"-extension", "XTEST"});
  setenv("DISPLAY", server.display().c_str(), 1);
  expectOneLineAbout("XTEST", attempt());
}

TEST(Desktop, ACompleteServerIsUsedSilently) {
  const XServer server;
  setenv("DISPLAY", server.display().c_str(), 1);
  const auto result = attempt();
  EXPECT_TRUE(result.connected);
  EXPECT_EQ(result.output + result.errors, "");
}

TEST(Desktop, XwaylandIsUsedAndOneLineSaysInWhichWindows) {
  const XServer server;
  // An Xwayland without its own extension is recognised by its devices.
  Keyboard(server.display()).addMaster("xwayland-test");
  setenv("DISPLAY", server.display().c_str(), 1);
  const auto result = attempt();
  EXPECT_TRUE(result.connected);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.errors,
            "seldial: the X server is Xwayland; the hot key works in windows of X11 applications "
            "only, not in those of Wayland applications\n");
}

class LostDesktop : public X11Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kControlAlt));
    ::testing::internal::CaptureStderr();
  }

  /// The loss is reported once, in one line, and every port then refuses.
  void expectLoss() {
    port.waitForLoss();
    EXPECT_FALSE(port.registerHotKey(kVK_ANSI_F, kControlAlt));
    port.clear();
    EXPECT_EQ(port.text(), std::nullopt);
    port.call([&] { (void)port.clipboard().copySelection(); });
    EXPECT_EQ(port.connectionsLost(), 1);
    const auto errors = ::testing::internal::GetCapturedStderr();
    EXPECT_NE(errors.find("seldial: the connection to the X server is lost\n"), std::string::npos);
  }
};

TEST_F(LostDesktop, WhileIdleIsReportedOnce) {
  killServer();
  expectLoss();
}

TEST_F(LostDesktop, WhileTheMainThreadIsBlockedIsReportedAfterwards) {
  port.whenBlocking([&] { killServer(); });
  port.dialOnRelease(std::chrono::milliseconds(200));
  useHotKey();
  port.waitForDials(1);
  EXPECT_EQ(port.dialled()[0], std::nullopt);
  expectLoss();
}

TEST_F(LostDesktop, WhileATextIsReadEndsTheReading) {
  XClient client(server.display());
  auto answers = answersWith(std::string(1000, 'x'), 100);
  answers.chunksUntilSilence = 3;
  answers.whenSilent = [&] { killServer(); };
  client.own("CLIPBOARD", answers);
  EXPECT_EQ(port.text(), std::nullopt);
  expectLoss();
}

TEST_F(LostDesktop, BetweenClearingAndTheKeystroke) {
  port.call([&] {
    port.clipboard().clear();
    killServer();
    (void)port.clipboard().copySelection();
    EXPECT_EQ(port.clipboard().text(), std::nullopt);
  });
  expectLoss();
}

}  // namespace
}  // namespace seldial::platform::x11
