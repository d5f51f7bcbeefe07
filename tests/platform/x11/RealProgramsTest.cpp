// Dialling from real programs: Tk, GTK 3 and a terminal, under a window manager.
#include "tests/platform/x11/X11Test.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/TerminalProgram.h"
#include "tests/support/desktop/Windows.h"

namespace seldial::platform::x11 {
namespace {

using std::chrono::milliseconds;

const std::string kNumber = "+31 20 123 4567";

class RealPrograms : public X11Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kControlAlt));
    // Time for a program to copy on a machine that is busy with other things.
    port.dialOnRelease(milliseconds(1500));
  }

  /// Uses the hot key with its modifiers released in time and with them held, twice in a row each,
  /// because some programs must lose the clipboard before they take it again.
  void expectDials(const std::string& text) {
    for (const std::size_t uses : {1U, 2U}) {
      useHotKey();
      port.waitForDials(uses);
    }
    keyboard.press(kControlAltKeys);
    for (const std::size_t uses : {3U, 4U}) {
      keyboard.tap(kKeyD);
      port.waitForDials(uses);
    }
    keyboard.release(kControlAltKeys);
    EXPECT_EQ(port.dialled(), std::vector<std::optional<std::string>>(4, text));
  }

  const WindowManager manager{server.display()};
  const Windows windows{server.display()};
};

TEST_F(RealPrograms, ATkEntryIsDialledAndKeepsItsText) {
  const TemporaryFile script(
      "pack [entry .e]; .e insert 0 {" + kNumber +
      "}; .e selection range 0 end\n"
      "bind .e <FocusIn> {puts focus; bind .e <FocusIn> {}}; bind .e <F5> {puts [.e get]}\n"
      "fconfigure stdout -buffering line; focus -force .e\n");
  ChildProcess wish({"wish", script.path(), "-name", "editor"}, {server.environment()},
                    "sudo apt-get install tk");
  EXPECT_EQ(wish.readLine(), "focus");
  expectDials(kNumber);
  keyboard.tap(kKeyF5);
  EXPECT_EQ(wish.readLine(), kNumber);
}

TEST_F(RealPrograms, WithNothingSelectedNothingIsFound) {
  const TemporaryFile script("pack [entry .e]; .e insert 0 {" + kNumber +
                             "}\n"
                             "bind .e <FocusIn> {puts focus; bind .e <FocusIn> {}}; fconfigure "
                             "stdout -buffering line; focus -force .e\n");
  ChildProcess wish({"wish", script.path()}, {server.environment()}, "sudo apt-get install tk");
  EXPECT_EQ(wish.readLine(), "focus");
  useHotKey();
  port.waitForDials(1);
  EXPECT_EQ(port.dialled()[0], std::nullopt);
}

TEST_F(RealPrograms, AGtkEntryIsDialledAndKeepsItsText) {
  ChildProcess zenity({"zenity", "--entry", "--entry-text", kNumber},
                      {server.environment(), "GDK_BACKEND=x11", "NO_AT_BRIDGE=1"},
                      "sudo apt-get install zenity");
  ASSERT_NE(windows.waitForFocus("zenity"), 0U);
  expectDials(kNumber);
  keyboard.tap(kKeyReturn);
  EXPECT_EQ(zenity.readLine(), kNumber);
}

TEST_F(RealPrograms, ATerminalsSelectionIsDialledAndNothingReachesTheProgramInside) {
  TerminalProgram inside;
  const ChildProcess xterm({"xterm", "-e", inside.command()[0], inside.command()[1]},
                           {server.environment()}, "sudo apt-get install xterm");
  EXPECT_EQ(inside.readLine(), "shown");
  const auto window = windows.waitForFocus("XTerm");
  windows.click(window, 5, 5, 2);  // on the first character, whatever the font
  windows.waitForOwner("PRIMARY");
  expectDials("4930123");
  windows.click(window, 5, 5, 1);  // clears the selection; xterm keeps PRIMARY
  useHotKey();
  port.waitForDials(5);
  EXPECT_EQ(port.dialled()[4], std::nullopt);
  keyboard.tap(kKeyQ);
  EXPECT_EQ(inside.readLine(), "q");
}

}  // namespace
}  // namespace seldial::platform::x11
