// Dialling from a terminal: its selection is read, and nothing is typed into it.
#include "tests/platform/x11/DialTest.h"
#include "tests/support/TemporaryDirectory.h"

namespace seldial::platform::x11 {
namespace {

class Terminal : public DialTest {
 protected:
  static XClientSettings terminal(bool focusOnChild = false) {
    XClientSettings settings;
    settings.wmInstance = "xterm";
    settings.wmClass = "XTerm";
    settings.focusOnChild = focusOnChild;
    return settings;
  }

  void expectNothingTyped(const XClient& client) {
    keyboard.tap(kKeyF5);
    client.waitForRelease(kKeyF5);
    EXPECT_EQ(typedInto(client), (Typed{{kKeyF5, 0}}));
  }
};

TEST_F(Terminal, ItsOwnSelectionIsReadAndNothingTyped) {
  XClient client(server.display(), terminal());
  client.own("PRIMARY", answersWith("+49 30 1"));
  client.own("CLIPBOARD", answersWith("old"));
  useHotKey();
  port.waitForDials(1);
  EXPECT_EQ(port.dialled()[0], "+49 30 1");
  expectNothingTyped(client);
}

TEST_F(Terminal, IsRecognisedByTheWindowAroundTheFocus) {
  XClient client(server.display(), terminal(true));
  client.own("PRIMARY", answersWith("+49 30 1"));
  useHotKey();
  port.waitForDials(1);
  EXPECT_EQ(port.dialled()[0], "+49 30 1");
  expectNothingTyped(client);
}

TEST_F(Terminal, IsRecognisedUnderThePointerIfNoWindowHasTheFocus) {
  XClient client(server.display(), terminal());
  client.own("PRIMARY", answersWith("+49 30 1"));
  keyboard.movePointer(10, 10);
  keyboard.focusFollowsPointer();
  useHotKey();
  port.waitForDials(1);
  EXPECT_EQ(port.dialled()[0], "+49 30 1");
  expectNothingTyped(client);
}

TEST_F(Terminal, AlacrittyGetsTheCopyKeyAndItsOldSelectionIsNotRead) {
  auto settings = terminal();
  settings.wmClass = "Alacritty";
  settings.copyKey = true;
  XClient client(server.display(), settings);
  client.own("PRIMARY", answersWith("old"));
  port.whenBlocking([&] { client.waitForRelease(kKeyCopy); });
  useHotKey();
  expectDial(1);
  EXPECT_EQ(typedInto(client), (Typed{{kKeyCopy, 0}}));
}

TEST_F(Terminal, AlacrittyIsReadFromPrimaryIfThereIsNoCopyKey) {
  ASSERT_TRUE(port.call([&] { return port.clipboard().copySelection(); }));
  keyboard.remap(kKeyCopy, 0);
  port.settle();
  port.settle();
  auto settings = terminal();
  settings.wmClass = "Alacritty";
  XClient client(server.display(), settings);
  client.own("PRIMARY", answersWith(kNumber));
  useHotKey();
  expectDial(1);
  expectNothingTyped(client);
}

TEST_F(Terminal, OneWithAPossiblyOldSelectionIsLeftAlone) {
  auto settings = terminal();
  settings.wmClass = "terminology";
  settings.wmInstance = "main";
  XClient client(server.display(), settings);
  client.own("PRIMARY", answersWith("+49 30 1"));
  useHotKey();
  port.waitForDials(1);
  EXPECT_EQ(port.dialled()[0], std::nullopt);
  expectNothingTyped(client);
}

TEST_F(Terminal, TheSelectionOfAnotherProgramIsNotRead) {
  const TemporaryFile script(
      "selection handle -selection PRIMARY . {apply {{offset most} {return other}}}\n"
      "selection own -selection PRIMARY .; puts owned; flush stdout\n");
  ChildProcess other({"wish", script.path()}, {server.environment()}, "sudo apt-get install tk");
  EXPECT_EQ(other.readLine(), "owned");
  const XClient client(server.display(), terminal());
  useHotKey();
  port.waitForDials(1);
  EXPECT_EQ(port.dialled()[0], std::nullopt);
  expectNothingTyped(client);
}

TEST_F(Terminal, ASelectionThroughAnotherConnectionOfTheSameProcessIsRead) {
  XClient connection(server.display());
  connection.own("PRIMARY", answersWith("+49 30 1"));
  const XClient client(server.display(), terminal());
  useHotKey();
  port.waitForDials(1);
  EXPECT_EQ(port.dialled()[0], "+49 30 1");
}

TEST_F(Terminal, OnAnotherMachineTheConnectionCountsNotTheForwardingProcess) {
  XClient other(server.display());
  other.own("PRIMARY", answersWith("other"));
  auto settings = terminal();
  settings.machine = "elsewhere";
  XClient client(server.display(), settings);
  useHotKey();
  port.waitForDials(1);
  EXPECT_EQ(port.dialled()[0], std::nullopt);
  client.own("PRIMARY", answersWith("+49 30 1"));
  useHotKey();
  port.waitForDials(2);
  EXPECT_EQ(port.dialled()[1], "+49 30 1");
}

TEST_F(Terminal, WithNothingSelectedNothingIsFound) {
  const XClient client(server.display(), terminal());
  useHotKey();
  port.waitForDials(1);
  EXPECT_EQ(port.dialled()[0], std::nullopt);
  expectNothingTyped(client);
}

TEST_F(Terminal, TheNextWindowIsReadAsUsual) {
  XClient client(server.display(), terminal());
  client.own("PRIMARY", answersWith("+49 30 1"));
  useHotKey();
  port.waitForDials(1);
  const XClient editor(server.display());
  useHotKey();
  expectDial(2);
}

}  // namespace
}  // namespace seldial::platform::x11
