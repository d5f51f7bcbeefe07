// Copying under GNOME.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Clipboard.h"
#include "platform/wayland/MutterRemote.h"

namespace seldial::platform::wayland {

/// The names of the user's running programs.
[[nodiscard]] std::vector<std::string> runningPrograms();

/// GNOME does not report which window has the focus, so any running program may have it. While a
/// terminal runs that treats Ctrl+Insert as input, the copy keystroke is the Copy key, which is
/// harmless everywhere but supported by fewer applications. While a program runs in which every
/// keystroke does harm, nothing is typed. Main thread only.
class GnomeClipboard final : public Clipboard {
 public:
  /// `remote` must outlive this object; its session ends with text().
  GnomeClipboard(MutterRemote& remote, std::function<std::vector<std::string>()> runningPrograms)
      : remote_(remote), runningPrograms_(std::move(runningPrograms)) {}

  void clear() override;
  [[nodiscard]] bool copySelection() override;
  [[nodiscard]] std::optional<std::string> text() override;

 private:
  using Clock = std::chrono::steady_clock;

  bool type();
  std::optional<std::string> copyAgain();
  void reportOnce(const std::string& line);

  MutterRemote& remote_;
  const std::function<std::vector<std::string>()> runningPrograms_;
  std::vector<std::string> programs_;  ///< during the last copy
  bool taken_ = false;
  bool byCopyKey_ = false;                  ///< the copy keystroke is the Copy key
  std::optional<Clock::time_point> typed_;  ///< nothing if nothing was typed
  std::string lastReport_;                  ///< the last line on standard error
};

}  // namespace seldial::platform::wayland
