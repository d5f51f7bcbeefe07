// Short sends to one connection. The same thread reads them at the other end, many at once, so that
// no figure depends on when a reader wakes up.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <vector>

#include "bench/unixsocket/Bare.h"
#include "bench/unixsocket/LibraryServer.h"

namespace seldial::bench {
namespace {

const std::string kMessage(64, 'x');
constexpr std::size_t kSendsATurn = 128;  ///< they fit into the system's buffer

void readTurn(const Descriptor& connection) {
  static std::vector<char> buffer(kSendsATurn * kMessage.size());
  std::size_t left = buffer.size();
  while (left > 0) {
    const auto count = read(connection.number(), buffer.data(), left);
    if (count <= 0) throw std::runtime_error("the stream ended");
    left -= static_cast<std::size_t>(count);
  }
}

void sendsLibrary(benchmark::State& state) {
  const SocketPlace place;
  const LibraryServer server(place.path());
  const Descriptor reader = bareConnect(place.path());
  const std::string clientID = server.firstClientID();
  while (state.KeepRunning()) {
    for (std::size_t sent = 0; sent < kSendsATurn; ++sent) {
      server.server->sendData(kMessage, clientID);
    }
    readTurn(reader);
  }
  state.SetItemsProcessed(state.iterations() * std::int64_t{kSendsATurn});
}

void sendsBare(benchmark::State& state) {
  const SocketPlace place;
  const Descriptor listener = bareListen(place.path());
  const Descriptor reader = bareConnect(place.path());
  const Descriptor connection = bareAccept(listener);
  while (state.KeepRunning()) {
    for (std::size_t sent = 0; sent < kSendsATurn; ++sent) bareSend(connection, kMessage);
    readTurn(reader);
  }
  state.SetItemsProcessed(state.iterations() * std::int64_t{kSendsATurn});
}

BENCHMARK(sendsLibrary)->Name("sends of 64 bytes, library")->UseRealTime();
BENCHMARK(sendsBare)->Name("sends of 64 bytes, bare")->UseRealTime();

}  // namespace
}  // namespace seldial::bench
