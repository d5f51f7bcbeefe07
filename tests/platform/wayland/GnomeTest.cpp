// Hot keys and copying under GNOME, with doubles of the portal and Mutter.
#include <gmock/gmock.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "platform/wayland/Desktop.h"
#include "platform/wayland/GnomeClipboard.h"
#include "platform/wayland/GnomeHotKeys.h"
#include "tests/support/Sockets.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/Waiting.h"
#include "tests/support/wayland/BareCompositor.h"
#include "tests/support/wayland/FakeGnome.h"

namespace seldial::platform::wayland {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using tests::FakeGnome;

constexpr std::uint32_t kControlAlt = kHotKeyControl | kHotKeyOption;
constexpr const char* kDial = "CTRL+ALT+d";

/// A US keyboard, as far as the tests need one.
std::string symbolName(std::uint32_t key) {
  const std::map<std::uint32_t, std::string> names{{40, "d"},        {71, "F5"},
                                                   {65, "space"},    {118, "Insert"},
                                                   {77, "Num_Lock"}, {196, "XF86Launch9"}};
  const auto found = names.find(key);
  return found != names.end() ? found->second : "";
}

/// The output of `task` on standard error.
std::string errorsOf(const std::function<void()>& task) {
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
  std::optional<FakeGnome> gnome;
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

TEST_F(GnomeTest, AUseCopiesTheSelection) {
  ASSERT_TRUE(registerDial(7));
  gnome->select("+31 20 123 4567");
  use();
  EXPECT_THAT(releases, ElementsAre(7));
  EXPECT_THAT(dialled, ElementsAre("+31 20 123 4567"));
  EXPECT_THAT(gnome->typed(), ElementsAre("Control+Insert"));
  EXPECT_FALSE(gnome->isRemoteSessionOpen());
}

TEST_F(GnomeTest, NothingIsTypedWhileModifiersAreHeld) {
  ASSERT_TRUE(registerDial());
  gnome->holdModifiers(true);
  gnome->press(kDial);
  serveQuestions(2);
  gnome->release(kDial);
  serveQuestions(3);
  EXPECT_THAT(releases, IsEmpty());
  gnome->holdModifiers(false);
  serveUntil([&] { return !releases.empty(); });
  EXPECT_THAT(gnome->typed(), ElementsAre("Control+Insert"));
}

TEST_F(GnomeTest, AUseEndsAlsoWhenTheModifiersGoUpFirst) {
  ASSERT_TRUE(registerDial());
  gnome->holdModifiers(true);
  gnome->press(kDial);
  gnome->press(kDial);  // as a held key repeats
  serveQuestions(2);
  gnome->holdModifiers(false);
  serveUntil([&] { return !releases.empty(); });
  use();
  EXPECT_THAT(releases, ElementsAre(1, 1));
}

TEST_F(GnomeTest, LockingTheScreenEndsAUse) {
  ASSERT_TRUE(registerDial());
  gnome->holdModifiers(true);
  gnome->press(kDial);
  serveQuestions(1);
  const auto lines = errorsOf([&] {
    gnome->lockScreen();
    serveUntil([&] { return !gnome->isRemoteSessionOpen(); });
  });
  EXPECT_THAT(lines, IsEmpty()) << "ended by its time limit";
  gnome->holdModifiers(false);
  gnome->answerModifiers();  // late
  use();
  EXPECT_THAT(releases, ElementsAre(1));
}

TEST_F(GnomeTest, AKeyWithoutModifiersIsUsedWhenItGoesUp) {
  ASSERT_TRUE(hotKeys->registerHotKey(kVK_F5, 0, {0, 2}));
  ASSERT_TRUE(registerDial());
  gnome->press("F5");
  gnome->answerModifiers();  // unrequested
  gnome->press("F5");
  gnome->release("F5");
  serveUntil([&] { return !releases.empty(); });
  use();
  EXPECT_THAT(releases, ElementsAre(2, 1));
}

TEST_F(GnomeTest, AnAnswerToThePreviousUseIsIgnored) {
  ASSERT_TRUE(registerDial());
  gnome->holdModifiers(true);
  gnome->press(kDial);
  serveQuestions(1);
  gnome->answerModifiers(-1);  // late
  serveQuestions(4);
  gnome->holdModifiers(false);
  serveUntil([&] { return !releases.empty(); });
  EXPECT_THAT(gnome->typed(), ElementsAre("Control+Insert"));
}

TEST_F(GnomeTest, IfNothingIsCopiedThereIsNoText) {
  ASSERT_TRUE(registerDial());
  use();
  gnome->select("");  // as terminals copy
  use();
  gnome->select("an image");
  gnome->setCopiedTypes({"text/html", "image/png"});
  use();
  gnome->select("020 1234");
  gnome->setCopiedTypes({"text/html", "UTF8_STRING"});
  use();
  EXPECT_THAT(dialled, ElementsAre(std::nullopt, std::nullopt, std::nullopt, "020 1234"));
}

TEST_F(GnomeTest, WhileATerminalRunsTheCopyKeyIsTyped) {
  ASSERT_TRUE(registerDial());
  programs.emplace_back("foot");
  const auto lines = errorsOf([&] { use(); });
  EXPECT_THAT(
      lines,
      HasSubstr("while foot runs, Seldial copies only from programs that support the Copy key"));
  EXPECT_THAT(gnome->typed(), ElementsAre("XF86Copy"));
  EXPECT_THAT(errorsOf([&] { use(); }), IsEmpty());
}

TEST_F(GnomeTest, WhileAnEditorRunsThatKeystrokesHarmNothingIsTyped) {
  ASSERT_TRUE(registerDial());
  gnome->select("020 1234");
  programs.emplace_back("emacs-gtk");
  EXPECT_THAT(errorsOf([&] { use(); }), HasSubstr("while emacs-gtk runs, nothing is copied"));
  EXPECT_THAT(gnome->typed(), IsEmpty());
  EXPECT_THAT(dialled, ElementsAre(std::nullopt));
}

TEST_F(GnomeTest, AWholeLineIsNotDialledWhileAnEditorRunsThatCopiesLines) {
  ASSERT_TRUE(registerDial());
  gnome->select("020 1234\n");
  use();
  programs.emplace_back("code");
  use();
  EXPECT_THAT(dialled, ElementsAre("020 1234\n", std::nullopt));
}

using Acts = FakeGnome::Manager::Acts;

TEST_F(GnomeTest, WhatAnX11ProgramWithoutTheFocusPutsOnTheClipboardIsNotDialled) {
  ASSERT_TRUE(registerDial());
  gnome->setManager({Acts::kOnClearing, {"UTF8_STRING", "TARGETS"}, "older text"});
  use();
  gnome->select("020 1234");
  use();
  EXPECT_THAT(dialled, ElementsAre(std::nullopt, "020 1234"));
}

TEST_F(GnomeTest, AnX11ProgramWithTheFocusCopies) {
  ASSERT_TRUE(registerDial());
  gnome->select("020 1234");
  gnome->setCopiedTypes({"TARGETS", "UTF8_STRING"});
  use();
  x11ProgramHasFocus = true;
  use();
  EXPECT_THAT(dialled, ElementsAre(std::nullopt, "020 1234"));
}

TEST_F(GnomeTest, ACopyCountsAlsoOnceAManagerHasTakenTheClipboard) {
  ASSERT_TRUE(registerDial());
  gnome->select("020 1234");
  for (const auto& types : {std::vector<std::string>{"UTF8_STRING", "TARGETS"}, {"text/plain"}}) {
    gnome->setManager({Acts::kAfterTransfer, types, "older text"});
    use();
  }
  EXPECT_THAT(dialled, ElementsAre("020 1234", "020 1234"));
}

TEST_F(GnomeTest, ATextThatMayHaveBeenTransferredByAManagerIsCopiedAgain) {
  ASSERT_TRUE(registerDial());
  gnome->select("020 1234");
  gnome->setManager(
      {Acts::kBeforeTransfer, {"text/plain;charset=utf-8", "UTF8_STRING", "TARGETS"}, "older", 1});
  use();
  EXPECT_THAT(dialled, ElementsAre("020 1234"));
  EXPECT_EQ(gnome->typed().size(), 2U);
}

TEST_F(GnomeTest, ATextThatMayHaveBeenTransferredByAManagerIsNotDialled) {
  ASSERT_TRUE(registerDial());
  gnome->select("020 1234");
  gnome->setManager(
      {Acts::kBeforeTransfer, {"text/plain;charset=utf-8", "UTF8_STRING", "TARGETS"}, "older"});
  use();
  EXPECT_THAT(dialled, ElementsAre(std::nullopt));
}

TEST_F(GnomeTest, ATextThatNoExtensionCanHaveCopiedIsCopiedOnce) {
  ASSERT_TRUE(registerDial());
  gnome->select("020 1234");
  gnome->setCopiedTypes({"text/plain;charset=utf-8"});
  use();
  gnome->listExtension(false);
  use();
  gnome->listExtension(true);
  gnome->setCopiedTypes({"text/plain", "text/plain;charset=utf-8"});
  use();
  EXPECT_THAT(dialled, ElementsAre("020 1234", "020 1234", "020 1234"));
  EXPECT_EQ(gnome->typed().size(), 3U);
}

TEST_F(GnomeTest, ATextThatAnExtensionMayHaveCopiedIsCopiedAgain) {
  ASSERT_TRUE(registerDial());
  gnome->select("020 1234");
  gnome->setCopiedTypes({"text/plain;charset=utf-8"});
  gnome->listExtension(true);
  gnome->setManager({Acts::kOnClearing, {"text/plain;charset=utf-8"}, "older text"});
  use();
  EXPECT_THAT(dialled, ElementsAre("020 1234"));
  EXPECT_THAT(gnome->typed(), ElementsAre("Control+Insert", "Control+Insert"));
}

TEST_F(GnomeTest, WhatAnExtensionPutsOnTheClipboardIsNotDialled) {
  ASSERT_TRUE(registerDial());
  gnome->listExtension(true);
  gnome->setManager({Acts::kOnClearing, {"text/plain;charset=utf-8"}, "older text"});
  use();
  EXPECT_THAT(dialled, ElementsAre(std::nullopt));
}

TEST_F(GnomeTest, TheUsersKeyIsReported) {
  gnome->setTrigger(kDial, "Press <Super>x");
  EXPECT_THAT(errorsOf([&] { ASSERT_TRUE(registerDial()); }),
              HasSubstr("the hot key in GNOME is: Press <Super>x\n"));
  const auto later = errorsOf([&] {
    gnome->setTrigger(kDial, "Press F9");
    use();
  });
  EXPECT_THAT(later, HasSubstr("the hot key in GNOME is: Press F9\n"));
  const auto gone = errorsOf([&] {
    gnome->setTrigger("modifiers-up", "");
    gnome->closePortalSession();
    serveUntil([&] { return gnome->bound().empty() && !hotKeys->isBound(); });
  });
  EXPECT_THAT(gone, HasSubstr("GNOME has no key for Seldial's shortcut XF86Launch9"));
  EXPECT_THAT(gone, HasSubstr("refuses the hot key: the desktop has revoked it"));
}

TEST_F(GnomeTest, WhatTheUserDoesNotAllowIsRefused) {
  gnome->setConsent(FakeGnome::Consent::kRefused);
  EXPECT_THAT(errorsOf([&] { EXPECT_FALSE(registerDial()); }),
              HasSubstr("the user or the desktop did not allow it"));
  gnome->setConsent(FakeGnome::Consent::kGiven);
  EXPECT_TRUE(registerDial());
}

TEST_F(GnomeTest, AProgramWithoutADesktopFileIsRefused) {
  gnome->forgetApplication();
  EXPECT_THAT(errorsOf([&] { EXPECT_FALSE(registerDial()); }),
              HasSubstr("the portal does not know this program: App info not found"));
}

TEST_F(GnomeTest, TheHotKeyWorksOnceTheUserHasAllowedIt) {
  gnome->setConsent(FakeGnome::Consent::kAsked);
  EXPECT_THAT(errorsOf([&] { EXPECT_TRUE(registerDial()); }),
              HasSubstr("GNOME asks the user to allow the hot key"));
  gnome->answer(true);
  use();
  EXPECT_THAT(releases, ElementsAre(1));
}

TEST_F(GnomeTest, WhatCannotBeAHotKeyIsRefused) {
  for (const std::uint32_t key : {kVK_Control, kVK_CapsLock, kVK_ANSI_KeypadClear, kVK_F18}) {
    EXPECT_FALSE(hotKeys->registerHotKey(key, 0, {0, 1})) << key;
  }
  EXPECT_FALSE(hotKeys->registerHotKey(kVK_ANSI_E, 0, {0, 1})) << "a key without a symbol";
  EXPECT_FALSE(hotKeys->registerHotKey(kVK_Help, kHotKeyControl, {0, 1})) << "the copy keystroke";
  EXPECT_TRUE(hotKeys->registerHotKey(kVK_Help, kHotKeyOption, {0, 1}));
}

TEST_F(GnomeTest, UnregisteredCombinationsAreReleased) {
  const auto dial = registerDial();
  const auto other = hotKeys->registerHotKey(kVK_Space, kHotKeyCommand | kHotKeyShift, {0, 2});
  ASSERT_TRUE(dial && other);
  EXPECT_EQ(gnome->bound().size(), 3U);
  hotKeys->unregisterHotKey(*dial);
  EXPECT_FALSE(gnome->bound().contains(kDial));
  EXPECT_TRUE(gnome->bound().contains("SHIFT+LOGO+space"));
  hotKeys->unregisterHotKey(*other);
  EXPECT_THAT(gnome->bound(), IsEmpty());
}

TEST_F(GnomeTest, APortalThatWasStartedAgainGetsTheHotKeyAgain) {
  ASSERT_TRUE(registerDial());
  gnome.reset();
  serveUntil([&] { return !hotKeys->isBound(); });
  gnome.emplace(session);
  serveUntil([&] { return hotKeys->isBound(); });
  use();
  EXPECT_THAT(releases, ElementsAre(1));
}

TEST_F(GnomeTest, TheHotKeyWorksAgainAfterAPartOfThePortalHasRestarted) {
  ASSERT_TRUE(registerDial());
  for (const auto restart : {&FakeGnome::restartPortal, &FakeGnome::restartImplementation}) {
    const auto before = gnome->bindings();
    ((*gnome).*restart)();
    serveUntil([&] { return gnome->bindings() > before && hotKeys->isBound(); });
    use();
  }
  EXPECT_THAT(releases, ElementsAre(1, 1));
}

TEST_F(GnomeTest, IfMutterRefusesKeysThereIsNoUse) {
  ASSERT_TRUE(registerDial());
  gnome->refuseRemoteSessions();
  const auto lines = errorsOf([&] {
    gnome->press(kDial);
    gnome->release(kDial);
    gnome->closePortalSession();
    serveUntil([&] { return !hotKeys->isBound(); });
  });
  EXPECT_THAT(lines, HasSubstr("GNOME does not let Seldial type"));
  EXPECT_THAT(releases, IsEmpty());
}

/// The error of the whole port of a session with Mutter for a hot key; empty if it succeeds.
std::string answerOfPort(const tests::SessionBus& session) {
  const tests::TemporaryDirectory directory;
  const std::string path = directory.path("wayland-0");
  const tests::BareCompositor compositor(path, tests::BareCompositor::Offer::kSeat);
  session.enter();
  const auto loop = std::make_shared<linux_port::MainLoop>();
  bool given = false;
  const auto said = errorsOf([&] {
    const auto ports = connect(tests::connectTo(path), loop, [] {});
    given = ports.hotKeyEvents->registerHotKey(kVK_F5, 0, {0, 1}).has_value();
    ports.disconnect();
  });
  return given ? std::string() : said;
}

TEST(GnomePortTest, IsChosenWhereMutterIsOnTheBus) {
  const tests::SessionBus session;
  EXPECT_THAT(answerOfPort(session), HasSubstr(" lacks the data control"));
  const FakeGnome gnome(session);
  EXPECT_THAT(answerOfPort(session), IsEmpty());
  EXPECT_THAT(gnome.bound(), IsEmpty()) << "the end gives everything back";
}

TEST(GnomePortTest, AGnomeWithoutShortcutsOfThePortalIsRefused) {
  const tests::SessionBus session;
  const tests::BusService mutter(session, "org.gnome.Mutter.RemoteDesktop",
                                 [](sd_bus_message* /*call*/) { return 0; });
  EXPECT_THAT(answerOfPort(session),
              HasSubstr("GNOME supports hot keys of programs from version 48 on"));
}

TEST(RunningProgramsTest, AreKnownByTheirNames) {
  const tests::TemporaryDirectory directory;
  const std::string name = "seldial-" + std::to_string(getpid());  // nobody else's
  EXPECT_THAT(runningPrograms(), Not(Contains(name)));
  const std::string path = directory.path(name);
  std::filesystem::copy_file("/bin/sleep", path);
  const tests::ChildProcess sleeper({path, "1000"});
  EXPECT_TRUE(tests::eventually([&] {
    const auto programs = runningPrograms();
    return std::find(programs.begin(), programs.end(), name) != programs.end();
  }));
}

}  // namespace
}  // namespace seldial::platform::wayland
