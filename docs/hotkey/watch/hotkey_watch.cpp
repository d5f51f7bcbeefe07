// hotkey_watch: registers Control+Option+D and prints a line each time it is used, until it is
// interrupted (Ctrl-C).
#include <seldial/hotkey/Application.h>
#include <seldial/hotkey/Ports.h>
#include <seldial/hotkey/QKHotKeyCenter.h>
#include <seldial/hotkey/QKKeyStrings.h>
#include <seldial/hotkey/VirtualKeys.h>

#include <iostream>
#include <memory>
#include <string>

namespace {

using namespace seldial;

constexpr std::uint64_t kModifiers = platform::kModifierFlagControl | platform::kModifierFlagOption;

class Watch final : public platform::ApplicationDelegate {
 public:
  explicit Watch(platform::Ports ports) : ports_(std::move(ports)) {}

  [[nodiscard]] bool failed() const { return failed_; }

 private:
  void applicationWillFinishLaunching() override {}

  void applicationDidFinishLaunching() override {
    QKHotKeyCenter::setHotKeyEvents(ports_.connectDesktop().hotKeyEvents);
    const std::string shortcut = QKStringFromKeyCode(platform::kVK_ANSI_D, kModifiers);
    const auto hotKey = QKHotKeyCenter::sharedHotKeyCenter()->registerHotKeyWithKeyCode(
        platform::kVK_ANSI_D, kModifiers, [](const QKKeyEvent&) {
          std::cout << "used\n" << std::flush;
        });
    if (hotKey) {
      std::cout << shortcut << "\n" << std::flush;
      return;
    }
    std::cerr << shortcut << " cannot be registered. Does another program hold it?\n";
    failed_ = true;
    ports_.application->terminate(this);
  }

  void applicationWillTerminate() override {}

  const platform::Ports ports_;
  bool failed_ = false;
};

}  // namespace

int main(int argc, char* argv[]) {
  std::shared_ptr<Watch> watch;
  const auto makeWatch = [&watch](const platform::Ports& ports) {
    return watch = std::make_shared<Watch>(ports);
  };
  const int status = platform::applicationMain(argc, argv, makeWatch);
  return watch->failed() ? 1 : status;
}
