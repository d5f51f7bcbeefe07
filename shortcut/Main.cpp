#include <QApplication>
#include <QLocale>
#include <QTimer>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "client/Configuration.h"
#include "client/Connection.h"
#include "client/Options.h"
#include "hotkey/QKHotKeyCenter.h"
#include "platform/VirtualKeys.h"
#include "platform/qt/Desktop.h"
#include "platform/x11/Desktop.h"
#include "shortcut/CopyTest.h"
#include "shortcut/Options.h"
#include "shortcut/Resources.h"
#include "shortcut/Settings.h"
#include "shortcut/Shortcut.h"
#include "shortcut/ShortcutWindow.h"

namespace seldial {
namespace {

// The defaults of seldial-uc.
constexpr const char* kDefaultHotKey = "ctrl+alt+d";
constexpr std::uint16_t kDefaultDelay = 500;

/// Longer than any copy takes on a busy machine.
constexpr std::chrono::seconds kTestLimit{10};

struct Texts {
  Q_DECLARE_TR_FUNCTIONS(Delivery)
};

/// Prints the command as one line. Returns the error, if any.
std::optional<std::string> printCommand(const std::string& command) {
  const bool printed = std::puts(command.c_str()) >= 0 && std::fflush(stdout) == 0;
  if (printed) return std::nullopt;
  return Texts::tr("Standard output cannot be written.").toStdString();
}

std::optional<std::string> sendToSeldial(const std::string& command,
                                         const ShortcutOptions& options) {
  const auto failure = options.client.empty()
                           ? sendCommand(command, options.socket)
                           : sendAndAwaitAnswer(command, options.socket, options.client);
  if (failure) std::fprintf(stderr, "seldial-shortcut: %s\n", failure->c_str());
  return failure ? std::optional(*failure + ".") : std::nullopt;
}

ShortcutWindow::Deliver deliveryFor(const ShortcutOptions& options) {
  return [&options](const HotKey& hotKey, std::uint16_t delay) {
    const std::string command = setHotKeyCommand(hotKey, delay);
    return options.socket.empty() ? printCommand(command) : sendToSeldial(command, options);
  };
}

/// Whether the user's running seldial-uc has set that hot key.
bool isSeldialHotKey(const HotKey& hotKey) {
  std::string ignored;
  return askRunningClient(kHotKeyRequest, ignored) == hotKeySpelling(hotKey);
}

int show(ShortcutWindow& window, const ShortcutOptions& options) {
  window.setSeldialHotKey({isSeldialHotKey, [](std::function<void()> used) {
                             return HotKeyTrial::start(std::move(used));
                           }});
  if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) window.setOnWayland();
  window.begin(options.hotKey, options.delay.value_or(kDefaultDelay));
  QObject::connect(&window, &QDialog::finished, &window,
                   [](int result) { QCoreApplication::exit(result == QDialog::Accepted ? 0 : 1); });
  window.show();
  return QCoreApplication::exec();
}

int showShortcut(platform::qt::Desktop& desktop, const ShortcutOptions& options) {
  ShortcutWindow window(
      desktop.keyboard(), deliveryFor(options),
      options.socket.empty() ? Texts::tr("&Use this shortcut") : Texts::tr("&Send to Seldial"));
  return show(window, options);
}

int showSettings(platform::qt::Desktop& desktop, const ShortcutOptions& options,
                 const std::vector<Setting>& settings) {
  auto* const panel = new SettingsPanel;
  panel->begin(settings, startsAtLogin());
  ShortcutWindow window(
      desktop.keyboard(),
      [&](const HotKey& hotKey, std::uint16_t delay) -> std::optional<std::string> {
        auto values = shortcutSettings(hotKey, delay);
        if (!values) {
          return Texts::tr("This key has no name, so the shortcut cannot be saved.").toStdString();
        }
        values->merge(panel->values());
        return applySettings(options.configuration, *values, panel->startsAtLogin());
      },
      Texts::tr("Sa&ve"), panel);
  return show(window, options);
}

/// Types the hot key in a window with selected text. The caller ends this program when it has the
/// result.
int testCopy(platform::qt::Desktop& desktop, const ShortcutOptions& options) {
  const auto type = [&desktop](const HotKey& hotKey) {
    const bool typed =
        platform::x11::typeHotKey(*desktop.hotKeyEvents(), hotKey.virtualKey, hotKey.modifierFlags);
    if (!typed) QCoreApplication::exit(1);
  };
  CopyTestWindow window(
      options.testCopy,
      [type] {
        type({platform::kVK_Shift, 0});
      },
      [&] { type(*options.hotKey); });
  QTimer limit;
  QObject::connect(&limit, &QTimer::timeout, [] { QCoreApplication::exit(1); });
  limit.start(kTestLimit);
  QObject::connect(&window, &QDialog::finished, [] { QCoreApplication::exit(1); });
  window.show();
  return QCoreApplication::exec();
}

/// Sets the options that the command line does not give from the configuration file. False if the
/// file is invalid.
bool addConfiguration(ShortcutOptions& options, const std::vector<Setting>& settings,
                      std::string& error) {
  for (const Setting& setting : settings) {
    if (setting.name == "hotkey" && !options.hotKey) {
      options.hotKey = hotKeyFromSpelling(setting.value, error);
      if (!options.hotKey) return false;
    }
    if (setting.name == "delay" && !options.delay) options.delay = parseDelay(setting.value);
  }
  if (!options.hotKey) options.hotKey = hotKeyFromSpelling(kDefaultHotKey, error);
  return true;
}

const char* noDesktopMessage() {
  if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
    return "seldial-shortcut: there is no X11 desktop\n";
  }
  return "seldial-shortcut: there is no X11 desktop; on Wayland this window needs Xwayland, and "
         "seldial-uc takes a shortcut by --hotkey or from its configuration file\n";
}

int run(int argc, char* argv[], const ShortcutOptions& options,
        const std::vector<Setting>& settings) {
  const auto desktop = platform::qt::Desktop::connect([] { std::exit(1); });
  if (!desktop) {
    std::fputs(noDesktopMessage(), stderr);
    return 1;
  }
  QKHotKeyCenter::setHotKeyEvents(desktop->hotKeyEvents());
  platform::x11::reserveCopyKeystroke(*desktop->hotKeyEvents());
  // Shortcuts are recorded through X11, even in a Wayland session.
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "xcb");
  int ownPath = argc > 0 ? 1 : 0;  // Qt must not read the options
  const QApplication application(ownPath, argv);
  const auto served = desktop->serve();
  const auto translators = translateInto(QLocale::system().uiLanguages());
  QApplication::setWindowIcon(windowIcon());
  if (!options.testCopy.empty()) return testCopy(*desktop, options);
  return options.settings ? showSettings(*desktop, options, settings)
                          : showShortcut(*desktop, options);
}

}  // namespace
}  // namespace seldial

int main(int argc, char* argv[]) {
  std::string error;
  auto options =
      seldial::readShortcutOptions(std::vector<std::string>(argv + 1, argv + argc), error);
  if (!options) {
    std::fprintf(stderr, "seldial-shortcut: %s\nTry seldial-shortcut --help.\n", error.c_str());
    return 2;
  }
  if (options->help) {
    std::fputs(seldial::shortcutHelpText(), stdout);
    return 0;
  }
  if (options->version) {
    std::puts("seldial-shortcut " SELDIAL_VERSION);
    return 0;
  }
  if (options->configuration.empty()) options->configuration = seldial::defaultConfigurationPath();
  std::optional<std::vector<seldial::Setting>> settings{std::in_place};
  if (options->settings) settings = seldial::readConfiguration(options->configuration, error);
  if (!settings || (options->settings && !seldial::addConfiguration(*options, *settings, error))) {
    std::fprintf(stderr, "seldial-shortcut: %s\n", error.c_str());
    return 2;
  }
  return seldial::run(argc, argv, *options, *settings);
}
