#include <gtest/gtest.h>

#include "platform/x11/copy/FocusedWindow.h"

namespace seldial::platform::x11 {
namespace {

TEST(TerminalNames, TerminalsAreKnownByEitherOfTheirNames) {
  EXPECT_TRUE(isTerminal({"xterm", "XTerm"}));
  EXPECT_TRUE(isTerminal({"my-console", "XTerm"}));
  EXPECT_TRUE(isTerminal({"gnome-terminal-server", "Gnome-terminal"}));
  EXPECT_TRUE(isTerminal({"urxvt", "URxvt"}));
  EXPECT_TRUE(isTerminal({"kitty", "kitty"}));
}

TEST(TerminalNames, EditorsAndBrowsersAreNone) {
  EXPECT_FALSE(isTerminal({"emacs", "Emacs"}));
  EXPECT_FALSE(isTerminal({"Navigator", "firefox"}));
  EXPECT_FALSE(isTerminal({"stellarium", "stellarium"}));
}

TEST(TerminalNames, AWindowWithoutNamesIsNone) {
  EXPECT_FALSE(isTerminal({}));
  EXPECT_FALSE(isTerminal({"", ""}));
}

}  // namespace
}  // namespace seldial::platform::x11
