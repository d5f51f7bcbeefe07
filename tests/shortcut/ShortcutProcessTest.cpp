// The real window as a process, together with a real seldial.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

#include "tests/support/SeldialProcess.h"
#include "tests/support/Sockets.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/desktop/Keyboard.h"
#include "tests/support/desktop/Keys.h"
#include "tests/support/desktop/Windows.h"
#include "tests/support/desktop/XServer.h"
#include "tests/ucclient/InvalidArguments.h"

namespace seldial {
namespace {

using namespace tests;  // NOLINT: keys and keyboards by their short names
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kCommand =
    R"({"command":"SetHotKey","modifierAlt":true,"modifierCommand":false,"modifierCtrl":true,)"
    R"("modifierShift":false,"readdelay":500,"virtualkey":2})";

class ShortcutProcess : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    server = std::make_unique<XServer>();
    manager = std::make_unique<WindowManager>(server->display());
    keyboard = std::make_unique<Keyboard>(server->display());
  }
  static void TearDownTestSuite() {
    keyboard.reset();
    manager.reset();
    server.reset();
  }

  /// Runs a shell command line, in which $S is the program.
  static std::unique_ptr<ChildProcess> run(const std::string& line,
                                           std::vector<std::string> environment = {}) {
    environment.emplace_back("S=" SELDIAL_SHORTCUT_PROGRAM);
    return std::make_unique<ChildProcess>(std::vector<std::string>{"sh", "-c", line + " 2>&1"},
                                          std::move(environment));
  }

  /// Opens the window with Ctrl+Alt+D and waits until it can be typed into.
  static std::unique_ptr<ChildProcess> openWindow(const std::string& arguments = {}) {
    std::vector<std::string> command{SELDIAL_SHORTCUT_PROGRAM, "--hotkey=ctrl+alt+d"};
    if (!arguments.empty()) command.push_back(arguments);
    auto process = std::make_unique<ChildProcess>(std::move(command),
                                                  std::vector<std::string>{server->environment()});
    (void)Windows(server->display()).waitForFocus("seldial-shortcut");
    return process;
  }

  static std::unique_ptr<XServer> server;
  static std::unique_ptr<WindowManager> manager;
  static std::unique_ptr<Keyboard> keyboard;
};

std::unique_ptr<XServer> ShortcutProcess::server;
std::unique_ptr<WindowManager> ShortcutProcess::manager;
std::unique_ptr<Keyboard> ShortcutProcess::keyboard;

TEST_F(ShortcutProcess, AcceptingPrintsTheCommandAsOneLine) {
  const auto window = openWindow();
  keyboard->tap(kKeyReturn);
  EXPECT_EQ(window->readLine(), kCommand);
  EXPECT_THROW(window->readLine(), std::runtime_error) << "there is no second line";
  EXPECT_EQ(window->wait(), 0);
}

TEST_F(ShortcutProcess, CancellingPrintsNothingAndEndsWithStatus1) {
  const auto window = openWindow("--print");
  keyboard->tap(kKeyEscape);
  EXPECT_THROW(window->readLine(), std::runtime_error);
  EXPECT_EQ(window->wait(), 1);
}

TEST_F(ShortcutProcess, ClosingTheWindowIsCancelling) {
  const auto window = openWindow();
  keyboard->press({kKeyLeftAlt, kKeyF4});
  keyboard->release({kKeyF4, kKeyLeftAlt});
  EXPECT_THROW(window->readLine(), std::runtime_error);
  EXPECT_EQ(window->wait(), 1);
}

TEST_F(ShortcutProcess, ARunningSeldialReceivesTheCommandAndFindsTheShortcutFree) {
  const tests::TemporaryDirectory directory;
  const tests::UcListener client(directory.path("out"));
  tests::SeldialProcess seldial(
      {"-log", "dialerpipename=" + directory.path("in"), "clientpipename=" + directory.path("out")},
      server->display());
  ASSERT_TRUE(seldial.waitForLine("listen ok"));
  for (int i = 0; i < 2; ++i) {  // the second time the window itself holds the shortcut
    const auto window = openWindow("--socket=" + directory.path("in"));
    keyboard->tap(kKeyReturn);
    EXPECT_EQ(window->wait(), 0);
    EXPECT_THAT(client.nextMessage().value_or("nothing"), HasSubstr(R"("result":true)")) << i;
  }
}

TEST_F(ShortcutProcess, IfNobodyListensTheWindowStaysOpen) {
  const tests::TemporaryDirectory directory;
  const auto window = openWindow("--socket=" + directory.path("in"));
  keyboard->tap(kKeyReturn);
  // Listens only from now on: if the window had ended, nobody would connect.
  const tests::UcListener seldial(directory.path("in"));
  keyboard->tap(kKeyReturn);
  EXPECT_EQ(seldial.nextMessage(), kCommand);
  EXPECT_EQ(window->wait(), 0);
}

/// The settings of a client, on a private desktop.
class SettingsProcess : public testing::Test {
 protected:
  std::string configure(const std::string& content) {
    std::ofstream(file_) << content;
    return file_;
  }

  [[nodiscard]] std::string configuration() const {
    std::ostringstream text;
    text << std::ifstream(file_).rdbuf();
    return text.str();
  }

  std::unique_ptr<ChildProcess> start(std::vector<std::string> command) {
    return std::make_unique<ChildProcess>(
        std::move(command),
        std::vector<std::string>{server_.environment(), "XDG_RUNTIME_DIR=" + directory_.path(""),
                                 "XDG_CONFIG_HOME=" + directory_.path("config")},
        std::string(), Streams{Streams::Errors::kWithOutput, {}});
  }

  /// Opens the window with Ctrl+Alt+D and waits until it can be typed into.
  std::unique_ptr<ChildProcess> openSettings() {
    auto window = start({SELDIAL_UC, "settings", "--config", file_, "--hotkey=ctrl+alt+d"});
    (void)Windows(server_.display()).waitForFocus("seldial-shortcut");
    return window;
  }

  const tests::TemporaryDirectory directory_;
  const std::string file_ = directory_.path("file");
  XServer server_;
  const WindowManager manager_{server_.display()};
  Keyboard keyboard_{server_.display()};
};

TEST_F(SettingsProcess, TheRunningClientAppliesThemAtOnce) {
  const auto client = start(
      {SELDIAL_UC, "--config", configure("open = \"tel\"\nhotkey = \"ctrl+alt+k\"\ndelay = 50\n")});
  ASSERT_TRUE(client->waitForLine("Hot key ctrl+alt+k is set"));
  const auto window = openSettings();
  keyboard_.tap(kKeyReturn);
  EXPECT_EQ(window->wait(), 0);
  EXPECT_TRUE(client->waitForLine("Hot key ctrl+alt+d is set"));
  EXPECT_EQ(configuration(), "open = \"tel\"\nhotkey = \"ctrl+alt+d\"\ndelay = 50\n");
}

TEST_F(SettingsProcess, ARefusedHotKeyIsReportedAndNotKept) {
  const std::string before = "open = \"tel\"\nhotkey = \"ctrl+alt+k\"\n";
  const auto client = start({SELDIAL_UC, "--config", configure(before)});
  ASSERT_TRUE(client->waitForLine("Hot key ctrl+alt+k is set"));
  const auto holder = start({SELDIAL_UC, "--config", "/dev/null", "--hotkey", "ctrl+alt+d"});
  ASSERT_TRUE(holder->waitForLine("Hot key ctrl+alt+d is set"));
  const auto window = openSettings();
  keyboard_.tap(kKeyReturn);
  ASSERT_TRUE(client->waitForLine("Hot key ctrl+alt+k is set"));  // again
  keyboard_.tap(kKeyEscape);
  EXPECT_EQ(window->wait(), 1);
  EXPECT_EQ(configuration(), before);
}

TEST_F(SettingsProcess, AClientThatDialsIsStarted) {
  configure("dial = \"true\"\n");
  const auto window = openSettings();
  keyboard_.tap(kKeyReturn);
  EXPECT_TRUE(window->waitForLine("Hot key ctrl+alt+d is set"));  // it ends with its desktop
  EXPECT_EQ(window->wait(), 0);
}

TEST_F(SettingsProcess, TheWindowWaitsForTheAnswerOfAnotherSeldial) {
  tests::SeldialProcess seldial({"-log", "dialerpipename=" + directory_.path("in"),
                                 "clientpipename=" + directory_.path("out")},
                                server_.display());
  ASSERT_TRUE(seldial.waitForLine("listen ok"));
  const auto holder = start({SELDIAL_UC, "--hotkey", "ctrl+alt+d"});
  ASSERT_TRUE(holder->waitForLine("Hot key ctrl+alt+d is set"));
  const auto window =
      start({SELDIAL_SHORTCUT_PROGRAM, "--hotkey=ctrl+alt+d", "--socket=" + directory_.path("in"),
             "--client=" + directory_.path("out")});
  (void)Windows(server_.display()).waitForFocus("seldial-shortcut");
  keyboard_.tap(kKeyReturn);
  EXPECT_EQ(window->readLine(), "seldial-shortcut: Seldial refused the shortcut: hotkey not set");
  keyboard_.tap(kKeyEscape);
  EXPECT_EQ(window->wait(), 1);
}

TEST_F(SettingsProcess, TheWindowEndsWhenTheAnswerIsGood) {
  tests::SeldialProcess seldial({"-log", "dialerpipename=" + directory_.path("in"),
                                 "clientpipename=" + directory_.path("out")},
                                server_.display());
  ASSERT_TRUE(seldial.waitForLine("listen ok"));
  const auto window =
      start({SELDIAL_SHORTCUT_PROGRAM, "--hotkey=ctrl+alt+d", "--socket=" + directory_.path("in"),
             "--client=" + directory_.path("out")});
  (void)Windows(server_.display()).waitForFocus("seldial-shortcut");
  keyboard_.tap(kKeyReturn);
  EXPECT_EQ(window->wait(), 0);
  EXPECT_FALSE(std::filesystem::exists(directory_.path("out"))) << "it still listens";
}

TEST_F(SettingsProcess, AnInvalidFileIsReported) {
  const auto window = start({SELDIAL_SHORTCUT_PROGRAM, "--settings", "--config", configure("\nx")});
  EXPECT_THAT(window->readLine(), StartsWith("seldial-shortcut: " + file_ + ":2: "));
  EXPECT_EQ(window->wait(), 2);
}

TEST_F(ShortcutProcess, LosingTheServerEndsIt) {
  XServer own;
  const WindowManager ownManager(own.display());
  ChildProcess window({SELDIAL_SHORTCUT_PROGRAM}, {own.environment()});
  (void)Windows(own.display()).waitForFocus("seldial-shortcut");
  own.kill();
  EXPECT_EQ(window.wait(), 1);
}

TEST_F(ShortcutProcess, WithoutADesktopItSaysSoAndEndsWithStatus1) {
  const auto process = run("$S", {"DISPLAY="});
  EXPECT_THAT(process->readLine(), HasSubstr("there is no X11 desktop"));
  EXPECT_EQ(process->wait(), 1);
}

TEST_F(ShortcutProcess, WithoutXwaylandItSaysHowElseToSetAShortcut) {
  const auto process = run("$S", {"DISPLAY=", "WAYLAND_DISPLAY=nowhere"});
  EXPECT_THAT(process->readLine(), HasSubstr("needs Xwayland, and seldial-uc takes a shortcut by"));
  EXPECT_EQ(process->wait(), 1);
}

TEST_F(ShortcutProcess, HelpNeedsNoDesktop) {
  const auto process = run("$S --help", {"DISPLAY="});
  EXPECT_THAT(process->readLine(), StartsWith("usage: seldial-shortcut "));
  EXPECT_EQ(process->wait(), 0);
}

TEST_F(ShortcutProcess, TheVersionIsPrinted) {
  const auto process = run("$S --version", {"DISPLAY="});
  EXPECT_EQ(process->readLine(), "seldial-shortcut " SELDIAL_VERSION);
  EXPECT_EQ(process->wait(), 0);
}

TEST_F(ShortcutProcess, InvalidArgumentsAreReportedAndEndWithAStatus) {
  InvalidArguments(SELDIAL_SHORTCUT_PROGRAM).tryAllOptions(10);
}

TEST_F(ShortcutProcess, TheClientsCheckTriesACopyInAWindow) {
  ChildProcess check({SELDIAL_UC, "check", "--delay=1000", "--dial=true", "--hotkey=ctrl+alt+k"},
                     {server->environment(), "XDG_CONFIG_HOME=/nowhere", "WAYLAND_DISPLAY"});
  std::string line;
  while (line.find(" copy  ") == std::string::npos) line = check.readLine();
  EXPECT_EQ(line, "ok    copy           a selected text was copied");
  EXPECT_EQ(check.wait(), 0);
}

TEST_F(ShortcutProcess, AnInvalidCommandLineIsReportedAndEndsWithStatus2) {
  const auto process = run("$S --hotkey=ctrl");
  EXPECT_EQ(process->readLine(),
            "seldial-shortcut: --hotkey ctrl: there are only modifiers; a hot key needs a key");
  EXPECT_EQ(process->readLine(), "Try seldial-shortcut --help.");
  EXPECT_EQ(process->wait(), 2);
}

}  // namespace
}  // namespace seldial
