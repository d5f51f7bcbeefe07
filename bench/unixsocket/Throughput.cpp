// Bytes from a server to a client through one connection, written and read in fragments of one
// size.
#include <benchmark/benchmark.h>

#include "bench/unixsocket/Bare.h"
#include "bench/unixsocket/LibraryServer.h"
#include "unixsocket/GDUnixSocketClient.h"

namespace seldial::bench {
namespace {

constexpr std::size_t kBytesATurn = 1024UL * 1024;

class CountingReader final : public GDUnixSocketClientDelegate {
 public:
  void unixSocketClientDidReceiveData(GDUnixSocketClient& /*client*/, const Data& data) override {
    bytes.add(data.size());
  }

  Tally bytes;
};

/// What a caller of the library writes too: one send may take less than all.
void sendAll(GDUnixSocketServer& server, const std::string& clientID, const Data& fragment) {
  std::int64_t sent = server.sendData(fragment, clientID);
  while (sent != std::ssize(fragment)) {
    if (sent == -1) throw std::runtime_error("a send failed");
    sent += server.sendData(fragment.substr(static_cast<std::size_t>(sent)), clientID);
  }
}

void bytesLibrary(benchmark::State& state) {
  const SocketPlace place;
  const LibraryServer server(place.path());
  const Data fragment(static_cast<std::size_t>(state.range()), 'x');
  const auto client = GDUnixSocketClient::initWithSocketPath(place.path(), fragment.size());
  const auto reader = std::make_shared<CountingReader>();
  client->setDelegate(reader);
  client->connectWithAutoRead(true);
  const std::string clientID = server.firstClientID();
  std::size_t total = 0;
  while (state.KeepRunning()) {
    for (std::size_t sent = 0; sent < kBytesATurn; sent += fragment.size()) {
      sendAll(*server.server, clientID, fragment);
    }
    reader->bytes.waitFor(total += kBytesATurn);
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(total));
}

void bytesBare(benchmark::State& state) {
  const SocketPlace place;
  const Descriptor listener = bareListen(place.path());
  const std::string fragment(static_cast<std::size_t>(state.range()), 'x');
  Tally bytes;
  std::thread reader([&bytes, size = fragment.size(), connection = bareConnect(place.path())] {
    bareReadAll(connection, size, bytes);
  });
  std::size_t total = 0;
  {
    const Descriptor connection = bareAccept(listener);
    while (state.KeepRunning()) {
      for (std::size_t sent = 0; sent < kBytesATurn; sent += fragment.size()) {
        bareSend(connection, fragment);
      }
      bytes.waitFor(total += kBytesATurn);
    }
  }
  reader.join();
  state.SetBytesProcessed(static_cast<std::int64_t>(total));
}

void eachFragmentSize(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("fragment")->RangeMultiplier(4)->Range(256, 65536)->UseRealTime();
}

BENCHMARK(bytesLibrary)->Name("bytes through one connection, library")->Apply(eachFragmentSize);
BENCHMARK(bytesBare)->Name("bytes through one connection, bare")->Apply(eachFragmentSize);

}  // namespace
}  // namespace seldial::bench
