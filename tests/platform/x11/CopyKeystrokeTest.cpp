// The copy keystroke, as applications see it.
#include "tests/platform/x11/DialTest.h"

namespace seldial::platform::x11 {
namespace {

using CopyingWithKeys = DialTest;

TEST_F(CopyingWithKeys, CopiesTheSelectionOfTheFocusedWindow) {
  const XClient client(server.display());
  useHotKey();
  expectDial(1);
  EXPECT_EQ(typedInto(client), (Typed{{kKeyInsert, kStateControl}}));
}

TEST_F(CopyingWithKeys, GoesToTheWindowUnderThePointerIfNoneHasTheFocus) {
  const XClient client(server.display());
  keyboard.movePointer(10, 10);
  keyboard.focusFollowsPointer();
  useHotKey();
  expectDial(1);
}

TEST_F(CopyingWithKeys, AWindowOfWineGetsAMomentBeforeTheKeystroke) {
  XClientSettings settings;
  settings.wmInstance = settings.wmClass = "notepad.exe";
  const XClient client(server.display(), settings);
  const auto pause = port.call([&] {
    port.clipboard().clear();
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_TRUE(port.clipboard().copySelection());
    return std::chrono::steady_clock::now() - begin;
  });
  EXPECT_GE(pause, std::chrono::milliseconds(20));
  client.waitForRelease(kKeyInsert);
}

TEST_F(CopyingWithKeys, WithNothingSelectedNothingIsFound) {
  XClientSettings settings;
  settings.copies = false;
  const XClient client(server.display(), settings);
  useHotKey();
  port.waitForDials(1);
  EXPECT_EQ(port.dialled()[0], std::nullopt);
}

TEST_F(CopyingWithKeys, WhatMayBeTheCurrentLineOfAnEditorIsNotDialled) {
  std::size_t uses = 0;
  const auto dialFrom = [&](const std::string& name, const std::string& copied) {
    XClientSettings settings;
    settings.wmClass = name;
    settings.copy = answersWith(copied);
    const XClient client(server.display(), settings);
    port.whenBlocking([&] { client.waitForRelease(kKeyInsert); });
    useHotKey();
    port.waitForDials(++uses);
    return port.dialled().back();
  };
  EXPECT_EQ(dialFrom("Kate", kNumber + "\n"), std::nullopt);
  EXPECT_EQ(dialFrom("Kate", kNumber), kNumber);
  EXPECT_EQ(dialFrom("gedit", kNumber + "\n"), kNumber + "\n");
}

TEST_F(CopyingWithKeys, ACopyFromEmacsIsDialledIfItTakesPrimaryToo) {
  XClientSettings settings;
  settings.wmClass = "Emacs";
  {
    XClient client(server.display(), settings);
    client.own("PRIMARY", answersWith(kNumber));  // taking PRIMARY before the copy does not count
    port.whenBlocking([&] { client.waitForRelease(kKeyInsert); });
    useHotKey();
    port.waitForDials(1);
    EXPECT_EQ(port.dialled()[0], std::nullopt);
    EXPECT_EQ(client.copies(), 1);
  }
  settings.takesPrimary = true;
  const XClient client(server.display(), settings);
  port.whenBlocking([&] { client.waitForRelease(kKeyInsert); });
  useHotKey();
  expectDial(2);
}

TEST_F(CopyingWithKeys, WithNoWindowAtAllNothingIsFound) {
  useHotKey();
  port.waitForDials(1);
  EXPECT_EQ(port.dialled()[0], std::nullopt);
}

TEST_F(CopyingWithKeys, AnOldTextIsNotDialled) {
  XClientSettings settings;
  settings.copies = false;
  XClient client(server.display(), settings);
  client.own("CLIPBOARD", answersWith("old"));
  useHotKey();
  port.waitForDials(1);
  EXPECT_EQ(port.dialled()[0], std::nullopt);
}

TEST_F(CopyingWithKeys, CopiesWithTheLocksOn) {
  const XClient client(server.display());
  keyboard.tap(kKeyCapsLock);
  keyboard.tap(kKeyNumLock);
  useHotKey();
  expectDial(1);
  keyboard.tap(kKeyCapsLock);
  keyboard.tap(kKeyNumLock);
}

TEST_F(CopyingWithKeys, CopiesUnderEveryLayout) {
  const XClient client(server.display());
  std::size_t uses = 0;
  for (const char* const layout : {"us", "de", "fr", "ru", "us(dvorak)"}) {
    ASSERT_EQ(server.run({"setxkbmap", layout}), 0);
    useHotKey();
    expectDial(++uses);
  }
}

TEST_F(CopyingWithKeys, CopiesIfTheXTestKeyboardHasAnotherLayout) {
  const XClient client(server.display());
  ASSERT_EQ(server.run({"setxkbmap", "us(dvorak)"}), 0);
  ASSERT_EQ(server.run({"setxkbmap", "-device", keyboard.typingDevice(), "fr"}), 0);
  useHotKey();
  expectDial(1);
}

TEST_F(CopyingWithKeys, WithoutAnInsertKeyNothingCanBeCopied) {
  ASSERT_TRUE(port.call([&] { return port.clipboard().copySelection(); }));
  useLayout("no-insert.xkb");
  port.settle();
  port.settle();
  EXPECT_FALSE(port.call([&] { return port.clipboard().copySelection(); }));
}

TEST_F(CopyingWithKeys, TheXTestKeyboardNeedsTheInsertKey) {
  ASSERT_TRUE(port.call([&] { return port.clipboard().copySelection(); }));
  useLayout("no-insert.xkb", keyboard.typingDevice());
  port.settle();
  EXPECT_FALSE(port.call([&] { return port.clipboard().copySelection(); }));
}

}  // namespace
}  // namespace seldial::platform::x11
