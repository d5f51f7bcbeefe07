// What a command leaves behind in memory.
#include "bench/Figures.h"
#include "bench/Measured.h"
#include "bench/ProcessState.h"

namespace seldial::bench {
namespace {

constexpr int kWarmUp = 5000;
constexpr int kCommands = 20000;
constexpr double kLimitBytes = 8;

void askTimes(const UcClient& client, int times) {
  for (int i = 0; i < times; ++i) static_cast<void>(client.ask(R"({"command":"x"})"));
}

double growthPerCommand(const Measured& measured) {
  askTimes(measured.client, kWarmUp);
  settle(measured.program.id());
  const double before = uniqueMemory(measured.program.id());
  askTimes(measured.client, kCommands);
  settle(measured.program.id());
  return (uniqueMemory(measured.program.id()) - before) / kCommands;
}

}  // namespace

std::vector<Row> growth() {
  const double ours = growthPerCommand(Measured(seldial()));
  const double floor = growthPerCommand(Measured(threadPerConnection(100)));
  return {{text("growth per command, of %d", kCommands), text("%.2f bytes", ours),
           text("%.2f bytes", floor), text("below %.0f bytes", kLimitBytes), ours < kLimitBytes}};
}

}  // namespace seldial::bench
