#include "shortcut/Delivery.h"

#include <cstdio>

#include "unixsocket/GDUnixSocketClient.h"

namespace seldial {
namespace {

/// Time limit of the connect and the write together. A Seldial that is dialling answers sooner.
constexpr std::chrono::seconds kTimeLimit{3};

}  // namespace

std::optional<std::string> printCommand(const std::string& command) {
  const bool printed = std::puts(command.c_str()) >= 0 && std::fflush(stdout) == 0;
  if (printed) return std::nullopt;
  return "Standard output cannot be written.";
}

std::optional<std::string> sendCommand(const std::string& command, const std::string& path) {
  const auto client = GDUnixSocketClient::initWithSocketPath(path);
  if (!client) return path + " cannot be the path of a socket.";
  client->setSendTimeout(kTimeLimit);
  std::optional<Error> error;
  if (!client->connectWithAutoRead(false, &error)) return error->localizedDescription;
  const auto count = client->writeData(command, &error);
  client->close();
  if (count == static_cast<std::int64_t>(command.size())) return std::nullopt;
  return error ? error->localizedDescription : "Seldial did not take the whole command.";
}

}  // namespace seldial
