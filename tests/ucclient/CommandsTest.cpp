// The commands of the client, some with a running client.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>

#include <cctype>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <memory>
#include <regex>
#include <set>

#include "tests/support/Sockets.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/Waiting.h"
#include "tests/support/desktop/Keyboard.h"
#include "tests/support/desktop/Keys.h"
#include "tests/support/desktop/XClient.h"
#include "tests/support/desktop/XServer.h"
#include "tests/ucclient/InvalidArguments.h"
#include "tests/ucclient/RunningClient.h"

namespace seldial {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

/// A client that dials, with a configuration file.
class Commands : public testing::Test {
 protected:
  Commands() { EXPECT_TRUE(client_.process().waitForLine("is set: ")); }

  std::string configure(const std::string& content) {
    std::ofstream(file_) << content;
    return file_;
  }

  /// A connection on which the next use of the hot key will be reported.
  [[nodiscard]] tests::Peer askToTry() const {
    tests::Peer asker = tests::Peer::connectedTo(client_.socket());
    EXPECT_TRUE(asker.send("try\n"));
    EXPECT_TRUE(tests::eventually(
        [this] { return client_.outputOf({"status"}).find("Next use:") != std::string::npos; }));
    return asker;
  }

  /// Presses the key with Control and Alt while this is selected.
  void pressHotKey(const std::string& selection, std::uint8_t key = tests::kKeyD) {
    tests::XClientSettings settings;
    settings.copy = tests::answersWith(selection);
    editor_ = std::make_unique<tests::XClient>(server_.display(), settings);
    tests::Keyboard keyboard(server_.display());
    keyboard.press({tests::kKeyLeftControl, tests::kKeyLeftAlt, key});
    keyboard.release({key, tests::kKeyLeftAlt, tests::kKeyLeftControl});
  }

  /// Like pressHotKey(), and waits for the result.
  void use(const std::string& selection, std::uint8_t key = tests::kKeyD) {
    pressHotKey(selection, key);
    ASSERT_TRUE(client_.process().waitForLine("ialled"));
  }

  const tests::TemporaryDirectory directory_;
  const std::string file_ = directory_.path("file");
  tests::XServer server_;
  std::unique_ptr<tests::XClient> editor_;
  RunningClient client_{{"--config", configure("dial = \"true\"\ndelay = 500\nregion = \"NL\"\n")},
                        server_.environment()};
};

TEST_F(Commands, StatusReportsTheStateAndTheLastResults) {
  EXPECT_THAT(client_.outputOf({"status"}), MatchesRegex("Hot key:  ctrl.alt.d\n"
                                                         "Dials:    runs true\n"
                                                         "Session:  x11, DISPLAY :[0-9]+\n"
                                                         "Running:  since 20[0-9-]+ [0-9:]+\n"));
  use("020 123 4567");
  use("hello");
  EXPECT_THAT(client_.outputOf({"status"}),
              ContainsRegex("\n20[0-9-]+ [0-9:]+  called .31201234567\n20[0-9-]+ [0-9:]+  nothing "
                            "was dialled: there is no telephone number in the selection\n$"));
}

TEST_F(Commands, ReloadAppliesTheConfiguration) {
  configure("dial = \"true\"\nhotkey = \"ctrl+alt+k\"\ndelay = 500\nregion = \"DE\"\n");
  EXPECT_EQ(client_.outputOf({"reload"}), "");
  use("030 23125123", tests::kKeyK);
  EXPECT_THAT(client_.outputOf({"status"}), HasSubstr("called +493023125123"));
}

TEST_F(Commands, ReloadReportsWhatItDoesNotApplyAtOnce) {
  configure("dial = \"true\"\nseldial = \"/nowhere/seldial\"\nconversation = true\n");
  EXPECT_EQ(client_.outputOf({"reload"}),
            "note: the new seldial is used when seldial-uc is started again\n");
  EXPECT_TRUE(client_.process().waitForLine("dialer → {"));
}

TEST_F(Commands, ReloadingAnInvalidFileChangesNothing) {
  configure("dial = \"true\"\ndelay = true\n");
  EXPECT_EQ(client_.outputOf({"reload"}),
            "seldial-uc: " + file_ +
                ":2: delay takes milliseconds from 0 to 65535, not true\nstatus 1\n");
  use("020 123 4567");
}

TEST_F(Commands, ReloadKeepsTheHotKeyWhenTheNewOneIsRefused) {
  RunningClient other({"--hotkey", "ctrl+alt+k"}, server_.environment());
  ASSERT_TRUE(other.process().waitForLine("is set: "));
  configure("dial = \"true\"\nhotkey = \"ctrl+alt+k\"\nregion = \"NL\"\n");
  EXPECT_THAT(client_.outputOf({"reload"}),
              HasSubstr("the hot key ctrl+alt+k was refused: hotkey not set"));
  ASSERT_TRUE(client_.process().waitForLine("Hot key ctrl+alt+d is set: "));
  use("020 123 4567");
}

TEST_F(Commands, AUseThatIsTriedOutIsNotDialled) {
  for (const char* const selection : {"020 123 4567", ""}) {
    const tests::Peer asker = askToTry();
    pressHotKey(selection);
    EXPECT_EQ(asker.receiveToTheEnd(), "used\n");
  }
  EXPECT_THAT(client_.outputOf({"status"}), Not(HasSubstr("dialled")));
  use("020 765 4321");
  EXPECT_THAT(client_.outputOf({"status"}), HasSubstr("called +31207654321"));
}

TEST_F(Commands, ADisconnectedTrialPreventsNoCall) {
  { const tests::Peer asker = askToTry(); }
  (void)client_.outputOf({"status"});  // by now it has noticed the end of that connection
  use("020 123 4567");
  EXPECT_THAT(client_.outputOf({"status"}), HasSubstr("called +31201234567"));
}

TEST_F(Commands, ASecondClientLeavesTheFirstOneItsSocket) {
  const auto running = [this] { return client_.outputOf({"status"}); };
  const std::string before = running();
  EXPECT_THAT(client_.outputOf({"--dial", "true"}), HasSubstr("was refused"));
  EXPECT_EQ(running(), before);
}

TEST_F(Commands, TheSocketIsRemovedWithTheClient) {
  client_.process().signal(SIGTERM);
  EXPECT_EQ(client_.process().wait(), 0);
  EXPECT_TRUE(client_.directoryIsEmpty());
  for (const char* const command : {"status", "reload"}) {
    EXPECT_EQ(client_.outputOf({command}), "seldial-uc: seldial-uc is not running\nstatus 1\n");
  }
}

TEST_F(Commands, CheckKnowsThatTheRunningClientHoldsTheHotKey) {
  const std::string output = client_.outputOf({"check", "--config", file_});
  EXPECT_THAT(output, HasSubstr("\nok    hot key        ctrl+alt+d is held by the running "
                                "seldial-uc\n"));
  EXPECT_THAT(output, HasSubstr("\nok    dialling       by true\n"));
  EXPECT_THAT(client_.outputOf({"check", "--config", file_, "--hotkey", "ctrl+alt+k"}),
              HasSubstr("ok    hot key        ctrl+alt+k is free\n"));
}

TEST_F(Commands, CheckAsksGnomeForNoSecondHotKey) {
  EXPECT_THAT(client_.outputOf({"check", "--config", file_},
                               {"WAYLAND_DISPLAY=nowhere", "XDG_CURRENT_DESKTOP=Debian:GNOME"}),
              HasSubstr("\nok    copy           not tried: GNOME would ask about a hot key"));
}

TEST_F(Commands, CheckNamesTheCompositorAndItsMechanism) {
  const tests::TemporaryDirectory directory;
  const std::string path = directory.path("wayland");
  const auto outputWith = [&](const std::string& sway) {
    return client_.outputOf({"check", "--config", file_, "--seldial", "/nowhere/seldial"},
                            {"WAYLAND_DISPLAY=" + path, sway});
  };
  EXPECT_THAT(outputWith("SWAYSOCK"), HasSubstr("\nwrong compositor     none answers"));
  const auto compositor = tests::Peer::listeningAt(path);
  EXPECT_THAT(outputWith("SWAYSOCK"),
              ContainsRegex("\nok    compositor     seldial_.*: no hot key"));
  EXPECT_THAT(outputWith("SWAYSOCK=/nowhere"), HasSubstr(": hot key by bindings over SWAYSOCK"));
  ASSERT_EQ(prctl(PR_SET_NAME, "kwin_wayland_wr"), 0);
  EXPECT_THAT(outputWith("SWAYSOCK"),
              HasSubstr("\nok    compositor     kwin_wayland_wr: hot key by Plasma's global"));
  ASSERT_EQ(prctl(PR_SET_NAME, "seldial_uc_test"), 0);
}

TEST_F(Commands, CheckReportsWhatIsWrong) {
  RunningClient other({"--hotkey", "ctrl+alt+k"}, server_.environment());
  ASSERT_TRUE(other.process().waitForLine("is set: "));
  const std::string refused = client_.outputOf({"check", "--hotkey", "ctrl+alt+k"});
  EXPECT_THAT(refused, HasSubstr("wrong hot key        ctrl+alt+k is refused: hotkey not set. "));
  EXPECT_THAT(refused, ContainsRegex("use hot keys: .*seldial .set by another client."));
  EXPECT_THAT(refused, HasSubstr("wrong dialling       neither dial nor open is set"));
  EXPECT_THAT(refused, HasSubstr("\nstatus 1\n"));
  EXPECT_THAT(client_.outputOf({"check", "--config", file_, "--dial", "/nowhere/phone"}),
              HasSubstr("wrong dialling       there is no program /nowhere/phone\n"));
  EXPECT_THAT(client_.outputOf({"check", "--hotkey=f5", "--seldial", "/nowhere/seldial"}),
              HasSubstr("wrong hot key        cannot start /nowhere/seldial: No such file"));
  EXPECT_THAT(client_.outputOf({"check", "--hotkey=f5", "--seldial", "/bin/false"}),
              HasSubstr("wrong hot key        seldial ended with status 1\n"));
}

/// The anchors of the headings in the page.
std::set<std::string> sectionsOfTroubleshooting() {
  std::ifstream page(SELDIAL_DOCS "/troubleshooting.md");
  std::set<std::string> sections;
  for (std::string line; std::getline(page, line);) {
    if (!line.starts_with("## ")) continue;
    std::string section;
    for (const char letter : line.substr(3)) {
      const auto byte = static_cast<unsigned char>(letter);
      if (letter == ' ' || letter == '-') section += '-';
      if (std::isalnum(byte) != 0) section += static_cast<char>(std::tolower(byte));
    }
    sections.insert(section);
  }
  return sections;
}

TEST_F(Commands, CheckNamesSectionsThatThePageHas) {
  const auto sections = sectionsOfTroubleshooting();
  const std::regex link("see +docs/troubleshooting.md#([^\n]+)");
  std::set<std::string> named;
  for (const auto& arguments :
       {std::vector<std::string>{"--hotkey=ctrl+help"}, {"--hotkey=f5", "--seldial=/bin/false"}}) {
    auto command = arguments;
    command.insert(command.begin(), "check");
    const std::string output = client_.outputOf(command);
    for (std::sregex_iterator it(output.begin(), output.end(), link), end; it != end; ++it) {
      named.insert((*it)[1]);
    }
  }
  EXPECT_THAT(named, testing::ElementsAre("seldial-ends", "seldial-uc-does-not-dial",
                                          "the-answer-is-hotkey-not-set"));
  EXPECT_THAT(sections, testing::IsSupersetOf(named));
  EXPECT_THAT(sections, testing::Contains("no-number-is-found")) << "named when a copy fails";
}

/// Runs a command that needs no running client.
std::string outputOf(const std::vector<std::string>& arguments) {
  return RunningClient({"--version"}).outputOf(arguments);
}

TEST(CommandLine, SendSetsTheHotKeyOfARunningSeldial) {
  const tests::TemporaryDirectory directory;
  const tests::UcListener seldial(directory.path("in"));
  const std::string output =
      outputOf({"send", directory.path("in"), "--hotkey", "f5", "--delay=7"});
  EXPECT_THAT(output, HasSubstr(R"("readdelay":7,"virtualkey":96)"));
  EXPECT_EQ(seldial.nextMessage().value_or("none") + "\n", output);
}

TEST(CommandLine, RawSendsStandardInputUnaltered) {
  const tests::TemporaryDirectory directory;
  const tests::UcListener seldial(directory.path("in"));
  tests::ChildProcess raw(
      {"sh", "-c", R"(printf '\1{"\n' | "$0" raw "$1")", SELDIAL_UC, directory.path("in")});
  EXPECT_EQ(raw.wait(), 0);
  EXPECT_EQ(seldial.nextMessage(), "\1{\"\n");
}

TEST(CommandLine, ListenPrintsEachMessage) {
  const tests::TemporaryDirectory directory;
  tests::ChildProcess listener({SELDIAL_UC, "listen", directory.path("out")});
  ASSERT_TRUE(tests::eventually(
      [&] { return tests::Peer::connectedTo(directory.path("out")).connected(); }));
  EXPECT_EQ(listener.readLine(), "");  // that connection had no message
  tests::sendCommand(directory.path("out"), {"{", "}\n"});
  EXPECT_EQ(listener.readLine(), R"({}\u000a)");
  EXPECT_EQ(outputOf({"listen", directory.path("out")}),
            "seldial-uc: another program listens at " + directory.path("out") + "\nstatus 1\n");
  listener.signal(SIGTERM);
  EXPECT_EQ(listener.wait(), 0);
}

TEST(CommandLine, SendNeedsNoConfigurationFile) {
  const tests::TemporaryDirectory directory;
  std::filesystem::create_directory(directory.path("seldial"));
  std::ofstream(directory.path("seldial/seldial-uc.toml")) << "invalid";
  const tests::UcListener seldial(directory.path("in"));
  tests::ChildProcess send({SELDIAL_UC, "send", directory.path("in")},
                           {"XDG_CONFIG_HOME=" + directory.path("")});
  EXPECT_EQ(send.wait(), 0);
  EXPECT_EQ(seldial.nextMessage(), send.readLine());
}

TEST(CommandLine, CheckReportsAMissingDesktop) {
  const std::string output = outputOf({"check"});
  EXPECT_THAT(output, HasSubstr("wrong session        x11, DISPLAY is not set\n"));
  EXPECT_THAT(output, HasSubstr("ok    client         seldial-uc is not running\n"));
  EXPECT_THAT(output, HasSubstr("wrong hot key        ctrl+alt+d is refused: hotkey not set. "));
}

TEST(CommandLine, AClientThatWouldNotDialIsNotEnabled) {
  EXPECT_EQ(outputOf({"enable"}),
            "seldial-uc: nothing would be dialled: set dial or open in "
            "/nowhere/seldial/seldial-uc.toml\nstatus 1\n");
  EXPECT_EQ(outputOf({"disable"}), "seldial-uc does not start at login\n");
}

TEST(CommandLine, InvalidArgumentsAreReportedAndDialNothing) {
  const InvalidArguments invalid(SELDIAL_UC);
  invalid.tryAllOptions(15);
  for (const char* const command : {"enable", "status", "reload", "press", "settings", "send",
                                    "raw", "listen", "check", "invalid", "", "-x", "--"}) {
    invalid.expectRefusal({command, "--invalid"});
    if (std::string(command) != "check") invalid.expectRefusal({command});
  }
  invalid.expectRefusal({"disable", "--invalid"});
  invalid.expectRefusal({"send", "invalid"});
  invalid.expectRefusal({"listen", std::string(5000, '/')});
}

TEST(CommandLine, ASessionStarterStartsWhatIsEnabled) {
  const tests::TemporaryDirectory home;
  std::filesystem::create_directories(home.path("config/seldial"));
  std::filesystem::create_directory(home.path("bin"));
  std::ofstream(home.path("config/seldial/seldial-uc.toml")) << "dial = \"true\"\n";
  std::ofstream(home.path("bin/systemctl")) << "#!/bin/sh\necho no session >&2; exit 3\n";
  std::filesystem::permissions(home.path("bin/systemctl"), std::filesystem::perms::owner_all);
  tests::XServer server;
  const std::vector<std::string> environment{server.environment(),
                                             "XDG_CONFIG_HOME=" + home.path("config"),
                                             "WAYLAND_DISPLAY",
                                             "PATH=" + home.path("bin") + ":/usr/bin:/bin",
                                             "XDG_CONFIG_DIRS=/nowhere",
                                             "XDG_RUNTIME_DIR=" + home.path("bin"),
                                             "DBUS_SESSION_BUS_ADDRESS=disabled:"};
  const tests::Streams streams{tests::Streams::Errors::kWithOutput, {}};
  tests::ChildProcess enable({SELDIAL_UC, "enable"}, environment, {}, streams);
  EXPECT_THAT(enable.readLine(), testing::StartsWith("seldial-uc starts at the next login, by "));
  EXPECT_EQ(enable.wait(), 0);
  tests::ChildProcess starter(
      {"dex", "--autostart", "--search-paths", home.path("config/autostart")}, environment, {},
      streams);
  EXPECT_TRUE(starter.waitForLine("Hot key ctrl+alt+d is set"));
  server.kill();  // the client ends with its desktop
  EXPECT_TRUE(starter.waitForLine("seldial-uc: seldial ended with status 1"));
}

TEST(CommandLine, WrongArgumentsOfCommandsAreReported) {
  EXPECT_EQ(outputOf({"send"}),
            "seldial-uc: usage: seldial-uc send SOCKET [OPTION...]\nstatus 2\n");
  EXPECT_EQ(outputOf({"status", "x"}), "seldial-uc: usage: seldial-uc status\nstatus 2\n");
  EXPECT_EQ(outputOf({"raw", "/nowhere/in"}),
            "seldial-uc: nobody answers at /nowhere/in: No such file or directory\nstatus 1\n");
  EXPECT_EQ(outputOf({"send", "/nowhere/in", "--delay"}),
            "seldial-uc: --delay needs a value\nstatus 2\n");
}

}  // namespace
}  // namespace seldial
