// echo_client PATH: sends each line of its input and prints the reply.
#include <seldial/unixsocket/GDUnixSocketClient.h>

#include <iostream>
#include <optional>
#include <string>

namespace {

using seldial::Data;
using seldial::Error;
using seldial::GDUnixSocketClient;

/// Sends all of `rest`: one write may be partial.
bool send(GDUnixSocketClient& client, Data rest, std::optional<Error>* error) {
  while (!rest.empty()) {
    const auto taken = client.writeData(rest, error);
    if (taken == -1) return false;
    rest.erase(0, static_cast<std::size_t>(taken));
  }
  return true;
}

/// Prints `size` bytes: one read may return fewer. A read that returns nothing is the end of the
/// stream or, with an error, a failure.
bool printReply(GDUnixSocketClient& client, std::size_t size, std::optional<Error>* error) {
  while (size > 0) {
    const auto data = client.readWithError(error);
    if (!data) return false;
    std::cout << *data << std::flush;
    size -= data->size();
  }
  return true;
}

}  // namespace

int main(int argc, char* argv[]) {
  const auto client = GDUnixSocketClient::initWithSocketPath(argc == 2 ? argv[1] : "");
  if (!client) {
    std::cerr << "usage: echo_client PATH\n";
    return 2;
  }
  std::optional<Error> error;
  bool ok = client->connectWithAutoRead(false, &error);
  for (std::string line; ok && std::getline(std::cin, line);) {
    line += '\n';
    ok = send(*client, line, &error) && printReply(*client, line.size(), &error);
  }
  if (ok) return 0;
  std::cerr << (error ? error->localizedDescription : "The server closed the connection.") << '\n';
  return 1;
}
