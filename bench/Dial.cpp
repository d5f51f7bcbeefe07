// The duration of dialling, from the release of the hot key to the end of the MakeCall message,
// without the delay that the client requested. Measured with the text entries of two toolkits on
// X11, and with one of them under sway.
#include <linux/input-event-codes.h>

#include <functional>
#include <stdexcept>

#include "bench/Figures.h"
#include "bench/Program.h"
#include "tests/support/desktop/Keyboard.h"
#include "tests/support/desktop/Keys.h"
#include "tests/support/desktop/XServer.h"
#include "tests/support/wayland/Sway.h"
#include "tests/support/wayland/UserKeyboard.h"

namespace seldial::bench {
namespace {

using tests::ChildProcess;
using tests::Keyboard;

constexpr int kTurns = 100;
constexpr unsigned kDelay = 50;  ///< ms; enough for every copy on a busy machine
constexpr double kLimitMillisecondsOnX11 = 2;
constexpr double kLimitRatioOnSway = 1.5;
constexpr std::chrono::milliseconds kNoAnswer{kDelay + 1500};

/// A program that dials when its hot key is used.
struct Dialer {
  const UcClient& client;
  /// Uses its hot key; returns the time just before the key was released.
  std::function<Clock::time_point()> useHotKey;
  std::vector<double> milliseconds;
  int failures = 0;
};

/// Returns the duration in milliseconds; negative if no MakeCall arrived.
double use(const Dialer& dialer) {
  const auto begin = dialer.useHotKey();
  const auto message = dialer.client.receive(kNoAnswer);
  const std::chrono::duration<double, std::milli> elapsed = Clock::now() - begin;
  const bool dialed = message.find("+31 20 123 4567") != std::string::npos;
  return dialed ? elapsed.count() - kDelay : -1;
}

void measure(Dialer& dialer) {
  const double milliseconds = use(dialer);
  if (milliseconds < 0) {
    ++dialer.failures;
  } else {
    dialer.milliseconds.push_back(milliseconds);
  }
}

/// No event shows when a started application has its focus and selection, so this tries until
/// dialling succeeds.
void warmUp(const Dialer& dialer) {
  for (int attempt = 0; attempt < 20; ++attempt) {
    if (use(dialer) >= 0) return;
  }
  throw std::runtime_error("nothing was dialled");
}

void measureAlternately(Dialer& ours, Dialer& floor) {
  warmUp(floor);
  warmUp(ours);
  for (int turn = 0; turn < kTurns; ++turn) {
    measure(ours);
    measure(floor);
  }
}

Row row(const std::string& application, const Dialer& ours, const Dialer& floor,
        double limitMilliseconds) {
  const double milliseconds = median(ours.milliseconds);
  return {text("release to MakeCall less %u ms, %s; failed", kDelay, application.c_str()),
          text("%.2f ms; %d", milliseconds, ours.failures),
          text("%.2f ms; %d", median(floor.milliseconds), floor.failures),
          text("%.2f ms, none failed", limitMilliseconds),
          milliseconds <= limitMilliseconds && ours.failures == 0};
}

std::string setHotKey() {
  return text(R"({"command":"SetHotKey","modifierCtrl":true,"modifierAlt":true,)"
              R"("virtualkey":2,"readdelay":%u})",
              kDelay);
}

void registerHotKey(const UcClient& client) {
  const auto answer = client.ask(setHotKey());
  if (answer.find(R"("result":true)") == std::string::npos) {
    throw std::runtime_error("no hot key: " + answer);
  }
}

Clock::time_point useOnX11(Keyboard& keyboard, std::uint8_t key) {
  const std::vector<std::uint8_t> modifiers{tests::kKeyLeftControl, tests::kKeyLeftAlt};
  keyboard.press(modifiers);
  keyboard.press(key);
  keyboard.release(modifiers);
  const auto begin = Clock::now();
  keyboard.release(key);
  return begin;
}

Row dialOnX11(const std::string& name, const std::vector<std::string>& application) {
  const tests::XServer server;
  const ChildProcess windowManager({"openbox"}, {server.environment()});
  const ChildProcess window(application, {server.environment()});
  Keyboard keyboard(server.display());

  const OnOneProcessor pinned;
  const Measured seldial(bench::seldial(), {server.environment()});
  registerHotKey(seldial.client);
  const UcClient floorClient;
  const Program bare(bareDial("dial", tests::kKeyF, kDelay)(floorClient), {server.environment()});

  Dialer ours{seldial.client, [&] { return useOnX11(keyboard, tests::kKeyD); }, {}, 0};
  Dialer floor{floorClient, [&] { return useOnX11(keyboard, tests::kKeyF); }, {}, 0};
  measureAlternately(ours, floor);
  return row(name + ", X11", ours, floor, kLimitMillisecondsOnX11);
}

Clock::time_point useOnSway(tests::UserKeyboard& keyboard, unsigned key) {
  const std::vector<unsigned> modifiers{KEY_LEFTCTRL, KEY_LEFTALT};
  keyboard.press(modifiers);
  keyboard.press({key});
  const auto begin = Clock::now();
  keyboard.release({key});
  keyboard.release(modifiers);
  return begin;
}

/// A session of sway with one window.
class SwaySession {
 public:
  explicit SwaySession(const std::vector<std::string>& application)
      : window_(application, windowEnvironment()) {}

  const tests::Sway sway;
  tests::UserKeyboard keyboard{sway.display()};

 private:
  [[nodiscard]] std::vector<std::string> windowEnvironment() const {
    auto variables = sway.environment();
    variables.insert(variables.end(),
                     {"GDK_BACKEND=wayland", "GSK_RENDERER=cairo", "NO_AT_BRIDGE=1"});
    return variables;
  }

  const ChildProcess window_;
};

// Each program has a session of its own: the copies for the floor would look like those of a
// clipboard manager, for which Seldial waits.
Row dialOnSway(const std::string& name, const std::vector<std::string>& application) {
  SwaySession ourSession(application);
  SwaySession floorSession(application);

  const OnOneProcessor pinned;
  const Measured seldial(bench::seldial(), ourSession.sway.environment());
  registerHotKey(seldial.client);
  const UcClient floorClient;
  const Program bare(bareDial("dial_sway", KEY_F, kDelay)(floorClient),
                     floorSession.sway.environment());

  Dialer ours{seldial.client, [&] { return useOnSway(ourSession.keyboard, KEY_D); }, {}, 0};
  Dialer floor{floorClient, [&] { return useOnSway(floorSession.keyboard, KEY_F); }, {}, 0};
  measureAlternately(ours, floor);
  return row(name + ", sway", ours, floor, kLimitRatioOnSway * median(floor.milliseconds));
}

}  // namespace

std::vector<Row> dial() {
  const std::vector<std::string> zenity{"zenity", "--entry", "--entry-text=+31 20 123 4567"};
  return {dialOnX11("Tk", {"sh", "-c", R"(exec wish <<'TK'
entry .e
.e insert 0 "+31 20 123 4567"
pack .e
focus -force .e
.e selection range 0 end
vwait forever
TK)"}),
          dialOnX11("GTK", zenity), dialOnSway("GTK", zenity)};
}

}  // namespace seldial::bench
