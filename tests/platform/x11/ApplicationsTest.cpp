#include <gtest/gtest.h>

#include "platform/x11/copy/Applications.h"

namespace seldial::platform::x11 {
namespace {

TEST(Applications, TerminalsAreKnownByEitherOfTheirNames) {
  EXPECT_TRUE(isReadFromPrimary({"xterm", "XTerm"}));
  EXPECT_TRUE(isReadFromPrimary({"my-console", "XTerm"}));
  EXPECT_TRUE(isReadFromPrimary({"gnome-terminal-server", "Gnome-terminal"}));
  EXPECT_TRUE(isReadFromPrimary({"urxvt", "URxvt"}));
  EXPECT_TRUE(isReadFromPrimary({"kitty", "kitty"}));
}

TEST(Applications, EditorsAndBrowsersAreNone) {
  EXPECT_FALSE(isReadFromPrimary({"emacs", "Emacs"}));
  EXPECT_FALSE(isReadFromPrimary({"Navigator", "firefox"}));
  EXPECT_FALSE(isReadFromPrimary({"stellarium", "stellarium"}));
}

TEST(Applications, AWindowWithoutNamesIsNone) {
  EXPECT_FALSE(isReadFromPrimary({}));
  EXPECT_FALSE(isReadFromPrimary({"", ""}));
}

}  // namespace
}  // namespace seldial::platform::x11
