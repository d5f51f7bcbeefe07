// hotkey_record_user DIRECTORY: records a hot key in the window of the hotkey_record there, on a
// desktop of its own, and uses it.
#include <csignal>
#include <string>

#include "tests/desktop/Keyboard.h"
#include "tests/desktop/Keys.h"
#include "tests/desktop/Windows.h"
#include "tests/desktop/XServer.h"
#include "tests/hotkey_package/TryOut.h"

namespace seldial::desktop {
namespace {

void press(Keyboard& keyboard) {
  keyboard.press({kKeyLeftControl, kKeyLeftAlt, kKeyK});
  keyboard.release({kKeyK, kKeyLeftAlt, kKeyLeftControl});
}

void tryOut(const std::string& program) {
  const XServer server;
  const WindowManager manager(server.display());
  Keyboard keyboard(server.display());
  ChildProcess record({program}, {server.environment(), "QT_QPA_PLATFORM=xcb"});
  expect(record.readLine() == "recording", "the field is not ready to record");
  press(keyboard);
  keyboard.tap(kKeyReturn);
  expect(record.readLine() == "⌃⌥k", "another hot key is taken");
  for (int use = 0; use < 3; ++use) {
    press(keyboard);
    expect(record.readLine() == "used", "another line is printed");
  }
  expect(ChildProcess({program}, {"DISPLAY="}).wait() == 1, "it works without a desktop");
}

}  // namespace
}  // namespace seldial::desktop

int main(int argc, char* argv[]) {
  return seldial::desktop::tryOutIn(argc, argv, "hotkey_record", seldial::desktop::tryOut);
}
