#pragma once

#include <string>

namespace seldial {

/// What the user, or a script, reads: standard output line by line, troubles on standard error.
/// One thread.
class Console {
 public:
  /// With `conversation` everything on the sockets is shown, each line with its socket and an
  /// arrow; without it the messages received alone, each as it came.
  explicit Console(bool conversation) : conversation_(conversation) {}

  void sent(const std::string& command) const;
  void received(const std::string& message) const;
  /// Something else than a text on the dialer's socket, where this program is the one who speaks.
  void onDialerSocket(const char* event) const;
  /// Something else than a text on the client's socket, where the dialer is the one who speaks.
  void onClientSocket(const char* event) const;

  void hotKeySet(const std::string& spelling) const;
  void dial(const std::string& number) const;
  /// One sentence, without a full stop.
  void trouble(const std::string& sentence) const;

  /// Whether standard output could not take something: its reader is gone, or the disk is full.
  [[nodiscard]] bool broken() const;

 private:
  const bool conversation_;
};

}  // namespace seldial
