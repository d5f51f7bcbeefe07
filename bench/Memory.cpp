// The memory of the program: idle, per answered command, per connected client, and at the peak of a
// large command. Also the number of wake-ups while idle.
#include <algorithm>
#include <chrono>
#include <functional>
#include <stdexcept>
#include <thread>
#include <utility>

#include "bench/Figures.h"
#include "bench/Program.h"
#include "tests/support/desktop/XServer.h"
#include "tests/support/wayland/Sway.h"

namespace seldial::bench {
namespace {

constexpr double kKilobyte = 1024;
constexpr double kMegabyte = 1024 * 1024;

constexpr std::chrono::seconds kIdleTime{20};
constexpr double kLimitIdleMegabytesOnX11 = 1.5;
constexpr double kLimitIdleMegabytesOnSway = 2;

constexpr int kWarmUp = 5000;
constexpr int kCommands = 20000;
constexpr double kLimitGrowthBytes = 8;

constexpr int kConnections = 200;
constexpr double kLimitConnectionKilobytes = 12;
constexpr std::chrono::seconds kQuiet{1};  ///< without an answer; then none is pending

constexpr double kCommandMegabytes[] = {4, 16, 64};
constexpr double kLimitPeak =
    3;  ///< times the size of the command, in addition to the cost of any command
constexpr double kAnyCommand = 256 * kKilobyte;
constexpr std::chrono::seconds kLargeCommand{60};  ///< until its answer, on a busy machine
constexpr double kLimitLeftMegabytes = 0.5;

void registerHotKey(const UcClient& client) {
  const auto answer = client.ask(
      R"({"command":"SetHotKey","modifierCtrl":true,"modifierAlt":true,"virtualkey":2})");
  if (answer.find(R"("result":true)") == std::string::npos) {
    throw std::runtime_error("no hot key: " + answer);
  }
}

void askRepeatedly(const UcClient& client, int times) {
  for (int i = 0; i < times; ++i) static_cast<void>(client.ask(R"({"command":"x"})"));
}

std::vector<Row> idleOn(const std::string& name, const std::vector<std::string>& desktop,
                        double limitMegabytes) {
  const Measured ours(seldial(), desktop);
  const UcClient floorClient;
  const Program floor(listenAndWait()(floorClient));
  registerHotKey(ours.client);
  floor.settle();
  ours.program.settle();

  const long oursBefore = ours.program.wakeUps();
  const long floorBefore = floor.wakeUps();
  std::this_thread::sleep_for(kIdleTime);
  const long oursWoken = ours.program.wakeUps() - oursBefore;
  const long floorWoken = floor.wakeUps() - floorBefore;

  const double oursMemory = ours.program.uniqueMemory() / kMegabyte;
  const double floorMemory = floor.uniqueMemory() / kMegabyte;
  return {{text("wake-ups in 20 s, idle, %s", name.c_str()), text("%ld", oursWoken),
           text("%ld", floorWoken), "0", oursWoken == 0},
          {text("unique memory, idle, %s", name.c_str()), text("%.2f MB", oursMemory),
           text("%.2f MB", floorMemory), text("%.1f MB", limitMegabytes),
           oursMemory <= limitMegabytes}};
}

double growthPerCommand(const Measured& measured) {
  askRepeatedly(measured.client, kWarmUp);
  measured.program.settle();
  const double before = measured.program.uniqueMemory();
  askRepeatedly(measured.client, kCommands);
  measured.program.settle();
  return (measured.program.uniqueMemory() - before) / kCommands;
}

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
  const Program& program = measured.program;
  program.settle();
  const int threads = program.threadCount();
  const double before = program.uniqueMemory();
  Cost cost;
  {
    const auto held = hold(measured.client);
    program.settle();
    cost.kilobytes = (program.uniqueMemory() - before) / kConnections / kKilobyte;
  }
  while (!measured.client.receive(kQuiet).empty()) continue;
  program.settle();
  cost.threadsLeft = program.threadCount() - threads;
  return cost;
}

/// A kind of command, and a function that creates one of `size` bytes.
struct Content {
  const char* name;
  std::function<std::string(std::size_t size)> make;
};

std::string repeated(const std::string& piece, std::size_t size) {
  std::string text;
  text.reserve(size);
  while (text.size() + piece.size() <= size) text += piece;
  return text;
}

/// `before`, as many `piece` as fit, and `after`.
Content filled(const char* name, const std::string& before, const std::string& piece,
               const std::string& after) {
  const auto make = [=](std::size_t size) {
    return before + repeated(piece, size - before.size() - after.size()) + after;
  };
  return {name, make};
}

std::string balancedBrackets(std::size_t size) {
  const std::size_t depth = size / 2 - 4;
  return R"({"a":)" + std::string(depth, '[') + std::string(depth, ']') + "}";
}

std::string manyKeys(std::size_t size) {
  std::string text = "{";
  for (int key = 0; text.size() < size - 16; ++key) {
    text += (key > 0 ? ",\"" : "\"") + std::to_string(key) + "\":0";
  }
  return text + "}";
}

/// The worst cases. The texts are command names, which the answer repeats.
const Content kContents[] = {
    filled("open brackets", "", "[", ""),
    {"balanced brackets", balancedBrackets},
    filled("an array of numbers", R"({"a":[0)", ",1", "]}"),
    filled("one long number", R"({"virtualkey":1)", "0", "e-9}"),
    {"many keys", manyKeys},
    filled("one long key", R"({")", "k", R"(":0})"),
    filled("one long text", R"({"command":")", "x", R"("})"),
    filled("short escapes", R"({"command":")", R"(\n)", R"("})"),
    filled("long escapes", R"({"command":")", R"(\u20ac)", R"("})"),
    filled("slashes, escaped in the answer", R"({"command":")", "/", R"("})"),
    filled("deletes, six times as long in the answer", R"({"command":")", "\x7F", R"("})"),
    filled("wide characters", R"({"command":")", "\xF0\x9F\x98\x80", R"("})"),
};

/// Sends a command, and returns when it has been answered.
void sendAlone(const UcClient& client, const std::string& command) {
  static_cast<void>(client.ask(command, kLargeCommand));
}

/// Another client connects before the command ends, so that it is discarded.
void sendOverlapping(const UcClient& client, const std::string& command) {
  const auto held = client.connect();
  write(held, command);
  static_cast<void>(client.ask("", kLargeCommand));
}

using Send = void (*)(const UcClient& client, const std::string& command);

/// The peak for a command of that many megabytes, in multiples of its size, without kAnyCommand.
double peakOf(const Measured& measured, const Content& content, Send send, double megabytes) {
  const std::string command = content.make(static_cast<std::size_t>(megabytes * kMegabyte));
  measured.program.settle();
  const double before = measured.program.resetPeakMemory();
  send(measured.client, command);
  return (measured.program.peakMemory() - before - kAnyCommand) /
         static_cast<double>(command.size());
}

Row peakRow(const Measured& measured, const Content& content, Send send = sendAlone) {
  std::string peaks;
  double worst = 0;
  for (const double megabytes : kCommandMegabytes) {
    const double peak = peakOf(measured, content, send, megabytes);
    peaks += text("%.2f ", peak);
    worst = std::max(worst, peak);
  }
  return {text("4, 16, 64 MiB: %s", content.name), peaks + "x", "1 x", text("%.0f x", kLimitPeak),
          worst <= kLimitPeak};
}

}  // namespace

std::vector<Row> idle() {
  const tests::XServer server;
  const tests::Sway sway;
  auto rows = idleOn("X11", {server.environment()}, kLimitIdleMegabytesOnX11);
  for (auto& row : idleOn("sway", sway.environment(), kLimitIdleMegabytesOnSway)) {
    rows.push_back(std::move(row));
  }
  return rows;
}

std::vector<Row> growth() {
  const double ours = growthPerCommand(Measured(seldial()));
  const double floor = growthPerCommand(Measured(threadPerConnection(100)));
  return {{text("growth per command, of %d", kCommands), text("%.2f bytes", ours),
           text("%.2f bytes", floor), text("below %.0f bytes", kLimitGrowthBytes),
           ours < kLimitGrowthBytes}};
}

std::vector<Row> heldConnections() {
  const auto ours = costOf(Measured(seldial()));
  const auto floor = costOf(Measured(threadPerConnection(100)));
  return {{text("memory of each of %d held connections", kConnections),
           text("%.1f kB", ours.kilobytes), text("%.1f kB", floor.kilobytes),
           text("%.0f kB", kLimitConnectionKilobytes), ours.kilobytes <= kLimitConnectionKilobytes},
          {"threads left after they are gone", text("%d", ours.threadsLeft),
           text("%d", floor.threadsLeft), "0", ours.threadsLeft == 0}};
}

std::vector<Row> commandMemory() {
  const Measured measured(seldial());
  static_cast<void>(measured.client.ask("{}"));
  measured.program.settle();
  const double before = measured.program.uniqueMemory();
  std::vector<Row> rows;
  for (const auto& content : kContents) rows.push_back(peakRow(measured, content));
  rows.push_back(
      peakRow(measured, filled("discarded for another client", "", "x", ""), sendOverlapping));
  measured.program.settle();
  const double left = (measured.program.uniqueMemory() - before) / kMegabyte;
  rows.push_back({"memory left after them", text("%.2f MB", left), "0 MB",
                  text("%.1f MB", kLimitLeftMegabytes), left <= kLimitLeftMegabytes});
  return rows;
}

}  // namespace seldial::bench
