// The fixture of the tests under GNOME: hot keys and copying, with doubles of the portal and
// Mutter.
#pragma once

#include <gmock/gmock.h>
#include <poll.h>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/wayland/GnomeClipboard.h"
#include "platform/wayland/GnomeHotKeys.h"
#include "tests/support/Waiting.h"
#include "tests/support/wayland/FakeGnome.h"

namespace seldial::platform::wayland {

inline constexpr std::uint32_t kControlAlt = kHotKeyControl | kHotKeyOption;
inline constexpr const char* kDial = "CTRL+ALT+d";

/// A US keyboard, as far as the tests need one.
inline std::string symbolName(std::uint32_t key) {
  const std::map<std::uint32_t, std::string> names{{40, "d"},        {71, "F5"},
                                                   {65, "space"},    {118, "Insert"},
                                                   {77, "Num_Lock"}, {196, "XF86Launch9"}};
  const auto found = names.find(key);
  return found != names.end() ? found->second : "";
}

/// The output of `task` on standard error.
inline std::string errorsOf(const std::function<void()>& task) {
  testing::internal::CaptureStderr();
  task();
  return testing::internal::GetCapturedStderr();
}

class GnomeTest : public testing::Test {
 protected:
  GnomeTest() {
    session.enter();
    gnome.emplace(session);
    bus = Bus::open(loop, [] {});
    remote.emplace(*bus, loop, [this] { return x11ProgramHasFocus; });
    hotKeys.emplace(loop, *bus, *remote, symbolName);
    clipboard.emplace(*remote, [this] { return programs; });
    hotKeys->installReleasedHandler([this](const HotKeyReleased& event) {
      releases.push_back(event.hotKeyID.id);
      clipboard->clear();
      EXPECT_TRUE(clipboard->copySelection());
      dialled.push_back(clipboard->text());
    });
  }

  /// Runs the loop, which sleeps between events.
  void serveUntil(const std::function<bool()>& condition) {
    const auto limit = std::chrono::milliseconds(tests::kTimeLimit).count();
    for (;;) {
      loop.serve();
      if (condition()) return;
      pollfd waiting{loop.descriptor(), POLLIN, 0};
      ASSERT_EQ(poll(&waiting, 1, static_cast<int>(limit)), 1) << "nothing happens";
    }
  }

  std::optional<HotKeyRef> registerDial(std::uint32_t id = 1) {
    return hotKeys->registerHotKey(kVK_ANSI_D, kControlAlt, {0, id});
  }

  /// Presses and releases the key, and then releases the modifiers.
  void use(const char* hotKey = kDial) {
    const auto before = releases.size();
    gnome->press(hotKey);
    gnome->release(hotKey);
    serveUntil([&] { return releases.size() > before; });
  }

  /// Runs the loop until the key that tests for modifiers has been typed `count` more times.
  void serveQuestions(std::size_t count) {
    const auto wanted = gnome->questions() + count;
    serveUntil([&] { return gnome->questions() >= wanted; });
  }

  tests::SessionBus session;
  std::optional<tests::FakeGnome> gnome;
  linux_port::MainLoop loop;
  std::unique_ptr<Bus> bus;
  std::optional<MutterRemote> remote;
  std::optional<GnomeHotKeys> hotKeys;
  std::optional<GnomeClipboard> clipboard;
  std::vector<std::string> programs{"gnome-shell", "ptyxis"};  ///< that are running
  std::vector<std::uint32_t> releases;
  std::vector<std::optional<std::string>> dialled;
  bool x11ProgramHasFocus = false;  ///< the one that owns the clipboard
};

}  // namespace seldial::platform::wayland
