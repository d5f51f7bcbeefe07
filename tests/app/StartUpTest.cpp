#include <sys/stat.h>

#include <algorithm>

#include "tests/app/AppTest.h"
#include "unixsocket/GDUnixSocketServer.h"

namespace seldial {
namespace {

using StartUp = AppTest;
using testing::ElementsAre;
using testing::StartsWith;

constexpr std::size_t kBannerLines = 8;

TEST_F(StartUp, FieldsHaveTheirInitialValues) {
  EXPECT_TRUE(app->window.expired());
  EXPECT_EQ(app->CurrentHotKey, nullptr);
  EXPECT_EQ(app->ReadPasteboardDelay, 500);
  EXPECT_EQ(app->UnixSocketServer, nullptr);
  EXPECT_EQ(app->UnixSocketConnetedClientId, "");
  EXPECT_EQ(app->UnixSocketInputString, "");
  EXPECT_EQ(app->UnixSocketEventsCS, nullptr);
  EXPECT_FALSE(app->FlagChangeLog || app->FlagHelp || app->FlagLog || app->FlagJsonLog ||
               app->FlagShowApi);
  EXPECT_FALSE(app->ValueDialerPipeName);
  EXPECT_FALSE(app->ValueClientPipeName);
}

TEST_F(StartUp, NoArgumentsPrintsTheBannerOpensNoChannelAndKeepsRunning) {
  setCommandLine({});
  app->applicationDidFinishLaunching();
  EXPECT_EQ(output.lines().size(), kBannerLines);
  EXPECT_EQ(app->UnixSocketServer, nullptr);
  EXPECT_TRUE(application->terminateSenders.empty());
}

TEST_F(StartUp, OnlyAProgramThatStaysConnectsToTheDesktop) {
  for (const char* form : {"-help", "-changelog", "-showapi"}) {
    app->FlagHelp = app->FlagChangeLog = app->FlagShowApi = false;
    setCommandLine({form, "-log"});
    app->applicationDidFinishLaunching();
    EXPECT_EQ(desktopConnections, 0) << form;
  }
  app->FlagHelp = app->FlagChangeLog = app->FlagShowApi = false;
  setCommandLine({"-log"});
  app->applicationDidFinishLaunching();
  EXPECT_EQ(desktopConnections, 1);
}

TEST_F(StartUp, AnEmptyArgumentListChangesNoField) {
  application->commandLine = {};
  app->parseCommandLine();
  EXPECT_FALSE(app->FlagChangeLog || app->FlagHelp || app->FlagLog || app->FlagJsonLog ||
               app->FlagShowApi);
  EXPECT_FALSE(app->ValueDialerPipeName || app->ValueClientPipeName);
}

TEST_F(StartUp, HelpInItsFormsSetsTheFlag) {
  for (const char* form : {"-HELP", "/Help", "-h", "/h", "-help", "/HELP", "-H"}) {
    app->FlagHelp = false;
    setCommandLine({form});
    app->parseCommandLine();
    EXPECT_TRUE(app->FlagHelp) << form;
  }
}

TEST_F(StartUp, DoubleHyphenHelpAndHelpWithAValueSetNothing) {
  setCommandLine({"--help", "-help=1", "help", "-hel", "-helpx", " -help", "-log ", "-"});
  app->parseCommandLine();
  EXPECT_FALSE(app->FlagHelp || app->FlagLog);
}

TEST_F(StartUp, EveryFlagHasItsSlashFormInAnyLetterCase) {
  setCommandLine({"/ChangeLog", "/LOG", "/jsonLog", "/ShowAPI"});
  app->parseCommandLine();
  EXPECT_TRUE(app->FlagChangeLog && app->FlagLog && app->FlagJsonLog && app->FlagShowApi);
  EXPECT_FALSE(app->FlagHelp);
}

TEST_F(StartUp, HelpChangeLogAndShowApiInAnyOrderPrintInFixedOrderAndTerminate) {
  std::vector<std::string> flags = {"-changelog", "-help", "-showapi"};
  do {
    const tests::CapturedOutput printed;
    const auto fresh = AppDelegate::init(ports);
    application->terminateSenders.clear();
    setCommandLine(flags);
    fresh->applicationDidFinishLaunching();
    const auto lines = printed.lines();
    EXPECT_EQ(lines.at(kBannerLines), "usage:");
    EXPECT_EQ(lines.at(kBannerLines + 8), "2018.11.01");
    EXPECT_EQ(lines.at(kBannerLines + 8 + 33), "Log []->");
    EXPECT_EQ(lines.size(), kBannerLines + 8 + 33 + 14 + 12 + 22 + 14 + 14 + 5);
    EXPECT_THAT(application->terminateSenders, ElementsAre(fresh.get()));
  } while (std::next_permutation(flags.begin(), flags.end()));
}

TEST_F(StartUp, ARunThatOnlyPrintsOpensNoSocket) {
  setCommandLine({"-help", "dialerpipename=" + directory.path("in")});
  app->applicationDidFinishLaunching();
  EXPECT_EQ(app->UnixSocketServer, nullptr);
  struct stat status {};
  EXPECT_NE(stat(directory.path("in").c_str(), &status), 0);
}

TEST_F(StartUp, LogAndJsonLogTogetherTurnOnBothForms) {
  setCommandLine({"-log", "-jsonlog"});
  app->parseCommandLine();
  app->log("both");
  EXPECT_EQ(lines().size(), 2U);
}

TEST_F(StartUp, DialerPipeNameIgnoresTheCaseOfTheKeyAndKeepsThatOfTheValue) {
  setCommandLine({"DialerPipeName=/tmp/In"});
  app->parseCommandLine();
  EXPECT_EQ(app->ValueDialerPipeName, "/tmp/In");
  EXPECT_FALSE(app->ValueClientPipeName);
}

TEST_F(StartUp, DialerPipeNameAloneSetsTheEmptyText) {
  setCommandLine({"dialerpipename="});
  app->parseCommandLine();
  EXPECT_EQ(app->ValueDialerPipeName, "");
}

TEST_F(StartUp, TheLaterClientPipeNameWins) {
  setCommandLine({"clientpipename=/tmp/a", "CLIENTPIPENAME= /tmp/b =c "});
  app->parseCommandLine();
  EXPECT_EQ(app->ValueClientPipeName, " /tmp/b =c ");
}

TEST_F(StartUp, TheProgramPathIsExaminedLikeEveryOtherArgument) {
  application->commandLine = {"-log"};
  app->parseCommandLine();
  EXPECT_TRUE(app->FlagLog);
}

TEST_F(StartUp, UnknownArgumentsAreIgnoredSilently) {
  setCommandLine({"clientpipename", "xclientpipename=/a", "-verbose", "", "\xff\xfe"});
  app->parseCommandLine();
  EXPECT_FALSE(app->ValueClientPipeName);
  EXPECT_EQ(output.text(), "");
}

TEST_F(StartUp, TerminationClosesTheIncomingSocketAndLeavesTheHotKeyRegistered) {
  setCommandLine({"dialerpipename=" + directory.path("in")});
  app->applicationWillFinishLaunching();
  app->applicationDidFinishLaunching();
  ASSERT_NE(app->UnixSocketServer, nullptr);
  app->processInputString(R"({"command":"SetHotKey","virtualkey":2})");
  app->applicationWillTerminate();
  EXPECT_EQ(app->UnixSocketServer, nullptr);
  struct stat status {};
  EXPECT_NE(stat(directory.path("in").c_str(), &status), 0);
  EXPECT_EQ(hotKeys->registrations.size(), 1U);
  EXPECT_NE(app->CurrentHotKey, nullptr);
}

TEST_F(StartUp, TerminationWithoutAServerDoesNothing) {
  app->applicationWillTerminate();
  EXPECT_EQ(output.text(), "");
}

}  // namespace
}  // namespace seldial
