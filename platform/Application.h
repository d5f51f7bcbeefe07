#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/Ports.h"

namespace seldial::platform {

/// Receives the application's life-cycle events, on the main thread except where noted.
class ApplicationDelegate {
 public:
  virtual ~ApplicationDelegate() = default;
  virtual void applicationWillFinishLaunching() = 0;  ///< the first call
  virtual void applicationDidFinishLaunching() = 0;   ///< the main loop is about to run
  virtual void applicationWillTerminate() = 0;        ///< the last call, after the main loop

  /// The application must end, but the main thread is still busy. Interrupts what the main thread
  /// waits for, and removes files that must not be left behind. The process ends soon afterwards,
  /// perhaps without a call to applicationWillTerminate(). Called at most once, on another thread,
  /// possibly during the calls above.
  virtual void applicationMustEnd() {}
};

/// The process as an application of the desktop. Main thread only.
class Application {
 public:
  virtual ~Application() = default;

  /// The command line; the first entry is the path of the program.
  [[nodiscard]] virtual const std::vector<std::string>& arguments() const = 0;

  /// Ends the application: calls the delegate's applicationWillTerminate(), then ends the process
  /// with status 0. May return before that.
  virtual void terminate(ApplicationDelegate* sender) = 0;

  /// Blocks the main thread: neither the main queue nor hot keys are served. Requests of other
  /// programs that the desktop port answers by itself may still be answered.
  virtual void usleep(std::uint32_t microseconds) = 0;
};

/// Creates the delegate from the ports of this system.
using MakeApplicationDelegate =
    std::function<std::shared_ptr<ApplicationDelegate>(const Ports& ports)>;

/// Sets up the process, creates the delegate, runs the main loop and returns the exit status of the
/// process. Called once, by main().
int applicationMain(int argc, char* const argv[], const MakeApplicationDelegate& makeDelegate);

}  // namespace seldial::platform
