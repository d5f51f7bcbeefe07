// The application object on Linux, its termination, and the ports of a process without a display
// server.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/Application.h"
#include "platform/Ports.h"
#include "platform/linux/MainLoop.h"

namespace seldial::platform::linux_port {

/// Runs the delegate on the main loop until terminate() is called or a signal ends it.
class LinuxApplication final : public platform::Application {
 public:
  LinuxApplication(std::vector<std::string> arguments, std::shared_ptr<MainLoop> loop);

  [[nodiscard]] const std::vector<std::string>& arguments() const override { return arguments_; }
  void terminate(ApplicationDelegate* sender) override;
  void usleep(std::uint32_t microseconds) override;

  /// Like terminate(), with another exit status.
  void terminateWithStatus(int status);

  /// Runs the application to its end, calls `disconnect` and releases the delegate. Returns the
  /// exit status. One of posix_port::terminationSignals(), which must be blocked in every thread,
  /// ends it whatever the main thread is doing:
  ///
  /// - The first signal ends the main loop after the tasks that were posted before it.
  /// - A second later, or with a second signal, what the main thread waits for is interrupted: see
  ///   MainLoop::interrupt() and ApplicationDelegate::applicationMustEnd().
  /// - Half a second after that, or with a third signal, the process ends with status 0. With a
  ///   second signal it ends at once, unless MainLoop::mayEnd() is false.
  ///
  /// Throws std::system_error when the system has no descriptor left.
  int run(
      std::shared_ptr<ApplicationDelegate> delegate,
      const std::function<void()>& disconnect = [] {});

 private:
  const std::vector<std::string> arguments_;
  const std::shared_ptr<MainLoop> loop_;
  int status_ = 0;
};

/// Connects to a display server that `loop` then serves; never fails (see Ports::connectDesktop).
/// `connectionLost` is called once, from the loop, when the server goes away.
using ConnectDesktop = std::function<DesktopPorts(const std::shared_ptr<MainLoop>& loop,
                                                  std::function<void()> connectionLost)>;

/// applicationMain() with a desktop of the caller's choice. The exit status is 1 when the
/// connection to the desktop is lost.
int runApplication(int argc, char* const argv[], const MakeApplicationDelegate& makeDelegate,
                   const ConnectDesktop& connect);

/// The ports of a process without a display server: an empty clipboard to which nothing can be
/// copied, and hot keys that are all refused.
DesktopPorts noDesktop();

}  // namespace seldial::platform::linux_port
