// What the program costs while nobody uses it, with a hot key registered.
#include <chrono>
#include <stdexcept>
#include <thread>

#include "bench/Figures.h"
#include "bench/Measured.h"
#include "bench/ProcessState.h"
#include "tests/support/desktop/XServer.h"

namespace seldial::bench {
namespace {

constexpr std::chrono::seconds kIdleTime{20};
constexpr double kMegabyte = 1024 * 1024;
constexpr double kLimitMegabytes = 1.5;

void registerHotKey(const UcClient& client) {
  const auto answer = client.ask(
      R"({"command":"SetHotKey","modifierCtrl":true,"modifierAlt":true,"virtualkey":2})");
  if (answer.find(R"("result":true)") == std::string::npos) {
    throw std::runtime_error("no hot key: " + answer);
  }
}

}  // namespace

std::vector<Row> idle() {
  const tests::XServer server;
  const Measured ours(seldial(), server.display());
  const UcClient floorClient;
  const Program floor(listenAndWait()(floorClient));
  registerHotKey(ours.client);
  settle(floor.id());
  settle(ours.program.id());

  const long oursBefore = wakeUps(ours.program.id());
  const long floorBefore = wakeUps(floor.id());
  std::this_thread::sleep_for(kIdleTime);
  const long oursWoken = wakeUps(ours.program.id()) - oursBefore;
  const long floorWoken = wakeUps(floor.id()) - floorBefore;

  const double oursMemory = uniqueMemory(ours.program.id()) / kMegabyte;
  const double floorMemory = uniqueMemory(floor.id()) / kMegabyte;
  return {{"wake-ups in 20 s, idle", text("%ld", oursWoken), text("%ld", floorWoken), "0",
           oursWoken == 0},
          {"unique memory, idle, X11", text("%.2f MB", oursMemory), text("%.2f MB", floorMemory),
           text("%.1f MB", kLimitMegabytes), oursMemory <= kLimitMegabytes}};
}

}  // namespace seldial::bench
