// hotkey_watch_user DIRECTORY: uses the hot key of the hotkey_watch in DIRECTORY on a private
// desktop.
#include <csignal>
#include <string>

#include "tests/hotkey_package/ExampleMain.h"
#include "tests/support/desktop/Keyboard.h"
#include "tests/support/desktop/Keys.h"
#include "tests/support/desktop/XServer.h"

namespace seldial::tests {
namespace {

void useHotKey(Keyboard& keyboard) {
  keyboard.press({kKeyLeftControl, kKeyLeftAlt, kKeyD});
  keyboard.release({kKeyD, kKeyLeftAlt, kKeyLeftControl});
}

void useExample(const std::string& program) {
  const XServer server;
  Keyboard keyboard(server.display());
  ChildProcess watch({program}, {server.environment()});
  expect(watch.readLine() == "⌃⌥d", "another shortcut is shown");
  for (int use = 0; use < 3; ++use) {
    useHotKey(keyboard);
    expect(watch.readLine() == "used", "another line is printed");
  }
  expect(server.run({program}) == 1, "the second one does not see that the first holds it");
  watch.signal(SIGTERM);
  expect(watch.wait() == 0, "it does not end well");
  expect(ChildProcess({program}, {"DISPLAY="}).wait() == 1, "it works without a desktop");
}

}  // namespace
}  // namespace seldial::tests

int main(int argc, char* argv[]) {
  return seldial::tests::exampleMain(argc, argv, "hotkey_watch", seldial::tests::useExample);
}
