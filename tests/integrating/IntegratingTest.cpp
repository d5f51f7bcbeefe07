// The statements of docs/integrating.md that need no desktop.
#include <sys/socket.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <fstream>

#include "tests/support/SeldialProcess.h"
#include "tests/support/UnreadPipe.h"

namespace seldial::tests {
namespace {

using Integrating = ProgramTest;

constexpr const char* kNoTag = "command tag not found";
constexpr const char* kEmpty = "empty string on standard input stream";

std::string named(const std::string& command) {
  return R"({"command":")" + command + "\"}";
}

TEST_F(Integrating, SeldialCreatesNoFolders) {
  in = directory.path("missing/in");
  start();
  EXPECT_TRUE(process->waitForLine("Unix socket server listen failed at path " + in));
  EXPECT_FALSE(std::filesystem::exists(directory.path("missing")));
}

TEST_F(Integrating, APathHasAtMost103Bytes) {
  in = directory.path("");
  in.append(103 - in.size(), 'x');
  startListening();
  EXPECT_THAT(answerTo("{}"), IsError(kNoTag));
  in += 'x';
  start();
  EXPECT_TRUE(process->waitForLine("Failed to start unix socket server at path " + in + "."));
}

TEST_F(Integrating, APathIsInStandardForm) {
  for (const char* path : {"in", "./in", "a/../in", "/tmp//in", "/tmp/in/", "~/in"}) {
    in = path;
    start();
    EXPECT_TRUE(process->waitForLine("Failed to start unix socket server at path " + in + "."));
  }
}

TEST_F(Integrating, AnOldFileAtTheDialerPathIsReplaced) {
  std::ofstream(in) << "left over";
  startListening();
  EXPECT_THAT(answerTo("{}"), IsError(kNoTag));
}

TEST_F(Integrating, OnlyTheOwnerCanConnect) {
  startListening();
  struct stat status {};
  ASSERT_EQ(stat(in.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & (S_IRWXG | S_IRWXO), 0U);
}

TEST_F(Integrating, IfNobodyListensAMessageIsOnStandardOutputOnly) {
  out = directory.path("later");
  startListening();
  sendCommand(in, {named("first")});
  EXPECT_TRUE(process->waitForLine("\"invalid command: first\""));
  EXPECT_TRUE(process->waitForLine("Unix socket client connect failed"));
  const UcListener late(out);
  sendCommand(in, {named("second")});
  EXPECT_THAT(late.nextMessage(), IsError("invalid command: second"));
}

TEST_F(Integrating, EightBannerLinesComeFirst) {
  start();
  for (int line = 0; line < 8; ++line) (void)process->readLine();
  EXPECT_THAT(process->readLine(), testing::StartsWith("Log "));
}

TEST_F(Integrating, UnknownArgumentsAreIgnored) {
  start({"-log", "--clientpipename=" + out, "clientpipenam=" + out, "--help", "-x"});
  ASSERT_TRUE(process->waitForLine("listen ok"));
  terminate();
  EXPECT_EQ(process->errors(), "");
}

TEST_F(Integrating, TheLogSaysWhenItIsReady) {
  start();
  ASSERT_TRUE(process->waitForLine("Unix socket server listen ok at path " + in));
  EXPECT_TRUE(Peer::connectedTo(in).connected());
}

TEST_F(Integrating, AProbeCostsOneError) {
  start({});
  ASSERT_TRUE(eventually([this] { return Peer::connectedTo(in).connected(); }));
  EXPECT_THAT(client.nextMessage(), IsError(kEmpty));
  EXPECT_THAT(answerTo("{}"), IsError(kNoTag));
}

TEST_F(Integrating, IfItCannotListenSeldialRunsWithoutCommands) {
  std::filesystem::create_directories(in + "/full");
  start();
  EXPECT_TRUE(process->waitForLine("listen failed"));
  EXPECT_TRUE(process->isRunning());
  terminate();
}

TEST_F(Integrating, TheEndOfTheConnectionEndsTheCommand) {
  startListening();
  Peer peer = Peer::connectedTo(in);
  ASSERT_TRUE(peer.send("{}"));
  ASSERT_TRUE(process->waitForLine("did receive: {}"));
  EXPECT_FALSE(client.hasConnection());
  ::shutdown(peer.fd, SHUT_WR);
  EXPECT_THAT(process->readLine(), testing::HasSubstr("client with id did disconnect"));
  EXPECT_THAT(client.nextMessage(), IsError(kNoTag));
}

TEST_F(Integrating, OneConnectionCarriesOneCommand) {
  startListening();
  EXPECT_THAT(answerTo(named("a") + named("b")), IsError(kNoTag));
  EXPECT_THAT(answerTo(named("c")), IsError("invalid command: c"));
}

TEST_F(Integrating, AnswersComeInTheOrderOfTheCommands) {
  startListening();
  for (int i = 0; i < 20; ++i) sendCommand(in, {named(std::to_string(i))});
  for (int i = 0; i < 20; ++i) {
    EXPECT_THAT(client.nextMessage(), IsError("invalid command: " + std::to_string(i)));
  }
}

TEST_F(Integrating, ASecondConnectionDiscardsTheFirstOnesCommand) {
  startListening();
  Peer first = Peer::connectedTo(in);
  ASSERT_TRUE(first.send(named("first")));
  ASSERT_TRUE(process->waitForLine("did receive: "));
  Peer second = Peer::connectedTo(in);
  ASSERT_TRUE(process->waitForLine("PURGED !!!"));
  first.leave();
  ASSERT_TRUE(second.send(named("second")));
  second.leave();
  EXPECT_THAT(client.nextMessage(), IsError("invalid command: second"));
}

TEST_F(Integrating, AJSONArrayEndsTheProgram) {
  startListening();
  EXPECT_THAT(answerTo("42"), IsError(kNoTag));
  EXPECT_THAT(answerTo("\"text\""), IsError(kNoTag));
  sendCommand(in, {"[]"});
  EXPECT_EQ(process->wait(), 128 + SIGABRT);
  EXPECT_FALSE(client.hasConnection());
}

TEST_F(Integrating, EveryMessageIsOnStandardOutputBeforeItIsOnTheSocket) {
  startListening();
  sendCommand(in, {"{}"});
  const auto message = client.nextMessage();
  ASSERT_THAT(message, IsError(kNoTag));
  EXPECT_TRUE(process->waitForLine(message.value_or("nothing")));
  EXPECT_THAT(process->readLine(), testing::HasSubstr("Unix socket client connect ok"));
}

TEST_F(Integrating, StandardOutputMayBeDevNull) {
  const std::string command =
      R"(exec "$0" "$@" >/dev/null)";  // the shell's process becomes Seldial
  const ChildProcess quiet(
      {"sh", "-c", command, SELDIAL_PROGRAM, "dialerpipename=" + in, "clientpipename=" + out},
      {"DISPLAY"});
  waitUntilListening();
  EXPECT_THAT(answerTo("{}"), IsError(kNoTag));
}

TEST_F(Integrating, AClosedPipeDoesNotStopSeldial) {
  startListening();
  process->closeOutput();
  for (int i = 0; i < 3; ++i) EXPECT_THAT(answerTo("{}"), IsError(kNoTag));
  terminate();
}

TEST_F(Integrating, APipeThatNobodyReadsLosesLinesButTheSocketLosesNoMessages) {
  const UnreadPipe pipe;
  pipe.fill();
  start({}, {}, {Streams::Errors::kCaptured, {}, pipe.writingEnd()});
  waitUntilListening();
  for (int i = 0; i < 20; ++i) {
    EXPECT_THAT(answerTo(named(std::to_string(i))),
                IsError("invalid command: " + std::to_string(i)));
  }
  EXPECT_TRUE(pipe.full());
  terminate();
}

TEST_F(Integrating, TheVirtualKeyIsMissingOrOutOfRange) {
  startListening();
  for (const char* keys : {"", R"(,"virtualkey":65535)", R"(,"virtualkey":-1)",
                           R"(,"virtualkey":65536)", R"(,"virtualkey":"2")"}) {
    EXPECT_THAT(answerTo(R"({"command":"SetHotKey")" + std::string(keys) + "}"),
                IsHotkeyStateFalse("invalid virtual key value"))
        << keys;
  }
}

TEST_F(Integrating, SIGTERMEndsItWithStatus0) {
  auto* const before = std::signal(SIGHUP, SIG_DFL);  // it may be ignored, as under nohup
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    startListening();
    process->signal(signal);
    EXPECT_EQ(process->wait(), 0) << signal;
    EXPECT_FALSE(std::filesystem::exists(in)) << signal;
  }
  std::signal(SIGHUP, before);
}

TEST_F(Integrating, AfterAKillTheSocketFileStaysAndNobodyAnswers) {
  startListening();
  process->signal(SIGKILL);
  EXPECT_EQ(process->wait(), 128 + SIGKILL);
  EXPECT_TRUE(std::filesystem::exists(in));
  EXPECT_FALSE(Peer::connectedTo(in).connected());
}

TEST_F(Integrating, ARestartAtTheSamePathsWorksAtOnce) {
  startListening();
  process->signal(SIGKILL);
  process->wait();
  startListening();
  EXPECT_THAT(answerTo("{}"), IsError(kNoTag));
}

TEST_F(Integrating, ASecondInstanceAtTheSamePathTakesItOver) {
  startListening();
  const UcListener secondClient(directory.path("second-out"));
  SeldialProcess second(
      {"-log", "dialerpipename=" + in, "clientpipename=" + directory.path("second-out")});
  ASSERT_TRUE(second.waitForLine("listen ok"));
  sendCommand(in, {named("x")});
  EXPECT_THAT(secondClient.nextMessage(), IsError("invalid command: x"));
  terminate();
  sendCommand(in, {named("y")});
  EXPECT_THAT(secondClient.nextMessage(), IsError("invalid command: y"));
}

TEST_F(Integrating, WithoutADesktopEverySetHotKeyIsRefused) {
  startListening();
  for (const char* key : {"2", "80", "122"}) {
    EXPECT_THAT(answerTo(R"({"command":"SetHotKey","virtualkey":)" + std::string(key) + "}"),
                IsHotkeyStateFalse("hotkey not set"));
  }
}

TEST_F(Integrating, ThereIsNoDesktop) {
  startListening();
  EXPECT_THAT(answerTo(R"({"command":"SetHotKey","virtualkey":2,"modifierCtrl":true})"),
              IsHotkeyStateFalse("hotkey not set"));
}

TEST_F(Integrating, AnUnusableDisplayIsReportedOnStandardError) {
  startListening("unix:65535");
  terminate();
  EXPECT_THAT(process->errors(), testing::MatchesRegex("seldial: [^\n]+\n"));
}

TEST_F(Integrating, AnUnsetDISPLAYIsNotAnError) {
  startListening();
  terminate();
  EXPECT_EQ(process->errors(), "");
}

/// Ends a process that is not a child of this one.
class Orphan {
 public:
  explicit Orphan(pid_t process) : process_(process) {}
  ~Orphan() { end(); }
  Orphan(const Orphan&) = delete;
  Orphan& operator=(const Orphan&) = delete;

  void end() {
    if (process_ > 0) kill(process_, SIGTERM);
    process_ = -1;
  }

 private:
  pid_t process_;
};

class IntegratingAsAChild : public Integrating {
 protected:
  /// Starts Seldial as a child of a shell, by `starter`, and waits until it listens.
  void startBy(const std::string& starter) {
    const std::string child = "echo $$; exec " + starter + R"( "$0" "$@")";
    parent.emplace(
        std::vector<std::string>{"sh", "-c", R"(sh -c ')" + child + R"(' "$0" "$@" & wait)",
                                 SELDIAL_PROGRAM, "-log", "dialerpipename=" + in,
                                 "clientpipename=" + out},
        std::vector<std::string>{"DISPLAY"});
    orphan.emplace(std::stoi(parent->readLine()));
    ASSERT_TRUE(parent->waitForLine("listen ok"));
  }

  void killParent() {
    parent->signal(SIGKILL);
    EXPECT_EQ(parent->wait(), 128 + SIGKILL);
  }

  std::optional<ChildProcess> parent;
  std::optional<Orphan> orphan;
};

TEST_F(IntegratingAsAChild, SeldialOutlivesTheProgramThatStartedIt) {
  startBy("");
  killParent();
  EXPECT_THAT(answerTo("{}"), IsError(kNoTag));
  orphan->end();
  EXPECT_TRUE(eventually([this] { return !std::filesystem::exists(in); }));
}

TEST_F(IntegratingAsAChild, WithPdeathsigSeldialEndsWhenItsParentIsKilled) {
  startBy("setpriv --pdeathsig TERM");
  killParent();
  EXPECT_TRUE(eventually([this] { return !std::filesystem::exists(in); }));
}

}  // namespace
}  // namespace seldial::tests
