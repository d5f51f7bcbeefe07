#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/Ports.h"

namespace seldial::platform {

/// What the application object tells the program; every call comes on the main thread.
class ApplicationDelegate {
 public:
  virtual ~ApplicationDelegate() = default;
  virtual void applicationWillFinishLaunching() = 0;  ///< first of all
  virtual void applicationDidFinishLaunching() = 0;   ///< the main loop is about to run
  virtual void applicationWillTerminate() = 0;        ///< the last call, after the main loop
};

/// The process as an application of its desktop. Main thread only.
class Application {
 public:
  virtual ~Application() = default;

  /// The command line, the program's own path first.
  [[nodiscard]] virtual const std::vector<std::string>& arguments() const = 0;

  /// Ends the application in the orderly way: the delegate's applicationWillTerminate(), then the
  /// process with status 0. May or may not return to the caller before that.
  virtual void terminate(ApplicationDelegate* sender) = 0;

  /// Blocks the main thread: neither its queue nor a hot key is served meanwhile. What other
  /// programs ask of this one as a citizen of the desktop may still be answered.
  virtual void usleep(std::uint32_t microseconds) = 0;
};

/// Makes the delegate on the ports of this system.
using MakeApplicationDelegate =
    std::function<std::shared_ptr<ApplicationDelegate>(const Ports& ports)>;

/// Sets the process up, makes the delegate, runs the main loop and returns the exit status of the
/// process. Called once, by main().
int applicationMain(int argc, char* const argv[], const MakeApplicationDelegate& makeDelegate);

}  // namespace seldial::platform
