// The program on the macOS desktop: its process, its main queue, the clipboard and its ports.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/Application.h"
#include "platform/Clipboard.h"
#include "platform/Ports.h"

namespace seldial::platform::macos {

/// The shared application of AppKit.
class MacApplication final : public platform::Application {
 public:
  explicit MacApplication(std::vector<std::string> arguments);

  [[nodiscard]] const std::vector<std::string>& arguments() const override { return arguments_; }
  void terminate(ApplicationDelegate* sender) override;
  void usleep(std::uint32_t microseconds) override;

 private:
  const std::vector<std::string> arguments_;
};

/// The main queue of Dispatch. The main run loop of the application serves it.
class DispatchMainQueue final : public platform::MainQueue {
 public:
  void async(Task task) override;
  [[nodiscard]] bool isMainThread() const override;
};

/// The general pasteboard, and Command-C posted with Core Graphics. The system silently drops
/// posted events until the user has consented.
class MacClipboard final : public platform::Clipboard {
 public:
  void clear() override;
  [[nodiscard]] bool copySelection() override;
  [[nodiscard]] std::optional<std::string> text() override;
};

/// Lets macOS ask the user for the consent to post keys, unless it has been given; then also writes
/// one line to standard error. Returns at once. Main thread.
void requestConsent();

/// The ports of macOS. `arguments` is the command line, the path of the program first. The first
/// hot key that is registered asks for the consent that copying needs, see requestConsent(). Main
/// thread.
Ports makePorts(std::vector<std::string> arguments);

/// If the process was started through a symbolic link to its executable, replaces it by the same
/// program under its real path: AppKit looks for the bundle beside the path that was started.
/// `argv` is passed on. Returns when there is no such link, or with a line on standard error when
/// the system refuses. Main thread, before anything else.
void restartUnderRealPath(char* const argv[]);

/// Turns posix_port::terminationSignals() into calls. The first signal calls `received` on the main
/// thread, once the main queue is served. If the process has not ended after
/// posix_port::kTerminationPatience, or with a second signal, `mustEnd` is called on a background
/// thread, once, and soon after it the process ends with status 0. Main thread, once.
void onTerminationSignals(std::function<void()> received, std::function<void()> mustEnd);

}  // namespace seldial::platform::macos
