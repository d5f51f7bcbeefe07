// The notifications of the client, observed on the session bus.
#include <gtest/gtest.h>
#include <systemd/sd-bus.h>

#include <fstream>
#include <memory>

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/desktop/Keyboard.h"
#include "tests/support/desktop/Keys.h"
#include "tests/support/desktop/XClient.h"
#include "tests/support/desktop/XServer.h"
#include "tests/ucclient/RunningClient.h"
#include "tests/ucclient/Softphone.h"

namespace seldial {
namespace {

/// A session bus that starts no service: one that this machine has would take its time.
class Bus {
 public:
  [[nodiscard]] const std::string& address() const { return address_; }

 private:
  static std::string written(const std::string& file) {
    std::ofstream(file)
        << "<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen>"
           "<policy context='default'><allow send_destination='*' eavesdrop='true'/>"
           "<allow eavesdrop='true'/><allow own='*'/></policy></busconfig>";
    return file;
  }

  const tests::TemporaryDirectory directory_;
  tests::ChildProcess daemon_{{"dbus-daemon", "--config-file", written(directory_.path("bus.conf")),
                               "--nofork", "--print-address"}};
  const std::string address_ = daemon_.readLine();
};

class Notifications : public testing::Test {
 protected:
  Notifications() {
    EXPECT_TRUE(monitor_.waitForLine("NameAcquired"));  // it listens from now on
  }

  /// Presses the hot key while this is selected.
  void pressHotKey(RunningClient& client, const std::string& selection) {
    if (!isReady_) isReady_ = client.process().waitForLine("is set: ");
    ASSERT_TRUE(isReady_);
    tests::XClientSettings settings;
    settings.copy = tests::answersWith(selection);
    editor_ = std::make_unique<tests::XClient>(server_.display(), settings);
    tests::Keyboard keyboard(server_.display());
    keyboard.press({tests::kKeyLeftControl, tests::kKeyLeftAlt, tests::kKeyD});
    keyboard.release({tests::kKeyD, tests::kKeyLeftAlt, tests::kKeyLeftControl});
  }

  /// Like pressHotKey(), and waits for the result.
  void use(RunningClient& client, const std::string& selection) {
    pressHotKey(client, selection);
    ASSERT_TRUE(client.process().waitForLine("ialled"));
  }

  tests::XServer server_;
  bool isReady_ = false;
  std::unique_ptr<tests::XClient> editor_;
  const Bus sessionBus_;
  const std::string bus_ = sessionBus_.address();
  tests::ChildProcess monitor_{{"dbus-monitor", "--address", bus_}};
};

/// A double of the desktop's notification service.
class NotificationDesktop {
 public:
  explicit NotificationDesktop(const std::string& address) {
    EXPECT_GE(sd_bus_new(&bus_), 0);
    EXPECT_GE(sd_bus_set_address(bus_, address.c_str()), 0);
    EXPECT_GE(sd_bus_set_bus_client(bus_, 1), 0);
    EXPECT_GE(sd_bus_start(bus_), 0);
    EXPECT_GE(sd_bus_add_filter(bus_, nullptr, handle, this), 0);
    EXPECT_GE(sd_bus_request_name(bus_, kName, 0), 0);
  }
  ~NotificationDesktop() { sd_bus_flush_close_unref(bus_); }
  NotificationDesktop(const NotificationDesktop&) = delete;
  NotificationDesktop& operator=(const NotificationDesktop&) = delete;

  /// The summary of the next notification.
  std::string nextSummary() {
    summary_.clear();
    while (summary_.empty()) {
      if (sd_bus_process(bus_, nullptr) == 0) {
        EXPECT_GT(sd_bus_wait(bus_, kLimit), 0) << "no notification";
        if (testing::Test::HasFailure()) return "";
      }
    }
    return summary_;
  }

  void pressUndo() { emit("ActionInvoked", "us", "undo"); }
  void closeWithReason(std::uint32_t reason) { emit("NotificationClosed", "uu", reason); }

 private:
  static constexpr const char* kName = "org.freedesktop.Notifications";
  static constexpr std::uint64_t kLimit = 30'000'000;  // microseconds
  static constexpr std::uint32_t kID = 7;

  template <class Value>
  void emit(const char* signal, const char* types, Value value) {
    EXPECT_GE(sd_bus_emit_signal(bus_, "/org/freedesktop/Notifications", kName, signal, types, kID,
                                 value),
              0);
    sd_bus_flush(bus_);
  }

  static int handle(sd_bus_message* call, void* desktop, sd_bus_error* /*error*/) {
    auto& self = *static_cast<NotificationDesktop*>(desktop);
    if (sd_bus_message_is_method_call(call, kName, "GetCapabilities") > 0) {
      return sd_bus_reply_method_return(call, "as", 1, "actions");
    }
    if (sd_bus_message_is_method_call(call, kName, "Notify") <= 0) return 0;
    const char* summary = nullptr;
    sd_bus_message_read(call, "susss", nullptr, nullptr, nullptr, &summary, nullptr);
    self.summary_ = summary;
    return sd_bus_reply_method_return(call, "u", kID);
  }

  sd_bus* bus_ = nullptr;
  std::string summary_;
};

/// A client whose calls can be undone for the duration of a test.
class Undo : public Notifications {
 protected:
  const Softphone phone_{"phone"};
  RunningClient client_{
      {"--dial", phone_.path(), "--confirm=undo", "--undo-time=60", "--delay=500", "--region=NL"},
      server_.environment(),
      "/usr/bin:/bin",
      bus_};
};

TEST_F(Undo, ACallThatIsUndoneIsNotMade) {
  NotificationDesktop desktop(bus_);
  for (const bool byButton : {true, false}) {
    pressHotKey(client_, "020 123 4567");
    EXPECT_EQ(desktop.nextSummary(), "Calling +31201234567");
    if (byButton) {
      desktop.pressUndo();
    } else {
      desktop.closeWithReason(2);  // dismissed by the user
    }
    EXPECT_TRUE(client_.process().waitForLine("seldial-uc: nothing was dialled: it was undone"));
    EXPECT_EQ(desktop.nextSummary(), "Nothing was dialled");
  }
}

TEST_F(Undo, ACallThatIsNotUndoneIsDialled) {
  NotificationDesktop desktop(bus_);
  pressHotKey(client_, "020 123 4567");
  EXPECT_EQ(desktop.nextSummary(), "Calling +31201234567");
  desktop.closeWithReason(1);  // its time is over
  EXPECT_EQ(phone_.called(), "[+31201234567]");
}

TEST_F(Notifications, TheTimeToUndoEndsByItself) {
  NotificationDesktop desktop(bus_);
  const Softphone phone("phone");
  RunningClient client({"--dial", phone.path(), "--confirm=undo", "--undo-time=1", "--region=NL"},
                       server_.environment(), "/usr/bin:/bin", bus_);
  pressHotKey(client, "020 123 4567");
  EXPECT_EQ(desktop.nextSummary(), "Calling +31201234567");
  EXPECT_EQ(phone.called(), "[+31201234567]");
}

TEST_F(Undo, ASecondUseGivesTheFirstCallUp) {
  NotificationDesktop desktop(bus_);
  pressHotKey(client_, "020 123 4567");
  EXPECT_EQ(desktop.nextSummary(), "Calling +31201234567");
  use(client_, "hello");
  EXPECT_EQ(desktop.nextSummary(), "Nothing was dialled");
  desktop.closeWithReason(1);
  pressHotKey(client_, "020 765 4321");
  EXPECT_EQ(desktop.nextSummary(), "Calling +31207654321");
  desktop.closeWithReason(1);
  EXPECT_EQ(phone_.called(), "[+31207654321]");
}

TEST_F(Notifications, ARefusedHotKeyIsShownWithTheReason) {
  RunningClient holder({}, server_.environment());
  ASSERT_TRUE(holder.process().waitForLine("is set: "));
  RunningClient client({"--dial", "true"}, server_.environment(), "/usr/bin:/bin", bus_);
  EXPECT_TRUE(monitor_.waitForLine("string \"There is no hot key\""));
  EXPECT_TRUE(monitor_.waitForLine("string \"the hot key ctrl+alt+d was refused: hotkey not set"));
  EXPECT_EQ(client.process().wait(), 1);
}

TEST_F(Notifications, ACallIsShownWithItsNumber) {
  RunningClient client({"--dial", "true", "--delay", "500", "--region", "NL"},
                       server_.environment(), "/usr/bin:/bin", bus_);
  use(client, "Tel. 020 123\u00A04567");
  EXPECT_TRUE(monitor_.waitForLine("member=Notify"));
  EXPECT_TRUE(monitor_.waitForLine("string \"Calling +31201234567\""));
}

TEST_F(Notifications, TheySpeakTheLanguageOfTheSession) {
  setenv("LC_ALL", "de_DE.UTF-8", 1);
  RunningClient client({"--dial", "true", "--delay", "500"}, server_.environment(), "/usr/bin:/bin",
                       bus_);
  setenv("LC_ALL", "C.UTF-8", 1);
  use(client, "030 23125123");
  EXPECT_TRUE(monitor_.waitForLine("string \"+493023125123 wird angerufen\""));
  pressHotKey(client, "hello");
  // What is printed stays English.
  EXPECT_TRUE(client.process().waitForLine("there is no telephone number in the selection"));
  EXPECT_TRUE(monitor_.waitForLine("string \"Es wurde nichts gewählt\""));
  EXPECT_TRUE(monitor_.waitForLine("string \"im markierten Text ist keine Telefonnummer\""));
}

TEST_F(Notifications, ASelectionThatIsNotDialledIsShownWithTheReason) {
  RunningClient client({"--dial", "true", "--delay", "500", "--region", "NL"},
                       server_.environment(), "/usr/bin:/bin", bus_);
  use(client, "hello");
  EXPECT_TRUE(monitor_.waitForLine("string \"Nothing was dialled\""));
  EXPECT_TRUE(monitor_.waitForLine("string \"there is no telephone number in the selection\""));
}

}  // namespace
}  // namespace seldial
