// From starting the program to a connection that succeeds.
#include "bench/Figures.h"
#include "bench/Measured.h"
#include "bench/ProcessState.h"
#include "tests/support/desktop/XServer.h"

namespace seldial::bench {
namespace {

constexpr int kTurns = 60;
constexpr double kLimitMilliseconds = 5;

double startToListening(const CommandLine& commandLine, const std::string& display = {}) {
  const UcClient client;
  const auto watch = client.watch();
  const auto begin = Clock::now();
  const Program program(commandLine(client), display);
  client.awaitListening(watch);
  const std::chrono::duration<double, std::milli> elapsed = Clock::now() - begin;
  return elapsed.count();
}

Row row(const std::string& figure, double ours, double floor) {
  return {figure, text("%.2f ms", ours), text("%.2f ms", floor),
          text("%.0f ms (ratio %.1f)", kLimitMilliseconds, ours / floor),
          ours <= kLimitMilliseconds};
}

}  // namespace

std::vector<Row> start() {
  const tests::XServer server;
  const OnOneProcessor pinned;
  std::vector<double> alone;
  std::vector<double> onDesktop;
  std::vector<double> floor;
  for (int turn = 0; turn < kTurns; ++turn) {
    alone.push_back(startToListening(seldial()));
    onDesktop.push_back(startToListening(seldial(), server.display()));
    floor.push_back(startToListening(listenAndWait()));
  }
  return {row("start to listening, no desktop", median(alone), median(floor)),
          row("start to listening, X11", median(onDesktop), median(floor))};
}

}  // namespace seldial::bench
