// From connecting with a command to the end of its answer.
#include "bench/Figures.h"
#include "bench/Measured.h"
#include "bench/ProcessState.h"

namespace seldial::bench {
namespace {

constexpr int kTurns = 200;
constexpr int kRoundsPerTurn = 50;

void measureTurn(const UcClient& client, const std::string& command,
                 std::vector<double>& microseconds) {
  for (int round = 0; round < kRoundsPerTurn; ++round) {
    const auto begin = Clock::now();
    static_cast<void>(client.ask(command));
    const std::chrono::duration<double, std::micro> elapsed = Clock::now() - begin;
    microseconds.push_back(elapsed.count());
  }
}

Row roundTripOf(const Measured& ours, const std::string& command) {
  const Measured floor(threadPerConnection(ours.client.ask(command).size()));
  std::vector<double> oursTaken;
  std::vector<double> floorTaken;
  for (int turn = 0; turn < kTurns; ++turn) {
    measureTurn(ours.client, command, oursTaken);
    measureTurn(floor.client, command, floorTaken);
  }
  const auto oursMedian = median(oursTaken);
  const auto floorMedian = median(floorTaken);
  return {"round trip of " + command, text("%.1f us", oursMedian), text("%.1f us", floorMedian),
          text("floor (ratio %.2f)", oursMedian / floorMedian), oursMedian <= floorMedian};
}

}  // namespace

std::vector<Row> roundTrip() {
  const OnOneProcessor pinned;
  const Measured ours(seldial());
  return {roundTripOf(ours, R"({"command":"x"})"), roundTripOf(ours, "{}")};
}

}  // namespace seldial::bench
