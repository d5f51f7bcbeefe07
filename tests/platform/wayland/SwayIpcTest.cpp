// sway's IPC socket: replies, and finding the focused window in the tree.
#include <gmock/gmock.h>

#include <thread>

#include "platform/wayland/SwayIpc.h"
#include "tests/support/Sockets.h"
#include "tests/support/TemporaryDirectory.h"

namespace seldial::platform::wayland {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(SwayTree, TheFocusedWindowIsNamedByItsApplicationId) {
  EXPECT_THAT(focusedProgram(R"({"focused":false,"nodes":[{"focused":false,"app_id":"a"},
          {"focused":true,"app_id":"foot","window_properties":null}],"floating_nodes":[]})"),
              ElementsAre("foot"));
}

TEST(SwayTree, AWindowOnXwaylandIsNamedByItsClassAndInstance) {
  EXPECT_THAT(focusedProgram(R"({"nodes":[],"floating_nodes":[{"focused":true,"app_id":null,
          "window_properties":{"class":"XTerm","instance":"xterm"}}]})"),
              ElementsAre("XTerm", "xterm"));
}

TEST(SwayTree, WithoutAFocusedWindowThereIsNoName) {
  for (const auto* const tree : {"", "[]", "{}", R"({"focused":true,"type":"workspace"})",
                                 R"({"focused":1,"app_id":"a","nodes":{}})"}) {
    EXPECT_THAT(focusedProgram(tree), IsEmpty()) << tree;
  }
}

TEST(SwayConnection, IsReopenedAfterALoss) {
  const tests::TemporaryDirectory directory;
  const std::string path = directory.path("ipc");
  const auto listener = tests::Peer::listeningAt(path);
  const auto connection = SwayConnection::open(path);
  ASSERT_TRUE(connection);
  listener.accepted().leave();
  EXPECT_EQ(connection->ask(SwayRequest::kGetVersion), std::nullopt);
  std::thread sway([&] {
    const auto client = listener.accepted();
    EXPECT_TRUE(client.send(std::string("i3-ipc\2\0\0\0\7\0\0\0{}", 16)));
    EXPECT_EQ(client.receive(14).size(), 14U);
  });
  EXPECT_EQ(connection->ask(SwayRequest::kGetVersion), "{}");
  sway.join();
}

}  // namespace
}  // namespace seldial::platform::wayland
