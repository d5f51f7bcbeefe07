// Dialling from a terminal: its selection is read, and nothing is typed into it.
#include "tests/platform/x11/DialTest.h"

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

TEST_F(Terminal, IsRecognisedUnderThePointerWhereNoWindowHasTheFocus) {
  XClient client(server.display(), terminal());
  client.own("PRIMARY", answersWith("+49 30 1"));
  keyboard.movePointer(10, 10);
  keyboard.focusFollowsPointer();
  useHotKey();
  port.waitForDials(1);
  EXPECT_EQ(port.dialled()[0], "+49 30 1");
  expectNothingTyped(client);
}

TEST_F(Terminal, TheSelectionOfAnotherProgramIsNotRead) {
  XClient other(server.display());
  other.own("PRIMARY", answersWith("other"));
  const XClient client(server.display(), terminal());
  useHotKey();
  port.waitForDials(1);
  EXPECT_EQ(port.dialled()[0], std::nullopt);
  expectNothingTyped(client);
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
