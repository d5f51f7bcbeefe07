// use_sample COMMAND...: runs a sample on a private desktop, presses its hot key, and stops it.
#include <csignal>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/desktop/Keyboard.h"
#include "tests/support/desktop/Keys.h"
#include "tests/support/desktop/XClient.h"
#include "tests/support/desktop/XServer.h"

namespace seldial::tests {
namespace {

void expect(bool condition, const std::string& what) {
  if (!condition) throw std::runtime_error(what);
}

void expectLine(ChildProcess& sample, const std::string& begin, const std::string& part = {}) {
  const std::string line = sample.readLine();
  expect(line.starts_with(begin) && line.find(part) != std::string::npos, "it said " + line);
}

void use(Keyboard& keyboard) {
  keyboard.press({kKeyLeftControl, kKeyLeftAlt, kKeyD});
  keyboard.release({kKeyD, kKeyLeftAlt, kKeyLeftControl});
}

void tryOut(const std::vector<std::string>& command) {
  const XServer server;
  Keyboard keyboard(server.display());
  const XClient editor(server.display());
  const TemporaryDirectory place;
  std::filesystem::create_directory(place.path("run"));
  ChildProcess sample(command, {server.environment(), "XDG_RUNTIME_DIR=" + place.path("run"),
                                "TMPDIR=" + place.path("run")});
  expectLine(sample, "hot key is set");
  for (int i = 0; i < 2; ++i) {
    use(keyboard);
    expectLine(sample, "call: ", "+31 20 123 4567");
  }
  sample.signal(SIGINT);
  expect(sample.wait() == 0, "it did not end with status 0");
  expect(std::filesystem::is_empty(place.path("run")), "it left files behind");
}

}  // namespace
}  // namespace seldial::tests

int main(int argc, char* argv[]) {
  try {
    seldial::tests::expect(argc > 1, "usage: use_sample COMMAND...");
    seldial::tests::tryOut({argv + 1, argv + argc});
  } catch (const std::exception& failure) {
    (void)std::fprintf(stderr, "use_sample: %s\n", failure.what());
    return 1;
  }
  return 0;
}
