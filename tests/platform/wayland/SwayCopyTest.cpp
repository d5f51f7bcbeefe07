// Copying under sway: only the selection of the focused window.
#include "tests/platform/wayland/WaylandPort.h"
#include "tests/support/wayland/ClipboardOwner.h"

namespace seldial::platform::wayland {
namespace {

using tests::Editor;
using tests::EditorKey;
using tests::EditorSettings;
using Texts = std::vector<std::optional<std::string>>;

const std::string kNumber = "+31 20 123 4567";

class SwayCopy : public WaylandTest {
 protected:
  void SetUp() override { ASSERT_TRUE(port->registerHotKey(kVK_ANSI_D, kControlAlt)); }

  static EditorSettings nothingSelected() {
    EditorSettings settings;
    settings.selected.reset();
    return settings;
  }

  /// Reads once the window has copied.
  void dialCopies(Editor& editor) {
    port->dialOnRelease([&] { editor.waitForCopies(port->dialled().size() + 1); });
  }

  /// Reads once the window has received the copy keystroke.
  void dialKeystrokes(Editor& editor, unsigned key = KEY_INSERT) {
    port->dialOnRelease([&, key] { editor.waitForKey(key, port->dialled().size() + 1); });
  }
};

TEST_F(SwayCopy, TheSelectionIsDialledAndOnlyTheKeystrokeIsTyped) {
  Editor editor(sway.display());
  dialCopies(editor);
  useHotKey();
  port->waitForDials(1);
  EXPECT_EQ(port->dialled(), Texts{kNumber});
  EXPECT_EQ(editor.keys(), (std::vector<EditorKey>{{KEY_INSERT, tests::kEditorControl}}));
}

TEST_F(SwayCopy, TenUsesInARowAreTenCalls) {
  Editor editor(sway.display());
  dialCopies(editor);
  for (int i = 0; i < 10; ++i) {
    editor.select(std::to_string(i));
    useHotKey();
    port->waitForDials(static_cast<std::size_t>(i) + 1);
    EXPECT_EQ(port->dialled().back(), std::to_string(i));
  }
}

TEST_F(SwayCopy, TwoUsesBeforeTheFirstIsHandledAreTwoCalls) {
  Editor editor(sway.display());
  dialCopies(editor);
  useHotKey();
  useHotKey();
  port->waitForDials(2);
  EXPECT_EQ(port->dialled(), (Texts{kNumber, kNumber}));
}

TEST_F(SwayCopy, WithNothingSelectedAnOlderClipboardAndAForeignSelectionAreNotDialled) {
  tests::ClipboardOwner owner(sway.display());
  owner.own("old");
  Editor editor(sway.display(), nothingSelected());
  dialKeystrokes(editor);
  useHotKey();
  port->waitForDials(1);
  EXPECT_EQ(port->dialled(), Texts{std::nullopt});
}

TEST_F(SwayCopy, WhatWasDeselectedIsNotDialledAgain) {
  Editor editor(sway.display());
  dialKeystrokes(editor);
  useHotKey();
  port->waitForDials(1);
  editor.select(std::nullopt);
  useHotKey();
  port->waitForDials(2);
  EXPECT_EQ(port->dialled()[1], std::nullopt);
}

TEST_F(SwayCopy, ModifiersThatStayHeldChangeNothingAndStayHeld) {
  Editor editor(sway.display());
  dialCopies(editor);
  keyboard.press(kControlAltKeys);
  for (const std::size_t uses : {1U, 2U}) {
    keyboard.tap(KEY_D);
    port->waitForDials(uses);
  }
  keyboard.release({KEY_LEFTALT});
  keyboard.tap(KEY_A);
  keyboard.release({KEY_LEFTCTRL});
  keyboard.tap(KEY_B);
  editor.waitForKey(KEY_B);
  EXPECT_EQ(port->dialled(), (Texts{kNumber, kNumber}));
  const EditorKey copy{KEY_INSERT, tests::kEditorControl};
  EXPECT_EQ(editor.keys(),
            (std::vector<EditorKey>{copy, copy, {KEY_A, tests::kEditorControl}, {KEY_B, 0}}));
}

TEST_F(SwayCopy, TheModifiersMayBeReleasedFirst) {
  Editor editor(sway.display());
  dialCopies(editor);
  keyboard.press({KEY_LEFTCTRL, KEY_LEFTALT, KEY_D});
  keyboard.release({KEY_LEFTCTRL});
  keyboard.release({KEY_LEFTALT});
  keyboard.release({KEY_D});
  port->waitForDials(1);
  EXPECT_EQ(port->dialled(), Texts{kNumber});
}

TEST_F(SwayCopy, TextsArriveUnaltered) {
  Editor editor(sway.display());
  dialCopies(editor);
  std::size_t dials = 0;
  for (const std::string& text : {std::string("020 123\n4567\n"), std::string("☎ \"1\""),
                                  std::string(), std::string(3UL << 20, '7')}) {
    editor.select(text);
    useHotKey();
    port->waitForDials(++dials);
    EXPECT_TRUE(port->dialled().back() == text) << text.substr(0, 20);
  }
}

TEST_F(SwayCopy, AnImageIsNoText) {
  EditorSettings image;
  image.type = "image/png";
  Editor editor(sway.display(), image);
  dialCopies(editor);
  useHotKey();
  port->waitForDials(1);
  EXPECT_EQ(port->dialled(), Texts{std::nullopt});
}

TEST_F(SwayCopy, ATerminalGetsTheCopyKeyAndNothingElse) {
  EditorSettings terminal;
  terminal.applicationId = "foot";
  terminal.copyKey = KEY_COPY;
  Editor editor(sway.display(), terminal);
  dialCopies(editor);
  useHotKey();
  port->waitForDials(1);
  EXPECT_EQ(port->dialled(), Texts{kNumber});
  EXPECT_EQ(editor.keys(), (std::vector<EditorKey>{{KEY_COPY, 0}}));
}

TEST_F(SwayCopy, AnEmptyTextFromATerminalMeansThatNothingIsSelected) {
  EditorSettings terminal;
  terminal.applicationId = "gnome-terminal-server";
  terminal.selected = "";
  Editor editor(sway.display(), terminal);
  dialCopies(editor);
  useHotKey();
  port->waitForDials(1);
  EXPECT_EQ(port->dialled(), Texts{std::nullopt});
}

TEST_F(SwayCopy, WhatMayBeTheCurrentLineOfAnEditorIsNotDialled) {
  EditorSettings kate;
  kate.applicationId = "org.kde.kate";
  kate.selected = kNumber + "\n";
  Editor editor(sway.display(), kate);
  dialCopies(editor);
  useHotKey();
  port->waitForDials(1);
  editor.select(kNumber);
  useHotKey();
  port->waitForDials(2);
  EXPECT_EQ(port->dialled(), (Texts{std::nullopt, kNumber}));
}

TEST_F(SwayCopy, NothingIsTypedWhereACopyMayBeOldOrDoesHarm) {
  port->dialOnRelease([] {});
  std::size_t dials = 0;
  for (const char* const name : {"emacs", "gvim"}) {
    EditorSettings settings;
    settings.applicationId = name;
    Editor editor(sway.display(), settings);
    useHotKey();
    port->waitForDials(++dials);
    EXPECT_EQ(port->dialled().back(), std::nullopt);
    keyboard.tap(KEY_A);
    editor.waitForKey(KEY_A);
    EXPECT_EQ(editor.keys(), (std::vector<EditorKey>{{KEY_A, 0}}));
  }
}

TEST_F(SwayCopy, WithoutAWindowNothingIsFound) {
  tests::ClipboardOwner owner(sway.display());
  owner.own("old");
  port->dialOnRelease([&] { owner.waitForLoss(); });
  useHotKey();
  port->waitForDials(1);
  EXPECT_EQ(port->dialled(), Texts{std::nullopt});
}

}  // namespace
}  // namespace seldial::platform::wayland
