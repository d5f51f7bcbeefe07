// The macOS desktop: the process, the main queue, the clipboard and the ports.
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

/// The main queue of Dispatch, which the application's main run loop serves.
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

/// If the user has not consented to posting keys, lets macOS ask for the consent and writes one
/// line to standard error. Returns at once. Main thread.
void requestConsent();

/// The ports of macOS. `arguments` is the command line, the path of the program first. When the
/// first hot key is registered, requestConsent() is called. Main thread.
Ports makePorts(std::vector<std::string> arguments);

/// If the process was started through a symbolic link to its executable, restarts it under its real
/// path: AppKit looks for the bundle next to the path that was started. `argv` is passed on.
/// Returns if there is no such link, or with a line on standard error if the system refuses. Main
/// thread, before anything else.
void restartUnderRealPath(char* const argv[]);

/// Handles posix_port::terminationSignals(). The first signal calls `received` on the main thread,
/// once the main queue is served. If the process has not ended after
/// posix_port::kTerminationTimeout, or on a second signal, `mustEnd` is called once, on a
/// background thread. Then the process ends with status 0: after posix_port::kTerminationGrace, or
/// at once on a second signal. Main thread, once.
void onTerminationSignals(std::function<void()> received, std::function<void()> mustEnd);

}  // namespace seldial::platform::macos
