// The duration of a command, from connecting to the end of the answer, and the start-up time, from
// the start to the first successful connection.
#include <cstdlib>
#include <stdexcept>

#include "bench/Figures.h"
#include "bench/Program.h"
#include "tests/support/desktop/XServer.h"

namespace seldial::bench {
namespace {

constexpr int kTurns = 400;
constexpr int kRoundsPerTurn = 25;

/// The median of one turn, in microseconds.
double measureTurn(const UcClient& client, const std::string& command) {
  std::vector<double> microseconds;
  for (int round = 0; round < kRoundsPerTurn; ++round) {
    const auto begin = Clock::now();
    static_cast<void>(client.ask(command));
    const std::chrono::duration<double, std::micro> elapsed = Clock::now() - begin;
    microseconds.push_back(elapsed.count());
  }
  return median(microseconds);
}

/// The medians of all turns; the times in microseconds.
struct RoundTrips {
  double ours;
  double floor;
  double ratio;  ///< of two successive turns, so that other load on the machine affects both
};

RoundTrips measureRoundTrips(const Measured& ours, const Measured& floor,
                             const std::string& command) {
  std::vector<double> oursTaken;
  std::vector<double> floorTaken;
  std::vector<double> ratios;
  for (int turn = 0; turn < kTurns; ++turn) {
    oursTaken.push_back(measureTurn(ours.client, command));
    floorTaken.push_back(measureTurn(floor.client, command));
    ratios.push_back(oursTaken.back() / floorTaken.back());
  }
  return {median(oursTaken), median(floorTaken), median(ratios)};
}

Row roundTripOf(const Measured& ours, const std::string& command) {
  const Measured floor(threadPerConnection(ours.client.ask(command).size()));
  const auto taken = measureRoundTrips(ours, floor, command);
  return {"round trip of " + command, text("%.1f us", taken.ours), text("%.1f us", taken.floor),
          text("floor (ratio %.2f)", taken.ratio), taken.ratio <= 1};
}

constexpr int kStarts = 60;
constexpr double kLimitMilliseconds = 5;
constexpr double kLimitHardening = 1.05;

double startToListening(const CommandLine& commandLine,
                        const std::vector<std::string>& desktop = {}) {
  const UcClient client;
  const auto watch = client.watch();
  const auto begin = Clock::now();
  const Program program(commandLine(client), desktop);
  client.awaitListening(watch);
  const std::chrono::duration<double, std::milli> elapsed = Clock::now() - begin;
  return elapsed.count();
}

Row startRow(const std::string& figure, double ours, double floor) {
  return {figure, text("%.2f ms", ours), text("%.2f ms", floor),
          text("%.0f ms (ratio %.1f)", kLimitMilliseconds, ours / floor),
          ours <= kLimitMilliseconds};
}

}  // namespace

std::vector<Row> roundTrip() {
  const OnOneProcessor pinned;
  const Measured ours(seldial());
  return {roundTripOf(ours, R"({"command":"x"})"), roundTripOf(ours, "{}")};
}

std::vector<Row> hardening() {
  const char* const program = std::getenv("SELDIAL_UNHARDENED");
  if (program == nullptr) throw std::runtime_error("SELDIAL_UNHARDENED is not set");
  const OnOneProcessor pinned;
  const auto taken =
      measureRoundTrips(Measured(seldial()), Measured(seldial(program)), R"({"command":"x"})");
  return {{"round trip, hardened and not", text("%.1f us", taken.ours),
           text("%.1f us", taken.floor), text("%.2f (ratio %.2f)", kLimitHardening, taken.ratio),
           taken.ratio <= kLimitHardening}};
}

std::vector<Row> start() {
  const tests::XServer server;
  const OnOneProcessor pinned;
  std::vector<double> alone;
  std::vector<double> onDesktop;
  std::vector<double> floor;
  for (int turn = 0; turn < kStarts; ++turn) {
    alone.push_back(startToListening(seldial()));
    onDesktop.push_back(startToListening(seldial(), {server.environment()}));
    floor.push_back(startToListening(listenAndWait()));
  }
  return {startRow("start to listening, no desktop", median(alone), median(floor)),
          startRow("start to listening, X11", median(onDesktop), median(floor))};
}

}  // namespace seldial::bench
