// The ports that a program receives when it starts: its interface to the system and the desktop.
#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace seldial::platform {

class Application;
class Clipboard;
class HotKeyEvents;

/// Runs tasks on the main thread, one at a time, in the order in which they were posted.
class MainQueue {
 public:
  /// What the queue runs.
  using Task = std::function<void()>;

  virtual ~MainQueue() = default;

  /// Posts `task` and returns at once. Tasks that are still waiting when the application ends never
  /// run. Any thread.
  virtual void async(Task task) = 0;

  /// Posts `task` to run before the next task of async(), however long that takes: it need not wake
  /// up the main thread. Any thread.
  virtual void asyncBeforeNext(Task task) { async(std::move(task)); }

  /// Whether the calling thread is the main thread. Any thread.
  [[nodiscard]] virtual bool isMainThread() const = 0;
};

/// What a desktop provides to a program without windows.
struct DesktopPorts {
  std::shared_ptr<HotKeyEvents> hotKeyEvents;  ///< for QKHotKeyCenter::setHotKeyEvents()
  std::shared_ptr<Clipboard>
      clipboard;  ///< null in programs of the hot key library, which has none
  /// Removes what the desktop would otherwise keep. Called at the end of the program.
  std::function<void()> disconnect = [] {};
};

/// Copies are cheap and refer to the same ports.
struct Ports {
  std::shared_ptr<Application> application;  ///< the command line, and termination
  std::shared_ptr<MainQueue> mainQueue;      ///< runs tasks on the main thread
  /// Connects to the desktop; blocks until its display server has answered, so a program that only
  /// prints and ends does not call it. Without a desktop the ports refuse everything. Main thread,
  /// once.
  std::function<DesktopPorts()> connectDesktop;
};

}  // namespace seldial::platform
