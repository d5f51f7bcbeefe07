// The connection to the session bus: calls, signals, and losing it.
#include <gmock/gmock.h>

#include "platform/wayland/Bus.h"
#include "tests/support/Waiting.h"
#include "tests/support/wayland/SessionBus.h"

namespace seldial::platform::wayland {
namespace {

using testing::ElementsAre;

const BusObject kEcho{"org.test.Echo", "/echo", "org.test.Echo"};

class BusTest : public testing::Test {
 protected:
  BusTest() {
    session.enter();
    bus = Bus::open(loop, [this] { ++losses; });
  }

  void SetUp() override { ASSERT_TRUE(bus); }

  void emit(int number) { echo.emit("/echo", "org.test.Echo", "Said", "i", number); }

  /// Records the numbers in the signals of the service.
  BusSlot listen(std::vector<int>& heard) {
    return bus->onSignal(kEcho, "Said", [&heard](sd_bus_message* signal) {
      int number = 0;
      sd_bus_message_read(signal, "i", &number);
      heard.push_back(number);
    });
  }

  tests::SessionBus session;
  /// Replies to Twice and Say; Say also emits a signal with the number. Refuses everything else.
  tests::BusService echo{session, "org.test.Echo", [](sd_bus_message* call) {
                           int number = 0;
                           if (sd_bus_message_read(call, "i", &number) <= 0) return 0;
                           if (sd_bus_message_is_method_call(call, nullptr, "Twice") > 0) {
                             return sd_bus_reply_method_return(call, "i", 2 * number);
                           }
                           if (sd_bus_message_is_method_call(call, nullptr, "Say") <= 0) {
                             return sd_bus_reply_method_errorf(call, "org.test.Refused",
                                                               "no, %d is too much", number);
                           }
                           sd_bus_emit_signal(sd_bus_message_get_bus(call), "/echo",
                                              "org.test.Echo", "Said", "i", number);
                           return sd_bus_reply_method_return(call, "");
                         }};
  linux_port::MainLoop loop;
  std::unique_ptr<Bus> bus;
  int losses = 0;
};

TEST_F(BusTest, ACallReturnsTheReply) {
  const auto reply = bus->call(kEcho, "Twice", "i", 21);
  ASSERT_TRUE(reply);
  int number = 0;
  EXPECT_GT(sd_bus_message_read(reply.get(), "i", &number), 0);
  EXPECT_EQ(number, 42);
}

TEST_F(BusTest, AFailedCallSaysWhy) {
  EXPECT_FALSE(bus->call(kEcho, "Thrice", "i", 21));
  EXPECT_EQ(bus->error(), "no, 21 is too much");
  EXPECT_FALSE(bus->call({"org.test.Nobody", "/", "org.test.Nobody"}, "Twice", "i", 21));
  EXPECT_FALSE(bus->call({"no name", "/", "org.test.Echo"}, "Twice", "i", 21));
}

TEST_F(BusTest, NamesOnTheBusAreKnown) {
  EXPECT_TRUE(bus->hasOwner("org.test.Echo"));
  EXPECT_FALSE(bus->hasOwner("org.test.Nobody"));
}

TEST_F(BusTest, SignalsArriveWhileTheLoopSleepsAndWhileItBlocks) {
  std::vector<int> heard;
  const auto slot = listen(heard);
  ASSERT_TRUE(slot);
  emit(1);
  tests::serveUntil(loop, [&] { return heard.size() == 1; });
  emit(2);
  ASSERT_TRUE(tests::eventually([&] {
    loop.block(std::chrono::milliseconds(1));
    return heard.size() == 2;
  }));
  EXPECT_THAT(heard, ElementsAre(1, 2));
}

TEST_F(BusTest, ASignalThatArrivesDuringACallIsHandledByTheLoop) {
  std::vector<int> heard;
  const auto slot = listen(heard);
  ASSERT_TRUE(bus->call(kEcho, "Say", "i", 1));
  EXPECT_THAT(heard, ElementsAre());
  loop.serve();
  EXPECT_THAT(heard, ElementsAre(1));
}

TEST_F(BusTest, AHandlerMayDestroyItsSlotAndCallMethods) {
  std::vector<int> heard;
  BusSlot slot = bus->onSignal(kEcho, "Said", [&](sd_bus_message* /*signal*/) {
    heard.push_back(0);
    EXPECT_TRUE(bus->call(kEcho, "Twice", "i", 1));
    slot.reset();
  });
  std::vector<int> all;
  const auto other = listen(all);
  emit(1);
  emit(2);
  tests::serveUntil(loop, [&] { return all.size() == 2; });
  EXPECT_THAT(heard, ElementsAre(0));
}

TEST_F(BusTest, TheLossOfTheBusIsReportedOnceAndCallsFail) {
  session.kill();
  tests::serveUntil(loop, [&] { return losses > 0; });
  loop.serve();
  EXPECT_EQ(losses, 1);
  EXPECT_FALSE(bus->call(kEcho, "Twice", "i", 1));
  EXPECT_FALSE(bus->hasOwner("org.test.Echo"));
}

TEST_F(BusTest, WithoutABusThereIsNone) {
  session.kill();
  EXPECT_FALSE(Bus::open(loop, [] {}));
}

}  // namespace
}  // namespace seldial::platform::wayland
