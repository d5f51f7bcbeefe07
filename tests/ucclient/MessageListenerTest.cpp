#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "tests/support/TemporaryDirectory.h"
#include "ucclient/MessageListener.h"
#include "unixsocket/GDUnixSocketClient.h"

namespace seldial {
namespace {

TEST(MessageAssembler, ChunksOfOneConnectionAreOneMessage) {
  MessageAssembler assembler;
  assembler.append("a", "{\"command\":");
  assembler.append("a", "\"MakeCall\"}");
  EXPECT_EQ(assembler.finish("a"), R"({"command":"MakeCall"})");
}

TEST(MessageAssembler, ConnectionsSideBySideDoNotMix) {
  MessageAssembler assembler;
  assembler.append("a", "1");
  assembler.append("b", "x");
  assembler.append("a", "2");
  EXPECT_EQ(assembler.finish("b"), "x");
  EXPECT_EQ(assembler.finish("a"), "12");
}

TEST(MessageAssembler, ACharacterCutBetweenChunksArrivesWhole) {
  MessageAssembler assembler;
  assembler.append("a", "\xC3");
  assembler.append("a", "\xA9");
  EXPECT_EQ(assembler.finish("a"), "é");
}

TEST(MessageAssembler, AConnectionWithoutDataCarriesTheEmptyMessage) {
  EXPECT_EQ(MessageAssembler().finish("a"), "");
}

TEST(MessageAssembler, AFinishedConnectionLeavesNothingBehind) {
  MessageAssembler assembler;
  assembler.append("a", "1");
  EXPECT_EQ(assembler.finish("a"), "1");
  EXPECT_EQ(assembler.finish("a"), "");
}

TEST(MessageAssembler, ADiscardedConnectionLeavesNothingBehind) {
  MessageAssembler assembler;
  assembler.append("a", "1");
  assembler.discard("a");
  EXPECT_EQ(assembler.finish("a"), "");
}

class MessageListenerTest : public testing::Test {
 protected:
  MessageListenerTest() {
    MessageListener::Events events;
    events.connected = [this] { events_.emplace_back("connected"); };
    events.received = [this](const std::string& message) {
      events_.push_back("received " + message);
      if (--awaited_ == 0) main_->stop();
    };
    listener_ = MessageListener::listenAt(path_, main_, std::move(events), error_);
  }

  [[nodiscard]] std::shared_ptr<GDUnixSocketClient> connected() const {
    auto client = GDUnixSocketClient::initWithSocketPath(path_);
    EXPECT_TRUE(client->connectWithAutoRead(false));
    return client;
  }

  void runUntilReceived(int messages) {
    awaited_ = messages;
    main_->run();
  }

  const tests::TemporaryDirectory directory_;
  const std::string path_ = directory_.path("client");
  const std::shared_ptr<MainThread> main_ = std::make_shared<MainThread>();
  std::vector<std::string> events_;
  int awaited_ = 0;
  std::string error_;
  std::unique_ptr<MessageListener> listener_;
};

TEST_F(MessageListenerTest, AMessageOfManyChunksIsAssembled) {
  const std::string message(100000, 'x');
  const auto client = connected();
  std::int64_t written = 0;
  while (written < static_cast<std::int64_t>(message.size())) {
    written += client->writeData(message.substr(static_cast<std::size_t>(written)));
  }
  client->close();
  runUntilReceived(1);
  EXPECT_EQ(events_, (std::vector<std::string>{"connected", "received " + message}));
}

TEST_F(MessageListenerTest, ConnectionsSideBySideKeepTheirMessagesApart) {
  const auto first = connected();
  const auto second = connected();
  first->writeData("on");
  second->writeData("two");
  first->writeData("e");
  second->close();
  first->close();
  runUntilReceived(2);
  EXPECT_EQ(std::count(events_.begin(), events_.end(), "received one"), 1);
  EXPECT_EQ(std::count(events_.begin(), events_.end(), "received two"), 1);
}

TEST_F(MessageListenerTest, AnInvalidPathIsReported) {
  std::string error;
  EXPECT_FALSE(MessageListener::listenAt(directory_.path("missing/client"), main_, {}, error));
  EXPECT_EQ(error.rfind("Failed to bind socket", 0), 0U) << error;
  EXPECT_FALSE(MessageListener::listenAt("client", main_, {}, error));
  EXPECT_EQ(error, "client cannot be the path of a socket");
}

}  // namespace
}  // namespace seldial
