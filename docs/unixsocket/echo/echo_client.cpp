// echo_client PATH: sends each line of its input and prints what comes back.
#include <unixsocket/GDUnixSocketClient.h>

#include <iostream>
#include <optional>
#include <string>

namespace {

using seldial::Data;
using seldial::Error;
using seldial::GDUnixSocketClient;

/// One write may take less than all.
bool send(GDUnixSocketClient& client, Data rest, std::optional<Error>* error) {
  while (!rest.empty()) {
    const auto taken = client.writeData(rest, error);
    if (taken == -1) return false;
    rest.erase(0, static_cast<std::size_t>(taken));
  }
  return true;
}

/// One read may give less than was sent; nothing is the end: of the stream or, with an error, of
/// our luck.
bool printAnswer(GDUnixSocketClient& client, std::size_t size, std::optional<Error>* error) {
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
  bool well = client->connectWithAutoRead(false, &error);
  for (std::string line; well && std::getline(std::cin, line);) {
    line += '\n';
    well = send(*client, line, &error) && printAnswer(*client, line.size(), &error);
  }
  if (well) return 0;
  std::cerr << (error ? error->localizedDescription : "The server has left.") << '\n';
  return 1;
}
