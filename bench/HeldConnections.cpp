// What clients cost that connect, begin a command and stay.
#include "bench/Figures.h"
#include "bench/Measured.h"
#include "bench/ProcessState.h"

namespace seldial::bench {
namespace {

constexpr int kConnections = 200;
constexpr double kKilobyte = 1024;
constexpr double kLimitKilobytes = 12;
constexpr std::chrono::seconds kQuiet{1};  ///< after which no further answer comes

struct Cost {
  double kilobytes = 0;  ///< of each connection while it is held
  int threadsLeft = 0;   ///< once all are gone
};

std::vector<Descriptor> hold(const UcClient& client) {
  std::vector<Descriptor> held;
  for (int i = 0; i < kConnections; ++i) {
    held.push_back(client.connect());
    write(held.back(), "{");
  }
  return held;
}

Cost costOf(const Measured& measured) {
  const auto process = measured.program.id();
  settle(process);
  const int threads = threadCount(process);
  const double before = uniqueMemory(process);
  Cost cost;
  {
    const auto held = hold(measured.client);
    settle(process);
    cost.kilobytes = (uniqueMemory(process) - before) / kConnections / kKilobyte;
  }
  while (!measured.client.receive(kQuiet).empty()) continue;
  settle(process);
  cost.threadsLeft = threadCount(process) - threads;
  return cost;
}

}  // namespace

std::vector<Row> heldConnections() {
  const auto ours = costOf(Measured(seldial()));
  const auto floor = costOf(Measured(threadPerConnection(100)));
  return {{text("memory of each of %d held connections", kConnections),
           text("%.1f kB", ours.kilobytes), text("%.1f kB", floor.kilobytes),
           text("%.0f kB", kLimitKilobytes), ours.kilobytes <= kLimitKilobytes},
          {"threads left after they are gone", text("%d", ours.threadsLeft),
           text("%d", floor.threadsLeft), "0", ours.threadsLeft == 0}};
}

}  // namespace seldial::bench
