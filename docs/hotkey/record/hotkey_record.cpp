// hotkey_record: a field to record a hot key in. Tells which one it takes from the desktop once the
// recording has ended, and of each use, until its window is closed.
#include <hotkey/QKHotKeyCenter.h>
#include <hotkey/QKKeyStrings.h>
#include <hotkey/qt/QKHotKeyTextField.h>
#include <platform/VirtualKeys.h>
#include <platform/qt/Desktop.h>

#include <QApplication>
#include <cstdlib>
#include <iostream>

namespace {

using namespace seldial;

constexpr std::uint16_t kKeyD = 2;  // a virtual key code: the place of the key, whatever it says
constexpr std::uint64_t kModifiers = platform::kModifierFlagControl | platform::kModifierFlagOption;

void takeFromDesktop(const std::shared_ptr<QKHotKey>& hotKey) {
  const bool taken = QKHotKeyCenter::sharedHotKeyCenter()->registerHotKey(hotKey) != nullptr;
  std::cout << QKStringFromKeyCode(hotKey->keyCode(), hotKey->modifierFlags())
            << (taken ? "" : " cannot be had") << std::endl;
}

void recordingChanged(const QKHotKeyTextField& field, bool isRecording) {
  if (!isRecording) return takeFromDesktop(field.hotKey());
  QKHotKeyCenter::sharedHotKeyCenter()->unregisterAllHotKeys();
  std::cout << "recording" << std::endl;
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

  QKHotKeyTextField field;
  // Every hot key that is recorded does what the one before did.
  field.setHotKey(QKHotKey::hotKeyWithKeyCode(
      kKeyD, kModifiers, [](const QKKeyEvent&) { std::cout << "used" << std::endl; }));
  QObject::connect(&field, &QKHotKeyTextField::editingChanged,
                   [&field](bool isRecording) { recordingChanged(field, isRecording); });
  field.show();
  return QApplication::exec();
}
