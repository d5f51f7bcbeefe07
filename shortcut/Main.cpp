#include <QApplication>
#include <cstdio>
#include <string>
#include <vector>

#include "client/Connection.h"
#include "hotkey/QKHotKeyCenter.h"
#include "platform/qt/Desktop.h"
#include "platform/x11/copy/Clipboard.h"
#include "shortcut/Options.h"
#include "shortcut/ShortcutWindow.h"

namespace seldial {
namespace {

/// Prints the command as one line. Returns what went wrong, if anything.
std::optional<std::string> printCommand(const std::string& command) {
  const bool printed = std::puts(command.c_str()) >= 0 && std::fflush(stdout) == 0;
  if (printed) return std::nullopt;
  return "Standard output cannot be written.";
}

ShortcutWindow::Deliver deliveryFor(const ShortcutOptions& options) {
  if (options.socket.empty()) return printCommand;
  return [path = options.socket](const std::string& command) -> std::optional<std::string> {
    const auto failure = sendCommand(command, path);
    if (!failure) return {};
    return "Is Seldial running? " + *failure + ".";
  };
}

int runWindow(platform::qt::Desktop& desktop, const ShortcutOptions& options) {
  ShortcutWindow window(desktop.keyboard(), deliveryFor(options),
                        options.socket.empty() ? QStringLiteral("&Use this shortcut")
                                               : QStringLiteral("&Send to Seldial"));
  window.begin(options.hotKey, options.delay);
  QObject::connect(&window, &QDialog::finished, &window,
                   [](int result) { QCoreApplication::exit(result == QDialog::Accepted ? 0 : 1); });
  window.show();
  return QCoreApplication::exec();
}

int run(int argc, char* argv[], const ShortcutOptions& options) {
  const auto desktop = platform::qt::Desktop::connect([] { std::exit(1); });
  if (!desktop) {
    std::fputs("seldial-shortcut: there is no X11 desktop\n", stderr);
    return 1;
  }
  QKHotKeyCenter::setHotKeyEvents(desktop->hotKeyEvents());
  platform::x11::reserveCopyKeystroke(*desktop->session());
  // Shortcuts are recorded through X11, also on a desktop that offers Wayland too.
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "xcb");
  int ownPath = argc > 0 ? 1 : 0;  // Qt must not read the options
  const QApplication application(ownPath, argv);
  const auto served = desktop->serve();
  return runWindow(*desktop, options);
}

}  // namespace
}  // namespace seldial

int main(int argc, char* argv[]) {
  std::string error;
  const auto options =
      seldial::shortcutOptionsFrom(std::vector<std::string>(argv + 1, argv + argc), error);
  if (!options) {
    std::fprintf(stderr, "seldial-shortcut: %s\nTry seldial-shortcut --help.\n", error.c_str());
    return 2;
  }
  if (options->help) {
    std::fputs(seldial::shortcutHelpText(), stdout);
    return 0;
  }
  return seldial::run(argc, argv, *options);
}
