// The real program on a private desktop, with a user's keyboard and another program.
#pragma once

#include <string>
#include <vector>

#include "tests/platform/x11/ForeignGrabs.h"
#include "tests/support/SeldialProcess.h"
#include "tests/support/desktop/Keyboard.h"
#include "tests/support/desktop/Keys.h"
#include "tests/support/desktop/XClient.h"
#include "tests/support/desktop/XServer.h"

namespace seldial::tests {

constexpr int kVirtualKeyD = 2;
constexpr int kVirtualKeyF = 3;
constexpr int kVirtualKeyInsert = 114;
constexpr int kVirtualKeyShift = 56;
constexpr int kVirtualKeyOfMacsOnly = 52;
constexpr unsigned kControlAlt = kStateControl | kStateAlt;

/// A command for that key with Control and Alt.
inline std::string setHotKey(int virtualKey, int delay = 300) {
  return R"({"command":"SetHotKey","modifierCtrl":true,"modifierAlt":true,"virtualkey":)" +
         std::to_string(virtualKey) + R"(,"readdelay":)" + std::to_string(delay) + "}";
}

/// A terminal with selected text, which Seldial reads. An editor would have to copy the text, which
/// may take longer than the delay on a busy machine.
class Terminal {
 public:
  explicit Terminal(const std::string& display, const std::string& text = "+31 20 123 4567")
      : window(display, settings()) {
    window.own("PRIMARY", answersWith(text));
  }

  XClient window;

 private:
  static XClientSettings settings() {
    XClientSettings settings;
    settings.wmClass = "XTerm";
    return settings;
  }
};

class ProgramOnDesktop : public ProgramTest {
 protected:
  /// Presses and releases Ctrl+Alt+D.
  void press() {
    keyboard.press({kKeyLeftControl, kKeyLeftAlt});
    keyboard.tap(kKeyD);
    keyboard.release(std::vector<std::uint8_t>{kKeyLeftControl, kKeyLeftAlt});
  }

  void expectSet(const std::string& command) {
    EXPECT_THAT(answerTo(command).value_or("nothing"), testing::HasSubstr("\"result\":true"));
  }

  /// Expects the next message to be a call with the default selection.
  void expectCall() const {
    EXPECT_THAT(client.nextMessage().value_or("nothing"),
                testing::HasSubstr(R"("number":"+31 20 123 4567")"));
  }

  XServer server;
  Keyboard keyboard{server.display()};
  platform::x11::ForeignGrabs otherProgram{server.display()};
};

}  // namespace seldial::tests
