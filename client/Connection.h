// Short connections to a running seldial and to a running seldial-uc.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace seldial {

/// Sends a command, or any other text, to the seldial that listens at `path`, over a new
/// connection. Takes at most three seconds. Returns the error, if any, without a full stop.
[[nodiscard]] std::optional<std::string> sendCommand(const std::string& command,
                                                     const std::string& path);

/// Whether a program listens at `path`.
[[nodiscard]] bool isListening(const std::string& path);

/// The path of the socket on which the user's seldial-uc answers requests. It is in the first of
/// XDG_RUNTIME_DIR and TMPDIR that only the user can access; empty if there is none.
[[nodiscard]] std::string controlSocketPath();

/// Sends a request to the running seldial-uc and waits for the answer, at most twenty seconds.
/// Nothing if none is running or it does not answer; `error` then says so, without a full stop.
[[nodiscard]] std::optional<std::string> askRunningClient(const std::string& request,
                                                          std::string& error);

/// The requests for askRunningClient(). Each is one line.
inline constexpr const char* kStatusRequest = "status";  ///< the answer is for people
/// The answer is the usual spelling of the current hot key; empty if there is none.
inline constexpr const char* kHotKeyRequest = "hotkey";
/// Asks to reload the configuration. The answer is empty, or an error without a full stop. With
/// kReloadNote in front it is no error, but says what does not take effect at once.
inline constexpr const char* kReloadRequest = "reload";
inline constexpr const char* kReloadNote = "note: ";

/// Waits for the next use of the hot key of the running seldial-uc, which then dials nothing.
/// Destroying the object cancels it. Create and destroy it on one thread.
class HotKeyTrial {
 public:
  /// `used` is called at most once, on another thread, possibly after the object has been
  /// destroyed. Null if no seldial-uc is running.
  static std::unique_ptr<HotKeyTrial> start(std::function<void()> used);

  ~HotKeyTrial();
  HotKeyTrial(const HotKeyTrial&) = delete;
  HotKeyTrial& operator=(const HotKeyTrial&) = delete;

 private:
  class Receiver;

  HotKeyTrial() = default;

  std::shared_ptr<Receiver> receiver_;
};

/// The request of a HotKeyTrial. The answer arrives when the hot key has been used.
inline constexpr const char* kTrialRequest = "try";

}  // namespace seldial
