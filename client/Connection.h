// Short connections to a running seldial and to a running seldial-uc.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace seldial {

/// Sends a command, or anything else, to the seldial that listens at `path`, over a connection of
/// its own. Takes a few seconds at most. Returns what went wrong, if anything, without a full stop.
[[nodiscard]] std::optional<std::string> sendCommand(const std::string& command,
                                                     const std::string& path);

/// Whether a program listens at `path`.
[[nodiscard]] bool isListening(const std::string& path);

/// The path of the socket on which the user's seldial-uc answers requests: in the directory that
/// XDG_RUNTIME_DIR or TMPDIR names, the first one that nobody else can enter. Empty when there is
/// none.
[[nodiscard]] std::string controlSocketPath();

/// Sends a request to the running seldial-uc and waits for the answer, at most twenty seconds.
/// Nothing when none is running or it does not answer; `error` then says so, without a full stop.
[[nodiscard]] std::optional<std::string> askRunningClient(const std::string& request,
                                                          std::string& error);

/// What askRunningClient() can ask. Each request is one line.
inline constexpr const char* kStatusRequest = "status";  ///< the answer is for people
/// The answer is the usual spelling of the hot key that is set; empty if there is none.
inline constexpr const char* kHotKeyRequest = "hotkey";
/// To read the configuration again. The answer is empty, or says what is wrong, without a full
/// stop; with kReloadNote in front, what does not take effect at once though nothing is wrong.
inline constexpr const char* kReloadRequest = "reload";
inline constexpr const char* kReloadNote = "note: ";

/// The next use of the hot key of the running seldial-uc, which dials nothing then. It ends with
/// the object. Made and destroyed on one thread.
class HotKeyTrial {
 public:
  /// `used` is called once at most, on another thread, which may be after the object is gone. Null
  /// when no seldial-uc is running.
  static std::unique_ptr<HotKeyTrial> start(std::function<void()> used);

  ~HotKeyTrial();
  HotKeyTrial(const HotKeyTrial&) = delete;
  HotKeyTrial& operator=(const HotKeyTrial&) = delete;

 private:
  class Receiver;

  HotKeyTrial() = default;

  std::shared_ptr<Receiver> receiver_;
};

/// The request of a HotKeyTrial. The answer comes when the hot key has been used.
inline constexpr const char* kTrialRequest = "try";

}  // namespace seldial
