// The command "seldial-uc check". Main thread only.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "client/Protocol.h"
#include "ucclient/ChildProcess.h"
#include "ucclient/MainThread.h"

namespace seldial {

struct Options;

/// "seldial-uc check": checks everything that dialling with these options needs, and prints the
/// results: the session, the programs, whether the hot key is available, and whether selected text
/// is copied. Starts a seldial and a window for a moment. Returns true if there is no problem.
[[nodiscard]] bool checkEverything(const Options& options);

/// The program name of the compositor that serves the socket `display`, a value of WAYLAND_DISPLAY;
/// the kernel keeps 15 characters of it. Nothing if no compositor answers.
[[nodiscard]] std::optional<std::string> compositorAt(const std::string& display);

/// How Seldial gets its hot key from that compositor and makes applications copy, as text.
[[nodiscard]] std::string mechanismFor(const std::string& compositor);

/// The user's running programs that are known to use hot keys, each with the place where its hot
/// keys are set, such as "openbox (rc.xml)". A display server does not report who holds one. Empty
/// if the system has no /proc.
[[nodiscard]] std::vector<std::string> likelyKeyHolders();

/// Runs a separate seldial to set a hot key and use it once. Main thread only.
class TrialRun {
 public:
  /// `delay` is the read delay in milliseconds. `window` is the program that shows the text to copy
  /// and uses the hot key there, seldial-shortcut; empty: the hot key is only set.
  TrialRun(const HotKey& hotKey, std::uint16_t delay, std::string window)
      : hotKey_(hotKey), delay_(delay), window_(std::move(window)) {}

  /// Runs `program` as seldial and returns its answer. Nothing if there is none; `failure` then
  /// says why, without a full stop. Call it once.
  std::optional<Message> run(const std::string& program, std::string& failure);

  /// What went wrong with the copy, if anything, without a full stop.
  [[nodiscard]] const std::optional<std::string>& copyFailure() const { return copyFailure_; }

 private:
  void wrote(const std::string& line);
  void setHotKey();
  void useHotKey();
  void finish(const std::string& copyFailure);

  const HotKey hotKey_;
  const std::uint16_t delay_;
  const std::string window_;
  const std::shared_ptr<MainThread> mainThread_ = std::make_shared<MainThread>();
  std::unique_ptr<ChildProcess> copying_;
  std::string path_;
  std::string failure_;
  std::optional<Message> answer_;
  std::optional<std::string> copyFailure_;
};

}  // namespace seldial
