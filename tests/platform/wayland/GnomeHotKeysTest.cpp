// Hot keys under GNOME: uses, what the user allows, and restarts of the portal.
#include "platform/wayland/Desktop.h"
#include "tests/platform/wayland/GnomeTest.h"
#include "tests/support/Sockets.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/wayland/BareCompositor.h"

namespace seldial::platform::wayland {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using tests::FakeGnome;

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

}  // namespace
}  // namespace seldial::platform::wayland
