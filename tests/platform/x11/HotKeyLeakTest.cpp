// Resources that ten thousand registrations leave behind, in the program and in the server.
#include <malloc.h>
#include <xcb/res.h>

#include <map>

#include "tests/platform/x11/HotKeyCenterTest.h"
#include "tests/support/desktop/Xcb.h"

namespace seldial::platform::x11 {
namespace {

/// Counts the resources that the server keeps for its clients.
class ServerResources {
 public:
  explicit ServerResources(const std::string& display) : connection_(connectToServer(display)) {}
  ~ServerResources() { xcb_disconnect(connection_); }
  ServerResources(const ServerResources&) = delete;
  ServerResources& operator=(const ServerResources&) = delete;

  /// By client and kind of resource.
  using Counts = std::map<std::pair<std::uint32_t, xcb_atom_t>, std::uint32_t>;

  [[nodiscard]] Counts counts() const {
    Counts counts;
    const auto clients = freed(
        xcb_res_query_clients_reply(connection_, xcb_res_query_clients(connection_), nullptr));
    if (!clients) throw std::runtime_error("the X server does not count resources");
    for (auto client = xcb_res_query_clients_clients_iterator(clients.get()); client.rem > 0;
         xcb_res_client_next(&client)) {
      addCounts(client.data->resource_base, counts);
    }
    return counts;
  }

 private:
  void addCounts(std::uint32_t client, Counts& counts) const {
    const auto cookie = xcb_res_query_client_resources(connection_, client);
    const auto reply = freed(xcb_res_query_client_resources_reply(connection_, cookie, nullptr));
    if (!reply) return;
    for (auto type = xcb_res_query_client_resources_types_iterator(reply.get()); type.rem > 0;
         xcb_res_type_next(&type)) {
      counts[{client, type.data->resource_type}] = type.data->count;
    }
  }

  xcb_connection_t* connection_;
};

class HotKeyLeak : public HotKeyCenterTest {
 protected:
  /// Returns once the server has executed the requests that the main loop sends when it becomes
  /// idle: watching starts and stops then.
  void settle() {
    onMain([] {});  // the loop was idle before it
    onMain([this] { port.session().connection.synchronise(); });
  }

  /// Main thread.
  void registerAndUnregister(int times) {
    for (int i = 0; i < times; ++i) {
      const auto hotKey = add(kVK_ANSI_D);
      ASSERT_NE(hotKey, nullptr);
      center->unregisterHotKey(hotKey);
    }
  }
};

TEST_F(HotKeyLeak, TenThousandRegistrationsLeaveNothingInTheServer) {
  const ServerResources resources(server.display());
  onMain([&] { add(kVK_ANSI_D); });
  settle();
  const auto registered = resources.counts();
  onMain([&] { center->unregisterAllHotKeys(); });
  settle();
  const auto before = resources.counts();
  EXPECT_NE(registered, before);
  onMain([&] { registerAndUnregister(10'000); });
  settle();
  EXPECT_EQ(resources.counts(), before);
}

TEST_F(HotKeyLeak, TenThousandRegistrationsLeaveNothingInTheProgram) {
  const auto [before, after] = onMain([&] {
    registerAndUnregister(100);
    const auto used = mallinfo2().uordblks;
    registerAndUnregister(10'000);
    return std::pair(used, mallinfo2().uordblks);
  });
  // Less than a byte of each.
  EXPECT_LT(after, before + 10'000);
}

}  // namespace
}  // namespace seldial::platform::x11
