// The duration of dialling, from the release of the hot key to the end of the MakeCall message,
// without the delay that the client requested. Measured with the text entries of two toolkits.
#include <stdexcept>

#include "bench/Figures.h"
#include "bench/Program.h"
#include "tests/support/desktop/Keyboard.h"
#include "tests/support/desktop/Keys.h"
#include "tests/support/desktop/XServer.h"

namespace seldial::bench {
namespace {

using tests::ChildProcess;
using tests::Keyboard;

constexpr int kTurns = 100;
constexpr unsigned kDelay = 50;  ///< ms; enough for every copy on a busy machine
constexpr double kLimitMilliseconds = 2;
constexpr std::chrono::milliseconds kNoAnswer{kDelay + 1500};

/// A program that dials on Control, Alt and its key.
struct Dialer {
  const UcClient& client;
  std::uint8_t key = 0;
  std::vector<double> milliseconds;
  int failures = 0;
};

/// Returns the duration in milliseconds; negative if no MakeCall arrived.
double use(Keyboard& keyboard, const Dialer& dialer) {
  const std::vector<std::uint8_t> modifiers{tests::kKeyLeftControl, tests::kKeyLeftAlt};
  keyboard.press(modifiers);
  keyboard.press(dialer.key);
  keyboard.release(modifiers);
  const auto begin = Clock::now();
  keyboard.release(dialer.key);
  const auto message = dialer.client.receive(kNoAnswer);
  const std::chrono::duration<double, std::milli> elapsed = Clock::now() - begin;
  const bool dialed = message.find("+31 20 123 4567") != std::string::npos;
  return dialed ? elapsed.count() - kDelay : -1;
}

void measure(Keyboard& keyboard, Dialer& dialer) {
  const double milliseconds = use(keyboard, dialer);
  if (milliseconds < 0) {
    ++dialer.failures;
  } else {
    dialer.milliseconds.push_back(milliseconds);
  }
}

/// No event shows when a started application has its focus and selection, so this tries until
/// dialling succeeds.
void warmUp(Keyboard& keyboard, const Dialer& dialer) {
  for (int attempt = 0; attempt < 20; ++attempt) {
    if (use(keyboard, dialer) >= 0) return;
  }
  throw std::runtime_error("nothing was dialled");
}

Row row(const std::string& application, const Dialer& ours, const Dialer& floor) {
  const double milliseconds = median(ours.milliseconds);
  return {text("release to MakeCall less %u ms, %s; failed", kDelay, application.c_str()),
          text("%.2f ms; %d", milliseconds, ours.failures),
          text("%.2f ms; %d", median(floor.milliseconds), floor.failures),
          text("%.0f ms, none failed", kLimitMilliseconds),
          milliseconds <= kLimitMilliseconds && ours.failures == 0};
}

std::string setHotKey() {
  return text(R"({"command":"SetHotKey","modifierCtrl":true,"modifierAlt":true,)"
              R"("virtualkey":2,"readdelay":%u})",
              kDelay);
}

Row dialFrom(const std::string& name, const std::vector<std::string>& application) {
  const tests::XServer server;
  const ChildProcess windowManager({"openbox"}, {server.environment()});
  const ChildProcess window(application, {server.environment()});
  Keyboard keyboard(server.display());

  const OnOneProcessor pinned;
  const Measured seldial(bench::seldial(), server.display());
  const auto answer = seldial.client.ask(setHotKey());
  if (answer.find(R"("result":true)") == std::string::npos) {
    throw std::runtime_error("no hot key: " + answer);
  }
  const UcClient floorClient;
  const Program bare(bareDial(tests::kKeyF, kDelay)(floorClient), server.display());

  Dialer ours{seldial.client, tests::kKeyD, {}, 0};
  Dialer floor{floorClient, tests::kKeyF, {}, 0};
  warmUp(keyboard, floor);
  warmUp(keyboard, ours);
  for (int turn = 0; turn < kTurns; ++turn) {
    measure(keyboard, ours);
    measure(keyboard, floor);
  }
  return row(name, ours, floor);
}

}  // namespace

std::vector<Row> dial() {
  return {dialFrom("Tk", {"sh", "-c", R"(exec wish <<'TK'
entry .e
.e insert 0 "+31 20 123 4567"
pack .e
focus -force .e
.e selection range 0 end
vwait forever
TK)"}),
          dialFrom("GTK", {"zenity", "--entry", "--entry-text=+31 20 123 4567"})};
}

}  // namespace seldial::bench
