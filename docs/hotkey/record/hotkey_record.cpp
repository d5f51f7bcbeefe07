// hotkey_record: a window with a field in which a hot key is recorded. When the recording ends, it
// registers the hot key and prints it, then a line each time it is used, until the window is
// closed.
#include <seldial/hotkey/QKHotKeyCenter.h>
#include <seldial/hotkey/QKKeyStrings.h>
#include <seldial/hotkey/VirtualKeys.h>
#include <seldial/hotkey/qt/Desktop.h>
#include <seldial/hotkey/qt/QKHotKeyTextField.h>

#include <QApplication>
#include <cstdlib>
#include <iostream>

namespace {

using namespace seldial;

constexpr std::uint64_t kModifiers = platform::kModifierFlagControl | platform::kModifierFlagOption;

void registerHotKey(const std::shared_ptr<QKHotKey>& hotKey) {
  const bool taken = QKHotKeyCenter::sharedHotKeyCenter()->registerHotKey(hotKey) != nullptr;
  std::cout << QKStringFromKeyCode(hotKey->keyCode(), hotKey->modifierFlags())
            << (taken ? "" : " cannot be registered") << "\n"
            << std::flush;
}

void recordingChanged(const QKHotKeyTextField& field, bool isRecording) {
  if (!isRecording) return registerHotKey(field.hotKey());
  QKHotKeyCenter::sharedHotKeyCenter()->unregisterAllHotKeys();
  std::cout << "recording\n" << std::flush;
}

}  // namespace

int main(int argc, char* argv[]) {
  const auto desktop = platform::qt::Desktop::connect([] { std::exit(1); });
  if (!desktop) {
    std::cerr << "There is no X11 desktop.\n";
    return 1;
  }
  QKHotKeyCenter::setHotKeyEvents(desktop->hotKeyEvents());
  const QApplication application(argc, argv);
  const auto served = desktop->serve();

  QKHotKeyTextField field(desktop->keyboard());
  // Every recorded hot key gets the task of this one.
  field.setHotKey(
      QKHotKey::hotKeyWithKeyCode(platform::kVK_ANSI_D, kModifiers, [](const QKKeyEvent&) {
        std::cout << "used\n" << std::flush;
      }));
  QObject::connect(&field, &QKHotKeyTextField::editingChanged,
                   [&field](bool isRecording) { recordingChanged(field, isRecording); });
  field.show();
  return QApplication::exec();
}
