// The application object of the Linux ports.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/Application.h"
#include "platform/Ports.h"
#include "platform/linux/MainLoop.h"

namespace seldial::platform::linux_port {

/// Runs the delegate on the main loop until it is told to terminate, by terminate() or by one of
/// the posix_port::terminationSignals(), which setUpProcess() has blocked.
class LinuxApplication final : public platform::Application {
 public:
  /// `loop` must outlive the application.
  LinuxApplication(std::vector<std::string> arguments, MainLoop& loop);

  [[nodiscard]] const std::vector<std::string>& arguments() const override { return arguments_; }
  void terminate(ApplicationDelegate* sender) override;
  void usleep(std::uint32_t microseconds) override;

  /// Ends run() in the orderly way; the process's exit status will be `status`.
  void terminateWithStatus(int status);

  /// The whole life of the application. Returns the exit status.
  int run(ApplicationDelegate& delegate);

 private:
  const std::vector<std::string> arguments_;
  MainLoop& loop_;
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

}  // namespace seldial::platform::linux_port
