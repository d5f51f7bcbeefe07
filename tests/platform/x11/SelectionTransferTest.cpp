// The limits for reading text from another program.
#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/x11/copy/SelectionTransfer.h"
#include "tests/support/Waiting.h"
#include "tests/support/desktop/XClient.h"
#include "tests/support/desktop/XServer.h"

namespace seldial::platform::x11 {
namespace {

using tests::answersWith;

class SelectionTransferLimit : public ::testing::Test {
 protected:
  static std::unique_ptr<Connection> connect(const std::string& display) {
    setenv("DISPLAY", display.c_str(), 1);
    return Connection::open();
  }

  /// The text of the clipboard in UTF-8, read with a limit of `maxBytes` and `time`.
  std::optional<SelectionAnswer> read(std::size_t maxBytes,
                                      EventPump::Clock::duration time = tests::kTimeLimit) {
    const auto begin = EventPump::Clock::now();
    SelectionTransfer transfer(*connection, pump, maxBytes, begin + time);
    return transfer.ask(connection->atoms().clipboard, connection->atoms().utf8String,
                        begin + tests::kTimeLimit);
  }

  tests::XServer server;
  tests::XClient client{server.display()};
  linux_port::MainLoop loop;
  std::unique_ptr<Connection> connection = connect(server.display());
  EventPump pump{*connection, loop, [] {}};
};

TEST_F(SelectionTransferLimit, ATextOfJustTheLimitIsRead) {
  client.own("CLIPBOARD", answersWith(std::string(4000, 'x')));
  const auto answer = read(4000);
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->bytes.size(), 4000U);
}

TEST_F(SelectionTransferLimit, ALongerTextIsAbandoned) {
  client.own("CLIPBOARD", answersWith(std::string(4001, 'x')));
  EXPECT_FALSE(read(4000));
}

TEST_F(SelectionTransferLimit, InPiecesTheSumCounts) {
  client.own("CLIPBOARD", answersWith(std::string(4000, 'x'), 1000));
  EXPECT_TRUE(read(4000));
  client.own("CLIPBOARD", answersWith(std::string(4001, 'x'), 1000));
  EXPECT_FALSE(read(4000));
}

TEST_F(SelectionTransferLimit, AnOwnerThatSendsByteByByteIsAbandonedInTime) {
  const std::string text(100000, 'x');
  client.own("CLIPBOARD", answersWith(text, 1));
  EXPECT_FALSE(read(text.size(), std::chrono::milliseconds(100)));
  client.own("CLIPBOARD", answersWith("short", 1));
  EXPECT_TRUE(read(text.size()));
}

}  // namespace
}  // namespace seldial::platform::x11
