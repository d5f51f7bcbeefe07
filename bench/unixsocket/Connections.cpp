// Empty connections: the latency of an accept, and the number of connections per second.
#include <benchmark/benchmark.h>

#include "bench/unixsocket/Bare.h"
#include "bench/unixsocket/LibraryServer.h"
#include "unixsocket/GDUnixSocketClient.h"

namespace seldial::bench {
namespace {

/// Time from a bare client's connect to the accept callback, or to the return of a bare accept.
void acceptLibrary(benchmark::State& state) {
  const TemporarySocketPath place;
  const LibraryServer server(place.path());
  std::size_t round = 0;
  while (state.KeepRunning()) {
    ++round;
    const auto begin = Clock::now();
    {
      const Descriptor client = bareConnect(place.path());
      server.told->accepted.waitFor(round);
    }
    state.SetIterationTime(std::chrono::duration<double>(server.told->acceptedAt - begin).count());
    server.told->ended.waitFor(round);
  }
}

void acceptBare(benchmark::State& state) {
  const TemporarySocketPath place;
  BareServer server(place.path());
  std::size_t round = 0;
  while (state.KeepRunning()) {
    ++round;
    const auto begin = Clock::now();
    {
      const Descriptor client = bareConnect(place.path());
      server.accepted.waitFor(round);
    }
    state.SetIterationTime(std::chrono::duration<double>(server.acceptedAt() - begin).count());
    server.ended.waitFor(round);
  }
}

/// Connects and closes, and waits until the server has seen both.
void connectionsLibrary(benchmark::State& state) {
  const TemporarySocketPath place;
  const LibraryServer server(place.path());
  const auto client = GDUnixSocketClient::initWithSocketPath(place.path());
  std::size_t round = 0;
  while (state.KeepRunning()) {
    client->connectWithAutoRead(false);
    client->close();
    server.told->ended.waitFor(++round);
  }
  state.SetItemsProcessed(state.iterations());
}

void connectionsBare(benchmark::State& state) {
  const TemporarySocketPath place;
  BareServer server(place.path());
  std::size_t round = 0;
  while (state.KeepRunning()) {
    { const Descriptor client = bareConnect(place.path()); }
    server.ended.waitFor(++round);
  }
  state.SetItemsProcessed(state.iterations());
}

BENCHMARK(acceptLibrary)->Name("connect to accept callback, library")->UseManualTime();
BENCHMARK(acceptBare)->Name("connect to accept callback, bare")->UseManualTime();
BENCHMARK(connectionsLibrary)->Name("connections made and ended, library")->UseRealTime();
BENCHMARK(connectionsBare)->Name("connections made and ended, bare")->UseRealTime();

}  // namespace
}  // namespace seldial::bench
