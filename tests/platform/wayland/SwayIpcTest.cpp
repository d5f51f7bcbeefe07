// sway's IPC socket: replies, and finding the focused window in the tree.
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <thread>

#include "platform/wayland/SwayIpc.h"
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

TEST(SwayConnection, IsMadeAgainAfterALoss) {
  const tests::TemporaryDirectory directory;
  const std::string path = directory.path("ipc");
  const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(listen(listener, 2), 0);
  const auto connection = SwayConnection::open(path);
  ASSERT_TRUE(connection);
  close(accept(listener, nullptr, nullptr));
  EXPECT_EQ(connection->ask(SwayRequest::kGetVersion), std::nullopt);
  std::thread sway([listener] {
    const int client = accept(listener, nullptr, nullptr);
    const std::string reply("i3-ipc\2\0\0\0\7\0\0\0{}", 16);
    EXPECT_EQ(write(client, reply.data(), reply.size()), static_cast<ssize_t>(reply.size()));
    char request[14];
    EXPECT_EQ(recv(client, request, sizeof request, MSG_WAITALL), 14);
    close(client);
  });
  EXPECT_EQ(connection->ask(SwayRequest::kGetVersion), "{}");
  sway.join();
  close(listener);
}

}  // namespace
}  // namespace seldial::platform::wayland
