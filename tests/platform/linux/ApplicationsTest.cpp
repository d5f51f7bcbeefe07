#include <gtest/gtest.h>

#include "platform/linux/Applications.h"

namespace seldial::platform::linux_port {
namespace {

TEST(Applications, TerminalsAreRecognisedByEitherName) {
  EXPECT_TRUE(isReadFromPrimary({"xterm", "XTerm"}));
  EXPECT_TRUE(isReadFromPrimary({"my-console", "XTerm"}));
  EXPECT_TRUE(isReadFromPrimary({"gnome-terminal-server", "Gnome-terminal"}));
  EXPECT_TRUE(isReadFromPrimary({"urxvt", "URxvt"}));
  EXPECT_TRUE(isReadFromPrimary({"kitty", "kitty"}));
}

TEST(Applications, EditorsAndBrowsersAreNotListed) {
  EXPECT_FALSE(isReadFromPrimary({"emacs", "Emacs"}));
  EXPECT_FALSE(isReadFromPrimary({"Navigator", "firefox"}));
  EXPECT_FALSE(isReadFromPrimary({"stellarium", "stellarium"}));
}

TEST(Applications, AWindowWithoutNamesMatchesNothing) {
  EXPECT_FALSE(isReadFromPrimary({}));
  EXPECT_FALSE(isReadFromPrimary({"", ""}));
}

TEST(Applications, ProgramsInWhichKeysDoHarmAndPrimaryMayBeOldAreLeftAlone) {
  EXPECT_TRUE(isUnsupported({"main", "terminology"}));
  EXPECT_TRUE(isUnsupported({"gvim", "Gvim"}));
  EXPECT_FALSE(isUnsupported({"emacs", "Emacs"}));
  EXPECT_FALSE(isUnsupported({}));
}

TEST(Applications, WineGivesItsWindowsTheNameOfTheProgram) {
  EXPECT_TRUE(isWine({"notepad.exe", "notepad.exe"}));
  EXPECT_TRUE(isWine({"SETUP.EXE", "Wine"}));
  EXPECT_FALSE(isWine({"xterm", "XTerm"}));
  EXPECT_FALSE(isWine({".exe", "exe"}));
  EXPECT_FALSE(isWine({}));
}

TEST(Applications, ProgramsInWhichNoKeyCopiesAreReadFromPrimary) {
  EXPECT_TRUE(isReadFromPrimary({"org.pwmt.zathura", "Zathura"}));
  EXPECT_TRUE(isReadFromPrimary({"win", "Xpdf"}));
  EXPECT_FALSE(isReadFromPrimary({"kate", "kate"}));
  EXPECT_FALSE(isReadFromPrimary({"evince", "Evince"}));
  EXPECT_FALSE(isReadFromPrimary({"main", "terminology"}));
}

}  // namespace
}  // namespace seldial::platform::linux_port
