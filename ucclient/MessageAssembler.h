#pragma once

#include <map>
#include <string>

namespace seldial {

/// Puts messages together: one connection carries one message, in as many chunks as the system
/// likes, and its end is the message's end. Connections may be open side by side. One thread.
class MessageAssembler {
 public:
  void append(const std::string& connection, const std::string& chunk);

  /// The connection has ended: its message, empty when it carried nothing.
  [[nodiscard]] std::string finish(const std::string& connection);

  /// The connection has failed; what came of its message is given up.
  void discard(const std::string& connection);

 private:
  std::map<std::string, std::string> partial_;
};

}  // namespace seldial
