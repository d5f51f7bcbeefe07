#include "tests/app/AppTest.h"

namespace seldial {
namespace {

using OutputDelivery = AppTest;
using testing::ElementsAre;

TEST_F(OutputDelivery, WithoutAClientPathAMessageGoesToStandardOutputOnlyAndSilently) {
  app->FlagLog = true;
  app->emitMessage("{}");
  EXPECT_EQ(output.text(), "{}\n");
  EXPECT_EQ(app->UnixSocketEventsCS, nullptr);
}

TEST_F(OutputDelivery, AMessageIsALineOnStandardOutputAndBareOnTheSocket) {
  const tests::UcListener client(directory.path("out"));
  app->ValueClientPipeName = directory.path("out");
  app->emitMessage("{\"a\":1}");
  EXPECT_EQ(output.text(), "{\"a\":1}\n");
  EXPECT_EQ(client.nextMessage(), "{\"a\":1}");
}

TEST_F(OutputDelivery, TheLogLinesOfADeliveryAreInOrder) {
  const tests::UcListener client(directory.path("out"));
  app->FlagLog = true;
  app->ValueClientPipeName = directory.path("out");
  app->emitMessage("{\"a\":1}");
  EXPECT_THAT(lines(),
              ElementsAre("{\"a\":1}",
                          "Log> Unix socket client connect ok at path " + directory.path("out"),
                          "Log> Unix socket client bytes written (7).",
                          "Log> Now closing unix socket client."));
  EXPECT_TRUE(mainQueue->tasks.empty()) << "no callback of an outgoing client fires";
}

TEST_F(OutputDelivery, APathWithoutAListenerIsLoggedAndTheMessageIsOnStandardOutputOnly) {
  app->FlagLog = true;
  app->ValueClientPipeName = directory.path("nobody");
  app->emitMessage("{}");
  EXPECT_THAT(lines(), ElementsAre("{}", "Log> Unix socket client connect failed"));
}

TEST_F(OutputDelivery, AnInvalidPathIsLogged) {
  app->FlagLog = true;
  for (const char* path : {"", "relative", "/tmp/../x"}) {
    const tests::CapturedOutput printed;
    app->ValueClientPipeName = path;
    app->sendToClientPipe("{}");
    EXPECT_THAT(printed.text(),
                testing::EndsWith(std::string("> Failed to connect unix socket client at path ") +
                                  path + "\n"));
  }
}

TEST_F(OutputDelivery, TwoMessagesMakeTwoConnectionsEachClosed) {
  const tests::UcListener client(directory.path("out"));
  app->ValueClientPipeName = directory.path("out");
  app->emitMessage("first");
  app->emitMessage("second");
  EXPECT_EQ(client.nextMessage(), "first");
  EXPECT_EQ(client.nextMessage(), "second");
  EXPECT_FALSE(client.hasConnection());
}

TEST_F(OutputDelivery, ANonAsciiMessageArrivesAsItsBytes) {
  const tests::UcListener client(directory.path("out"));
  app->ValueClientPipeName = directory.path("out");
  app->sendToClientPipe("⌘ é");
  EXPECT_EQ(client.nextMessage(), "⌘ é");
}

}  // namespace
}  // namespace seldial
