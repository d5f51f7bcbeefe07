#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "tests/app/AppTest.h"
#include "unixsocket/GDUnixSocketServer.h"

namespace seldial {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

/// The incoming channel; the test makes the library's callbacks.
class SocketChannels : public AppTest {
 protected:
  SocketChannels() {
    app->FlagLog = true;
    events = app->unixSocketEvents();
    server = GDUnixSocketServer::initWithSocketPath(directory.path("unused"));
  }

  void accept(const std::string& id) { events->unixSocketServerDidAcceptClientWithID(*server, id); }
  void receive(const std::string& id, const std::string& bytes) {
    events->unixSocketServerDidReceiveData(*server, bytes, id);
  }
  void disconnect(const std::string& id) {
    events->unixSocketServerClientWithIDDidDisconnect(*server, id);
  }

  /// The output of the steps posted so far.
  std::vector<std::string> drained() {
    const auto before = lines().size();
    mainQueue->drain();
    auto all = lines();
    all.erase(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(before));
    return all;
  }

  std::shared_ptr<GDUnixSocketEventsCS> events;
  std::shared_ptr<GDUnixSocketServer> server;
};

const Error kError = Error::gduds_errorForCode(-3017);

TEST_F(SocketChannels, WithoutADialerPathNoServerIsStartedAndNothingLogged) {
  app->startUnixSocketServer();
  EXPECT_EQ(app->UnixSocketServer, nullptr);
  EXPECT_EQ(output.text(), "");
}

TEST_F(SocketChannels, AServerStartIsLogged) {
  const auto path = directory.path("in");
  app->ValueDialerPipeName = path;
  app->startUnixSocketServer();
  mainQueue->drain();
  EXPECT_THAT(lines(), ElementsAre("Log> Start unix socket server at " + path,
                                   "Log> Unix socket server listen ok at path " + path + ".",
                                   "Log> Unix socket server; did start listening"));
  app->applicationWillTerminate();
  EXPECT_THAT(drained(), ElementsAre("Log> Unix socket server; did close"));
}

TEST_F(SocketChannels, AStaleFileOfAnyKindIsRemovedBeforeBinding) {
  const auto path = directory.path("in");
  const std::function<void()> kinds[] = {[&] { std::ofstream(path) << "text"; },
                                         [&] { std::filesystem::create_symlink("/nowhere", path); },
                                         [&] { std::filesystem::create_directory(path); },
                                         [&] { mkfifo(path.c_str(), 0600); },
                                         [&] { const tests::UcListener stale(path); }};
  app->ValueDialerPipeName = path;
  for (const auto& make : kinds) {
    make();
    app->startUnixSocketServer();
    EXPECT_EQ(lines().back(), "Log> Unix socket server listen ok at path " + path + ".");
    EXPECT_TRUE(std::filesystem::is_socket(path));
    app->applicationWillTerminate();
    EXPECT_FALSE(std::filesystem::exists(path));
  }
}

TEST_F(SocketChannels, ALinkIsRemovedAndNotWhatItPointsTo) {
  const auto path = directory.path("in");
  std::ofstream(directory.path("precious")) << "text";
  std::filesystem::create_symlink(directory.path("precious"), path);
  app->ValueDialerPipeName = path;
  app->startUnixSocketServer();
  EXPECT_TRUE(std::filesystem::is_socket(std::filesystem::symlink_status(path)));
  EXPECT_TRUE(std::filesystem::is_regular_file(directory.path("precious")));
}

TEST_F(SocketChannels, ADirectoryThatHoldsSomethingIsKeptAndTheListenFails) {
  const auto path = directory.path("in");
  std::filesystem::create_directory(path);
  std::ofstream(path + "/precious") << "text";
  app->ValueDialerPipeName = path;
  app->startUnixSocketServer();
  EXPECT_EQ(lines().back(), "Log> Unix socket server listen failed at path " + path + ".");
  EXPECT_TRUE(std::filesystem::exists(path + "/precious"));
}

TEST_F(SocketChannels, AnInvalidPathFailsToStart) {
  for (const char* path : {"", "relative", "/tmp/a/../b"}) {
    app->ValueDialerPipeName = path;
    app->startUnixSocketServer();
    EXPECT_EQ(lines().back(),
              std::string("Log> Failed to start unix socket server at path ") + path + ".");
    EXPECT_EQ(app->UnixSocketServer, nullptr);
  }
}

TEST_F(SocketChannels, AFailedStartReplacesTheEarlierServer) {
  app->ValueDialerPipeName = directory.path("in");
  app->startUnixSocketServer();
  ASSERT_NE(app->UnixSocketServer, nullptr);
  app->ValueDialerPipeName = "relative";
  app->startUnixSocketServer();
  EXPECT_EQ(app->UnixSocketServer, nullptr);
}

TEST_F(SocketChannels, ACallbackTouchesNoStateItself) {
  accept("A");
  receive("A", "x");
  EXPECT_EQ(app->UnixSocketConnetedClientId, "");
  EXPECT_EQ(app->UnixSocketInputString, "");
  EXPECT_EQ(output.text(), "");
  EXPECT_THAT(mainQueue->tasks, SizeIs(3));
}

TEST_F(SocketChannels, ChunksThatFollowEachOtherAreOneStepWithALogLineEach) {
  accept("A");
  receive("A", "one");
  receive("A", "two");
  EXPECT_THAT(mainQueue->tasks, SizeIs(3));
  EXPECT_THAT(drained(),
              ElementsAre("Log> Unix socket server; did accept client with id: A",
                          "Log> Unix socket now taking input from client: A.",
                          "Log> Unix socket server; did receive: one; from client with id: A",
                          "Log> Unix socket server; did receive: two; from client with id: A"));
  EXPECT_EQ(app->UnixSocketInputString, "onetwo");
}

TEST_F(SocketChannels, ChunksThatAreNotTextAreInTheSameStep) {
  accept("A");
  for (const char* chunk : {"\xff", "one", "\xff", "\xff", "two"}) receive("A", chunk);
  EXPECT_THAT(mainQueue->tasks, SizeIs(3));
  const std::string nothing =
      "Log> Unix socket server; did receive nothing; from client with id: A.";
  EXPECT_THAT(
      drained(),
      ElementsAre("Log> Unix socket server; did accept client with id: A",
                  "Log> Unix socket now taking input from client: A.", nothing,
                  "Log> Unix socket server; did receive: one; from client with id: A", nothing,
                  nothing, "Log> Unix socket server; did receive: two; from client with id: A"));
  EXPECT_EQ(app->UnixSocketInputString, "onetwo");
}

TEST_F(SocketChannels, WithoutLogLinesTheChunksOfOverlappingClientsAreOneStepEach) {
  app = AppDelegate::init(ports);
  events = app->unixSocketEvents();
  accept("A");
  accept("B");
  for (const char* chunk : {"1", "2", "\xff", "3"}) {
    receive("A", "lost");
    receive("B", chunk);
  }
  EXPECT_THAT(mainQueue->tasks, SizeIs(4));
  mainQueue->drain();
  EXPECT_EQ(app->UnixSocketInputString, "123");
}

TEST_F(SocketChannels, EachChunkOfAnUnrecognizedClientIsLogged) {
  receive("A", "one");
  receive("A", "two");
  EXPECT_THAT(drained(),
              ElementsAre("Log> Unix socket server; did receive: one; from client with id: A",
                          "Log> Unix socket received message from unrecognized client.",
                          "Log> Unix socket server; did receive: two; from client with id: A",
                          "Log> Unix socket received message from unrecognized client."));
  EXPECT_EQ(app->UnixSocketInputString, "");
}

TEST_F(SocketChannels, WithoutLogLinesOnlyTheDisconnectWakesTheMainThreadUp) {
  app = AppDelegate::init(ports);
  events = app->unixSocketEvents();
  accept("A");
  receive("A", R"({"command":)");
  receive("A", R"("x"})");
  EXPECT_THAT(mainQueue->tasks, SizeIs(2));
  EXPECT_EQ(mainQueue->wakeUps, 0);
  disconnect("A");
  EXPECT_THAT(mainQueue->tasks, SizeIs(3));
  EXPECT_EQ(mainQueue->wakeUps, 1);
  const auto printed = drained();
  ASSERT_THAT(printed, SizeIs(1));
  EXPECT_EQ(jsonText(printed[0], "message"), "invalid command: x");
}

TEST_F(SocketChannels, WithoutLogLinesALongTextWakesTheMainThreadUp) {
  app = AppDelegate::init(ports);
  events = app->unixSocketEvents();
  accept("A");
  for (int round = 1; round <= 3; ++round) {
    for (int chunk = 0; chunk < 16; ++chunk) receive("A", std::string(256, 'x'));
    EXPECT_EQ(mainQueue->wakeUps, round);
    mainQueue->drain();
    EXPECT_EQ(app->UnixSocketInputString, std::string(static_cast<std::size_t>(round) * 4096, 'x'));
  }
}

TEST_F(SocketChannels, AChunkAfterAnythingElseIsNotTakenBeforeIt) {
  accept("A");
  receive("A", "1");
  receive("B", "2");
  receive("A", "3");
  receive("A", "\xff");
  receive("A", "4");
  accept("B");
  receive("A", "5");
  receive("B", "6");
  mainQueue->drain();
  receive("B", "7");
  EXPECT_EQ(app->UnixSocketInputString, "6");
  mainQueue->drain();
  EXPECT_EQ(app->UnixSocketInputString, "67");
  EXPECT_THAT(output.text(), testing::HasSubstr(" did contain 134; PURGED !!!"));
}

TEST_F(SocketChannels, TheLogLineOfEachCallbackIsExact) {
  events->unixSocketServerDidStartListening(*server);
  events->unixSocketServerDidClose(*server, std::nullopt);
  accept("A");
  disconnect("B");
  events->unixSocketServerDidFailToReadForClientID(*server, "A", kError);
  events->unixSocketServerDidFailToAcceptConnection(*server, kError);
  EXPECT_THAT(drained(), ElementsAre("Log> Unix socket server; did start listening",
                                     "Log> Unix socket server; did close",
                                     "Log> Unix socket server; did accept client with id: A",
                                     "Log> Unix socket now taking input from client: A.",
                                     "Log> Unix socket server; client with id did disconnect: B",
                                     "Log> Unix socket server; did fail to read for client id: A",
                                     "Log> Unix socket server; did fail to accept"));
}

TEST_F(SocketChannels, TheClientCallbacksOnlyLog) {
  const auto client = GDUnixSocketClient::initWithSocketPath(directory.path("out"));
  events->unixSocketClientDidReceiveData(*client, "text");
  events->unixSocketClientDidReceiveData(*client, "\xff");
  events->unixSocketClientDidFailToReadWithError(*client, kError);
  EXPECT_THAT(drained(), ElementsAre("Log> Unix socket client; did receive: text",
                                     "Log> Unix socket client; did receive nothing.",
                                     "Log> Unix socket client; did fail to read"));
}

TEST_F(SocketChannels, ACommandIsProcessedOnceAsTheConcatenationOfItsChunks) {
  accept("A");
  receive("A", R"({"command":"Set)");
  receive("A", R"(HotKey","virtualkey":2})");
  disconnect("A");
  const auto printed = drained();
  ASSERT_THAT(printed, SizeIs(9));
  EXPECT_EQ(printed[2],
            R"(Log> Unix socket server; did receive: {"command":"Set; from client with id: A)");
  EXPECT_EQ(printed[4], "Log> Unix socket server; client with id did disconnect: A");
  EXPECT_EQ(printed[5], "Log> Process Unix socket input string.");
  EXPECT_EQ(jsonText(printed[8], "response"), "HotkeyState");
  EXPECT_EQ(app->UnixSocketConnetedClientId, "");
  EXPECT_EQ(app->UnixSocketInputString, "");
}

TEST_F(SocketChannels, ASecondClientPurgesTheFirstOnesInput) {
  accept("A");
  receive("A", "half");
  drained();
  accept("B");
  receive("A", " more");
  EXPECT_THAT(
      drained(),
      ElementsAre(
          "Log> Unix socket server; did accept client with id: B",
          "Log> Unix socket now taking input from client: B.",
          "Log> Unix socket input string from previous client A did contain half; PURGED !!!",
          "Log> Unix socket server; did receive:  more; from client with id: A",
          "Log> Unix socket received message from unrecognized client."));
  EXPECT_EQ(app->UnixSocketConnetedClientId, "B");
  EXPECT_EQ(app->UnixSocketInputString, "");
}

TEST_F(SocketChannels, ASecondClientAfterASilentOnePurgesNothing) {
  accept("A");
  accept("B");
  for (const auto& line : drained()) EXPECT_EQ(line.find("PURGED"), std::string::npos) << line;
}

TEST_F(SocketChannels, AClientThatSendsNothingIsAnsweredWithTheEmptyStringError) {
  accept("A");
  disconnect("A");
  const auto printed = drained();
  ASSERT_THAT(printed, SizeIs(6));
  EXPECT_EQ(printed[3], "Log> Process Unix socket input string.");
  EXPECT_EQ(printed[4], "Log> empty string on standard input stream");
  EXPECT_EQ(jsonText(printed[5], "message"), "empty string on standard input stream");
}

TEST_F(SocketChannels, AChunkThatEndsInsideACharacterIsDropped) {
  accept("A");
  receive("A", "{\"command\":\"\xc3");
  receive("A", "\xa9\"}");
  receive("A", "{}");
  EXPECT_THAT(drained(),
              ElementsAre("Log> Unix socket server; did accept client with id: A",
                          "Log> Unix socket now taking input from client: A.",
                          "Log> Unix socket server; did receive nothing; from client with id: A.",
                          "Log> Unix socket server; did receive nothing; from client with id: A.",
                          "Log> Unix socket server; did receive: {}; from client with id: A"));
  EXPECT_EQ(app->UnixSocketInputString, "{}");
}

TEST_F(SocketChannels, TheDisconnectOfAFormerClientLeavesTheCurrentOnesInput) {
  accept("A");
  accept("B");
  receive("B", "text");
  disconnect("A");
  EXPECT_EQ(drained().back(), "Log> Unix socket server; client with id did disconnect: A");
  EXPECT_EQ(app->UnixSocketConnetedClientId, "B");
  EXPECT_EQ(app->UnixSocketInputString, "text");
}

TEST_F(SocketChannels, DataBeforeAnyClientIsUnrecognized) {
  receive("A", "text");
  EXPECT_EQ(drained().back(), "Log> Unix socket received message from unrecognized client.");
}

TEST_F(SocketChannels, AReadFailureLeavesTheClientCurrent) {
  accept("A");
  receive("A", "half");
  events->unixSocketServerDidFailToReadForClientID(*server, "A", kError);
  drained();
  EXPECT_EQ(app->UnixSocketConnetedClientId, "A");
  EXPECT_EQ(app->UnixSocketInputString, "half");
}

TEST_F(SocketChannels, TheAdapterRefersToTheApplicationWeaklyAndThereIsOne) {
  EXPECT_EQ(app->unixSocketEvents(), events);
  EXPECT_EQ(events->Main.lock(), app);
  EXPECT_EQ(app.use_count(), 1);
}

TEST_F(SocketChannels, AStepThatFindsTheApplicationGoneIsFatal) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  accept("A");
  EXPECT_DEATH(
      {
        app.reset();
        mainQueue->drain();
      },
      "gone");
}

}  // namespace
}  // namespace seldial
