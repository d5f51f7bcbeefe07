// The application object of the Linux ports.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/Application.h"
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

}  // namespace seldial::platform::linux_port
