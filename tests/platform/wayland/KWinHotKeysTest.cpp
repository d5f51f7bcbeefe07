// Hot keys as global shortcuts of Plasma, and detecting held modifiers, with a double of the
// service.
#include <gmock/gmock.h>
#include <unistd.h>

#include <utility>

#include "platform/wayland/Desktop.h"
#include "platform/wayland/KWinHotKeys.h"
#include "tests/support/Sockets.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/wayland/BareCompositor.h"
#include "tests/support/wayland/FakeGlobalAccel.h"
#include "tests/support/wayland/UserKeyboard.h"
#include "wlr-data-control-unstable-v1-client.h"

namespace seldial::platform::wayland {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Key;
using testing::Not;
using testing::Pair;

constexpr std::uint32_t kControlAlt = kHotKeyControl | kHotKeyOption;
constexpr int kD = 0x0c000044;          ///< Ctrl+Alt+D
constexpr int kCyrillicD = 0x0c000412;  ///< the same position on a Russian keyboard
constexpr int kProbe = 0x010000ad;      ///< the key for detecting held modifiers
constexpr int kControlProbe = 0x050000ad;
const std::string kAction = "Ctrl+Alt+40";

/// The KWin objects of one program, without the clipboard.
class Program {
 public:
  Program(linux_port::MainLoop& loop, const std::string& display, const std::string& runtime)
      : loop_(loop),
        display_(tests::connectTo(display), loop, [] {}),
        claims_(runtime, "kglobalaccel"),
        bus_(Bus::open(loop, [] {})) {
    shortcuts_.listen([this](const std::string& action) { probe.pressed(action); },
                      [this](const std::string& action) { hotKeys.released(action); });
    keymap_.setChangeHandler([this] { hotKeys.keymapChanged(); });
    hotKeys.installReleasedHandler(
        [this](const HotKeyReleased& event) { released.push_back(event.hotKeyID.id); });
  }

  /// Simulates the user choosing other layouts.
  void useLayouts(const char* layouts) {
    const auto keymap = tests::fileOf(*tests::keymapOf(layouts));
    keymap_.keymapChanged(WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, dup(keymap.file()), keymap.size());
  }

 private:
  linux_port::MainLoop& loop_;
  Display display_;
  SeatKeymap keymap_{display_};
  HotKeyClaims claims_;
  std::unique_ptr<Bus> bus_;
  GlobalAccel shortcuts_{*bus_};

 public:
  std::function<void()> tapped = [] {};  ///< the key of the probe was typed
  ModifierProbe probe{loop_,   *bus_,   shortcuts_,
                      claims_, keymap_, [this](std::uint32_t /*key*/) { tapped(); }};
  KWinHotKeys hotKeys{loop_, shortcuts_, claims_, probe, keymap_};
  std::vector<std::uint32_t> released;
};

class KWinHotKeysTest : public testing::Test {
 protected:
  KWinHotKeysTest() {
    session.enter();
    program = start();
  }

  std::unique_ptr<Program> start() {
    return std::make_unique<Program>(loop, directory.path("wayland-0"), directory.path("seldial"));
  }

  tests::TemporaryDirectory directory;
  tests::BareCompositor compositor{directory.path("wayland-0"),
                                   tests::BareCompositor::Offer::kSeat};
  tests::SessionBus session;
  tests::FakeGlobalAccel plasma{session};
  linux_port::MainLoop loop;
  std::unique_ptr<Program> program;
};

TEST_F(KWinHotKeysTest, AReleaseIsReportedOnceWithItsID) {
  ASSERT_TRUE(program->hotKeys.registerHotKey(kVK_ANSI_D, kControlAlt, {0, 7}));
  ASSERT_TRUE(program->hotKeys.registerHotKey(kVK_F5, 0, {0, 8}));
  EXPECT_THAT(plasma.actions(), Contains(Pair(kAction, ElementsAre(kD))));
  plasma.press(kD);
  plasma.release(kD);
  plasma.press(0x01000034);
  plasma.release(0x01000034);
  tests::serveUntil(loop, [&] { return program->released.size() == 2; });
  EXPECT_THAT(program->released, ElementsAre(7, 8));
}

TEST_F(KWinHotKeysTest, WhatAnotherProgramHasIsRefusedAndLeavesNothing) {
  plasma.take(kD);
  testing::internal::CaptureStderr();
  EXPECT_FALSE(program->hotKeys.registerHotKey(kVK_ANSI_D, kControlAlt, {}));
  EXPECT_THAT(testing::internal::GetCapturedStderr(),
              HasSubstr("already one of Plasma's global shortcuts"));
  EXPECT_THAT(plasma.actions(), IsEmpty());
  EXPECT_TRUE(program->hotKeys.registerHotKey(kVK_ANSI_F, kControlAlt, {}));
}

TEST_F(KWinHotKeysTest, WhatCannotBeAHotKeyIsRefused) {
  for (const std::uint32_t key : {kVK_Control, kVK_CapsLock, kVK_ANSI_Keypad1, kVK_JIS_Eisu}) {
    EXPECT_FALSE(program->hotKeys.registerHotKey(key, kHotKeyOption, {})) << key;
  }
  EXPECT_FALSE(program->hotKeys.registerHotKey(kVK_Help, kHotKeyControl, {})) << "copies";
  EXPECT_FALSE(program->hotKeys.registerHotKey(kVK_F5, kControlAlt, {})) << "another console";
  EXPECT_THAT(plasma.actions(), IsEmpty());
}

TEST_F(KWinHotKeysTest, UnregisteringTheLastHotKeyRemovesEverything) {
  const auto first = program->hotKeys.registerHotKey(kVK_ANSI_D, kControlAlt, {});
  const auto second = program->hotKeys.registerHotKey(kVK_F5, 0, {});
  ASSERT_TRUE(first && second);
  program->hotKeys.unregisterHotKey(*first);
  EXPECT_THAT(plasma.actions(), Not(Contains(Key(kAction))));
  program->hotKeys.unregisterHotKey(*second);
  EXPECT_THAT(plasma.actions(), IsEmpty());
}

TEST_F(KWinHotKeysTest, TheEndOfTheProgramGivesEverythingBack) {
  ASSERT_TRUE(program->hotKeys.registerHotKey(kVK_ANSI_D, kControlAlt, {}));
  program.reset();
  EXPECT_THAT(plasma.actions(), IsEmpty());
}

TEST_F(KWinHotKeysTest, ASecondProgramGetsOtherCombinationsOnly) {
  const auto ref = program->hotKeys.registerHotKey(kVK_ANSI_D, kControlAlt, {});
  ASSERT_TRUE(ref);
  const auto other = start();
  EXPECT_THAT(plasma.actions(), Contains(Key(kAction))) << "it is held, not abandoned";
  EXPECT_FALSE(other->hotKeys.registerHotKey(kVK_ANSI_D, kControlAlt, {}));
  EXPECT_TRUE(other->hotKeys.registerHotKey(kVK_ANSI_F, kControlAlt, {}));
  program->hotKeys.unregisterHotKey(*ref);
  EXPECT_TRUE(other->hotKeys.registerHotKey(kVK_ANSI_D, kControlAlt, {}));
}

TEST_F(KWinHotKeysTest, ShortcutsOfAKilledProgramAreRemovedAtTheNextStart) {
  plasma.leave(kAction, {kD});
  plasma.leave("modifiers up 188", {kProbe});
  const auto next = start();
  EXPECT_THAT(plasma.actions(), IsEmpty());
  EXPECT_TRUE(next->hotKeys.registerHotKey(kVK_ANSI_D, kControlAlt, {}));
}

TEST_F(KWinHotKeysTest, OtherLayoutsGiveThePlaceOtherCodes) {
  ASSERT_TRUE(program->hotKeys.registerHotKey(kVK_ANSI_D, kControlAlt, {0, 7}));
  program->useLayouts("ru");
  EXPECT_THAT(plasma.actions(), Contains(Pair(kAction, ElementsAre(kCyrillicD))));
  program->useLayouts("us,ru");
  EXPECT_THAT(plasma.actions(), Contains(Pair(kAction, ElementsAre(kD, kCyrillicD))));
  plasma.release(kCyrillicD);
  tests::serveUntil(loop, [&] { return !program->released.empty(); });
}

TEST_F(KWinHotKeysTest, ACombinationThatALayoutLacksReturnsWithTheNextLayout) {
  ASSERT_TRUE(program->hotKeys.registerHotKey(kVK_ANSI_D, kControlAlt, {}));
  plasma.take(kCyrillicD);
  testing::internal::CaptureStderr();
  program->useLayouts("ru");
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("new keyboard layout"));
  EXPECT_THAT(plasma.actions(), Not(Contains(Key(kAction))));
  program->useLayouts("us");
  EXPECT_THAT(plasma.actions(), Contains(Pair(kAction, ElementsAre(kD))));
}

class ModifierProbeTest : public KWinHotKeysTest {
 protected:
  void SetUp() override { ASSERT_TRUE(program->probe.open()); }
};

TEST_F(ModifierProbeTest, WithNothingHeldOneTypedKeyIsEnough) {
  int taps = 0;
  program->tapped = [&] {
    ++taps;
    plasma.press(kProbe);
  };
  EXPECT_TRUE(program->probe.waitUntilReleased());
  EXPECT_EQ(taps, 1);
}

TEST_F(ModifierProbeTest, HeldModifiersAreWaitedFor) {
  int taps = 0;
  program->tapped = [&] { plasma.press(++taps < 3 ? kControlProbe : kProbe); };
  EXPECT_TRUE(program->probe.waitUntilReleased());
  EXPECT_EQ(taps, 3);
}

TEST_F(ModifierProbeTest, TheEndOfTheProgramEndsTheWait) {
  program->tapped = [&] {
    plasma.press(kControlProbe);
    loop.interrupt();
  };
  EXPECT_FALSE(program->probe.waitUntilReleased());
}

TEST_F(ModifierProbeTest, WithoutAnAnswerNoKeyCountsAsReleased) {
  program->tapped = [&] { session.kill(); };
  EXPECT_FALSE(program->probe.waitUntilReleased());
  program->probe.close();
  EXPECT_FALSE(program->probe.waitUntilReleased()) << "it has no key";
}

TEST_F(ModifierProbeTest, EveryCombinationOfModifiersIsDetected) {
  const auto actions = plasma.actions();
  EXPECT_THAT(actions, Contains(Pair("modifiers up 188", ElementsAre(kProbe))));
  EXPECT_EQ(actions.at("modifiers held 188").size(), 15U);
}

TEST_F(ModifierProbeTest, ItsCodeIsThatOfTheVersionOfQt) {
  program->probe.close();
  const tests::BusService kwin(session, "org.kde.KWin", [](sd_bus_message* call) {
    return sd_bus_reply_method_return(call, "s", "Version: 6.3.6\nQt Version: 6.8.2\n");
  });
  const auto next = start();
  ASSERT_TRUE(next->probe.open());
  EXPECT_THAT(plasma.actions(), Contains(Pair("modifiers up 188", ElementsAre(kProbe - 2))));
}

TEST_F(ModifierProbeTest, AKeyThatAnotherProgramUsesIsNotTaken) {
  program->probe.close();
  plasma.take(kControlProbe);
  ASSERT_TRUE(program->probe.open());
  EXPECT_THAT(plasma.actions(), Contains(Pair("modifiers up 187", ElementsAre(kProbe - 1))));
  EXPECT_THAT(plasma.actions(), Not(Contains(Key("modifiers up 188"))));
}

/// Adds a global to which clients send no request but the destructor with the opcode 2.
void addGlobal(wl_display* display, const wl_interface* interface) {
  wl_global_create(
      display, interface, 1, const_cast<wl_interface*>(interface),
      [](wl_client* client, void* bound, std::uint32_t version, std::uint32_t id) {
        using Request = void (*)(wl_client*, wl_resource*);
        static constexpr Request kRequests[]{
            nullptr, nullptr, [](auto*, auto* global) { wl_resource_destroy(global); }};
        auto* const global = wl_resource_create(client, static_cast<const wl_interface*>(bound),
                                                static_cast<int>(version), id);
        wl_resource_set_implementation(global, kRequests, nullptr, nullptr);
      });
}

TEST(KWinPortTest, AProgramWithoutADesktopFileIsRefused) {
  static const wl_interface shell{"org_kde_plasma_shell", 1, 0, nullptr, 0, nullptr};
  const tests::TemporaryDirectory directory;
  const std::string path = directory.path("wayland-0");
  const tests::BareCompositor compositor(
      path, tests::BareCompositor::Offer::kSeat, [](wl_display* display) {
        addGlobal(display, &zwlr_data_control_manager_v1_interface);
        addGlobal(display, &shell);
      });
  const auto loop = std::make_shared<linux_port::MainLoop>();
  testing::internal::CaptureStderr();
  const auto ports = connect(tests::connectTo(path), loop, [] {});
  EXPECT_FALSE(ports.hotKeyEvents->registerHotKey(kVK_F5, 0, {0, 1}));
  EXPECT_THAT(testing::internal::GetCapturedStderr(),
              HasSubstr("lacks the permission for Seldial to type"));
}

}  // namespace
}  // namespace seldial::platform::wayland
