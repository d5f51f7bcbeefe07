// Sending through one connection: many bytes in fragments of one size, and short messages.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <vector>

#include "bench/unixsocket/Bare.h"
#include "bench/unixsocket/LibraryServer.h"
#include "unixsocket/GDUnixSocketClient.h"

namespace seldial::bench {
namespace {

constexpr std::size_t kBytesPerTurn = 1024UL * 1024;

class CountingReader final : public GDUnixSocketClientDelegate {
 public:
  void unixSocketClientDidReceiveData(GDUnixSocketClient& /*client*/, const Data& data) override {
    bytes.add(data.size());
  }

  ByteCounter bytes;
};

/// Sends everything, as any caller of the library must: one send may be partial.
void sendAll(GDUnixSocketServer& server, const std::string& clientID, const Data& fragment) {
  std::int64_t sent = server.sendData(fragment, clientID);
  while (sent != std::ssize(fragment)) {
    if (sent == -1) throw std::runtime_error("a send failed");
    sent += server.sendData(fragment.substr(static_cast<std::size_t>(sent)), clientID);
  }
}

void bytesLibrary(benchmark::State& state) {
  const TemporarySocketPath place;
  const LibraryServer server(place.path());
  const Data fragment(static_cast<std::size_t>(state.range()), 'x');
  const auto client = GDUnixSocketClient::initWithSocketPath(place.path(), fragment.size());
  const auto reader = std::make_shared<CountingReader>();
  client->setDelegate(reader);
  client->connectWithAutoRead(true);
  const std::string clientID = server.firstClientID();
  std::size_t total = 0;
  while (state.KeepRunning()) {
    for (std::size_t sent = 0; sent < kBytesPerTurn; sent += fragment.size()) {
      sendAll(*server.server, clientID, fragment);
    }
    reader->bytes.waitFor(total += kBytesPerTurn);
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(total));
}

void bytesBare(benchmark::State& state) {
  const TemporarySocketPath place;
  const Descriptor listener = bareListen(place.path());
  const std::string fragment(static_cast<std::size_t>(state.range()), 'x');
  ByteCounter bytes;
  std::thread reader([&bytes, size = fragment.size(), connection = bareConnect(place.path())] {
    bareReadAll(connection, size, bytes);
  });
  std::size_t total = 0;
  {
    const Descriptor connection = bareAccept(listener);
    while (state.KeepRunning()) {
      for (std::size_t sent = 0; sent < kBytesPerTurn; sent += fragment.size()) {
        bareSend(connection, fragment);
      }
      bytes.waitFor(total += kBytesPerTurn);
    }
  }
  reader.join();
  state.SetBytesProcessed(static_cast<std::int64_t>(total));
}

void eachFragmentSize(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("fragment")->RangeMultiplier(4)->Range(256, 65536)->UseRealTime();
}

/// Short messages. The sending thread itself reads them at the other end, many at a time, so that
/// the figures do not depend on the wake-up of a reader.
const std::string kMessage(64, 'x');
constexpr std::size_t kSendsPerTurn = 128;  ///< they fit into the system's buffer

void readTurn(const Descriptor& connection) {
  static std::vector<char> buffer(kSendsPerTurn * kMessage.size());
  std::size_t left = buffer.size();
  while (left > 0) {
    const auto count = read(connection.number(), buffer.data(), left);
    if (count <= 0) throw std::runtime_error("the stream ended");
    left -= static_cast<std::size_t>(count);
  }
}

void sendsLibrary(benchmark::State& state) {
  const TemporarySocketPath place;
  const LibraryServer server(place.path());
  const Descriptor reader = bareConnect(place.path());
  const std::string clientID = server.firstClientID();
  while (state.KeepRunning()) {
    for (std::size_t sent = 0; sent < kSendsPerTurn; ++sent) {
      server.server->sendData(kMessage, clientID);
    }
    readTurn(reader);
  }
  state.SetItemsProcessed(state.iterations() * std::int64_t{kSendsPerTurn});
}

void sendsBare(benchmark::State& state) {
  const TemporarySocketPath place;
  const Descriptor listener = bareListen(place.path());
  const Descriptor reader = bareConnect(place.path());
  const Descriptor connection = bareAccept(listener);
  while (state.KeepRunning()) {
    for (std::size_t sent = 0; sent < kSendsPerTurn; ++sent) bareSend(connection, kMessage);
    readTurn(reader);
  }
  state.SetItemsProcessed(state.iterations() * std::int64_t{kSendsPerTurn});
}

BENCHMARK(bytesLibrary)->Name("bytes through one connection, library")->Apply(eachFragmentSize);
BENCHMARK(bytesBare)->Name("bytes through one connection, bare")->Apply(eachFragmentSize);

BENCHMARK(sendsLibrary)->Name("sends of 64 bytes, library")->UseRealTime();
BENCHMARK(sendsBare)->Name("sends of 64 bytes, bare")->UseRealTime();

}  // namespace
}  // namespace seldial::bench
