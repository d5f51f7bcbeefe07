#pragma once

#include <string>

namespace seldial {

/// The client's output: one line on standard output for each message and call, for people and
/// scripts; errors on standard error. One thread.
class Console {
 public:
  /// With `conversation` everything on the sockets is shown, each line with its socket and an
  /// arrow. Otherwise only the received messages are shown, unaltered.
  explicit Console(bool conversation) : conversation_(conversation) {}

  void sent(const std::string& command) const;
  void received(const std::string& message) const;
  /// An event on Seldial's socket, to which this program writes: "connected", "disconnected".
  void onDialerSocket(const char* event) const;
  /// An event on the client's socket, to which Seldial writes.
  void onClientSocket(const char* event) const;

  void hotKeySet(const std::string& spelling) const;
  void dial(const std::string& number) const;
  /// A number was dialled. The number itself is not shown.
  void dialled() const;
  /// One sentence, without a full stop.
  void notDialled(const std::string& why) const;
  /// One sentence, without a full stop.
  void error(const std::string& sentence) const;

  /// Whether a write to standard output has failed because its reader is gone or the disk is full.
  [[nodiscard]] bool broken() const;

 private:
  bool conversation_;
};

/// Makes `text` safe to print as one line on a terminal: each control character (C0, U+007F and C1)
/// becomes \u and four hexadecimal digits. So selected text can neither break the line nor control
/// the terminal, and JSON text keeps its meaning.
[[nodiscard]] std::string printable(const std::string& text);

}  // namespace seldial
