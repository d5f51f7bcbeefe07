// hotkey_record_user DIRECTORY: records a hot key in the window of the hotkey_record in DIRECTORY,
// on a private desktop, and uses it.
#include <csignal>
#include <string>

#include "tests/hotkey_package/ExampleMain.h"
#include "tests/support/desktop/Keyboard.h"
#include "tests/support/desktop/Keys.h"
#include "tests/support/desktop/Windows.h"
#include "tests/support/desktop/XServer.h"

namespace seldial::tests {
namespace {

void press(Keyboard& keyboard) {
  keyboard.press({kKeyLeftControl, kKeyLeftAlt, kKeyK});
  keyboard.release({kKeyK, kKeyLeftAlt, kKeyLeftControl});
}

void useExample(const std::string& program) {
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
}  // namespace seldial::tests

int main(int argc, char* argv[]) {
  return seldial::tests::exampleMain(argc, argv, "hotkey_record", seldial::tests::useExample);
}
