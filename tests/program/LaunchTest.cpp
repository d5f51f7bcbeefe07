// Start and end of the real program.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>

#include "tests/support/SeldialProcess.h"

namespace seldial::tests {
namespace {

using Launch = ProgramTest;

TEST_F(Launch, WithoutArgumentsItPrintsTheBannerAndKeepsRunningUntilTerminated) {
  SeldialProcess seldial({});
  for (int line = 0; line < 8; ++line) (void)seldial.readLine();
  EXPECT_TRUE(seldial.isRunning());
  seldial.signal(SIGTERM);
  EXPECT_EQ(seldial.wait(), 0);
  EXPECT_THAT(seldial.restOfLines(), testing::IsEmpty());
  EXPECT_EQ(seldial.errors(), "");
}

TEST_F(Launch, TheReferenceFlagsPrintAndQuitWithoutASocket) {
  start({"-showapi", "/HELP", "-ChangeLog"});
  EXPECT_EQ(process->wait(), 0);
  const auto lines = process->restOfLines();
  const auto usage = std::find(lines.begin(), lines.end(), "usage:");
  const auto changeLog = std::find(usage, lines.end(), "2018.11.01");
  EXPECT_NE(std::find(changeLog, lines.end(), "Log []->"), lines.end());
  EXPECT_FALSE(std::filesystem::exists(in));
}

/// A display server that accepts connections and never answers.
class SilentServer {
 public:
  SilentServer() : listening_(socket(AF_INET, SOCK_STREAM, 0)) {
    address_.sin_family = AF_INET;
    address_.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address_;
    auto* const address = reinterpret_cast<sockaddr*>(&address_);
    EXPECT_EQ(bind(listening_.fd, address, size), 0);
    EXPECT_EQ(listen(listening_.fd, 5), 0);
    EXPECT_EQ(getsockname(listening_.fd, address, &size), 0);
  }

  [[nodiscard]] std::string display() const {
    constexpr int kFirstPort = 6000;  // of display 0
    return "127.0.0.1:" + std::to_string(ntohs(address_.sin_port) - kFirstPort);
  }

 private:
  sockaddr_in address_{};
  Peer listening_;
};

TEST_F(Launch, TheReferenceFlagsDoNotWaitForADisplayServer) {
  const SilentServer server;
  for (const char* flag : {"-help", "-changelog", "-showapi"}) {
    start({flag}, server.display());
    EXPECT_EQ(process->wait(), 0) << flag;
  }
}

TEST_F(Launch, ASignalEndsItWhileItWaitsForADisplayServer) {
  const SilentServer server;
  start({"-log"}, server.display());
  for (int line = 0; line < 8; ++line) (void)process->readLine();
  terminate();
}

/// What a signal does in this process, and so in a program that it starts.
class Disposition {
 public:
  Disposition(int signal, void (*disposition)(int))
      : signal_(signal), before_(std::signal(signal, disposition)) {}
  ~Disposition() { std::signal(signal_, before_); }
  Disposition(const Disposition&) = delete;
  Disposition& operator=(const Disposition&) = delete;

 private:
  const int signal_;
  void (*const before_)(int);
};

TEST_F(Launch, EachTerminationSignalEndsItInTheOrderlyWay) {
  const Disposition notIgnored(SIGHUP, SIG_DFL);
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    startListening();
    process->signal(signal);
    EXPECT_EQ(process->wait(), 0) << signal;
    EXPECT_FALSE(std::filesystem::exists(in)) << signal;
  }
}

TEST_F(Launch, AHangUpThatItsStarterIgnoresIsIgnored) {
  const Disposition asNohupDoes(SIGHUP, SIG_IGN);
  startListening();
  process->signal(SIGHUP);
  EXPECT_THAT(answerTo("{}"), IsError("command tag not found"));
  terminate();
}

TEST_F(Launch, TheIncomingSocketIsReachableByItsOwnerAlone) {
  startListening();
  struct stat status {};
  ASSERT_EQ(stat(in.c_str(), &status), 0);
  EXPECT_TRUE(S_ISSOCK(status.st_mode));
  EXPECT_EQ(status.st_mode & (S_IRWXG | S_IRWXO), 0U);
}

TEST_F(Launch, TheSoftLimitOfDescriptorsIsTheHardOne) {
  startListening();
  std::ifstream limits("/proc/" + std::to_string(process->id()) + "/limits");
  for (std::string line; std::getline(limits, line);) {
    std::istringstream words(line);
    std::string max, open, files, soft, hard;
    words >> max >> open >> files >> soft >> hard;
    if (open == "open") {
      EXPECT_EQ(soft, hard) << line;
    }
  }
}

TEST_F(Launch, AStartThatCannotListenKeepsRunning) {
  in = directory.path("none/in");
  start();
  EXPECT_TRUE(process->waitForLine("Unix socket server listen failed at path " + in + "."));
  EXPECT_TRUE(process->isRunning());
  terminate();
}

TEST_F(Launch, ArgumentsThatMakeNoSenseAreIgnored) {
  std::vector<std::string> nonsense{"", "=", "nonsense", "--log", std::string(5000, '9')};
  for (const char* const option : {"-log", "-jsonlog", "-help", "-changelog", "-showapi"}) {
    for (const char* const rest : {"=", "=nonsense", "x", " -help", "=$(touch mark)"}) {
      nonsense.push_back(std::string(option) + rest);
    }
  }
  start(nonsense);
  waitUntilListening();
  EXPECT_THAT(answerTo("{}"), IsError("command tag not found"));
  terminate();
  const auto lines = process->restOfLines();
  EXPECT_EQ(lines.size(), 8U + 2U) << "the banner and two answers";
  EXPECT_EQ(process->errors(), "");
}

TEST_F(Launch, APathThatMakesNoSenseIsLogged) {
  const std::string mark = directory.path("mark");
  for (const auto& path : {std::string(), std::string("nonsense"), "$(touch " + mark + ");'\"",
                           std::string(5000, '9'), "/" + std::string(5000, '9')}) {
    SeldialProcess seldial({"-log", "dialerpipename=" + path, "clientpipename=" + path});
    EXPECT_TRUE(seldial.waitForLine(" at path " + path + ".")) << path;
    seldial.signal(SIGTERM);
    EXPECT_EQ(seldial.wait(), 0);
    EXPECT_EQ(seldial.errors(), "");
  }
  EXPECT_FALSE(std::filesystem::exists(mark));
}

TEST_F(Launch, APathMayContainSpacesLineBreaksAndAnyLetters) {
  for (const char* name : {"a b", "a\nb", "zażółć 📞", "=", "-log", "\xff"}) {
    in = directory.path(name);
    startListening();
    EXPECT_THAT(answerTo("{}"), IsError("command tag not found")) << name;
  }
}

TEST_F(Launch, ASecondProgramAtTheSamePathTakesItOver) {
  startListening();
  SeldialProcess second({"-log", "dialerpipename=" + in, "clientpipename=" + out});
  ASSERT_TRUE(second.waitForLine("listen ok"));
  sendCommand(in, {""});
  EXPECT_TRUE(second.waitForLine("Process Unix socket input string."));
}

TEST_F(Launch, AnInstanceThatLostItsPathReportsThisAndLeavesTheFile) {
  startListening();
  SeldialProcess second({"-log", "dialerpipename=" + in});
  ASSERT_TRUE(second.waitForLine("listen ok"));
  process->signal(SIGTERM);
  EXPECT_TRUE(
      process->waitForLine("Unix socket path was taken over; its file is left alone: " + in));
  EXPECT_EQ(process->wait(), 0);
  sendCommand(in, {"{}"});
  EXPECT_TRUE(second.waitForLine("Process Unix socket input string."));
  second.signal(SIGTERM);
  EXPECT_THAT(second.restOfLines(),
              testing::Not(testing::Contains(testing::HasSubstr("taken over"))));
  EXPECT_FALSE(Peer::connectedTo(in).connected());
}

TEST_F(Launch, ClosedStandardDescriptorsNeverBecomeASocket) {
  for (const auto& closed : std::vector<std::vector<int>>{{0}, {1}, {2}, {0, 1, 2}}) {
    start({"-log", "-jsonlog"}, {}, {Streams::Errors::kCaptured, closed});
    waitUntilListening();
    EXPECT_THAT(answerTo("{}"), IsError("command tag not found"));
    terminate();
  }
}

TEST_F(Launch, AReaderThatClosesStandardOutputEndsNothing) {
  startListening();
  process->closeOutput();
  for (int i = 0; i < 3; ++i) EXPECT_THAT(answerTo("{}"), IsError("command tag not found"));
  EXPECT_TRUE(process->isRunning());
  terminate();
}

TEST_F(Launch, SigpipeIsIgnored) {
  startListening();
  process->signal(SIGPIPE);
  EXPECT_THAT(answerTo("{}"), IsError("command tag not found"));
}

TEST_F(Launch, AnUnreachableDisplayIsOneLineOnStandardErrorAndEveryRegistrationIsRefused) {
  start({"-log"}, "unix:65535");
  ASSERT_TRUE(process->waitForLine("listen ok"));
  EXPECT_THAT(answerTo(R"({"command":"SetHotKey","virtualkey":2})"),
              IsHotkeyStateFalse("hotkey not set"));
  terminate();
  const std::string errors = process->errors();
  EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1) << errors;
}

}  // namespace
}  // namespace seldial::tests
