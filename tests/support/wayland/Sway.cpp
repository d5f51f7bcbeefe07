#include "tests/support/wayland/Sway.h"

#include <strings.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

#include "platform/wayland/SwayIpc.h"
#include "tests/support/Waiting.h"

namespace seldial::tests {
namespace {

using platform::wayland::SwayConnection;
using platform::wayland::SwayRequest;

/// sway refuses to run as root; root runs it as nobody.
constexpr uid_t kNobody = 65534;

std::vector<std::string> commandLine(const std::string& configuration) {
  std::vector<std::string> command{"sway", "-c", configuration};
  if (geteuid() != 0) return command;
  const std::vector<std::string> asNobody{"setpriv",
                                          "--reuid",
                                          std::to_string(kNobody),
                                          "--regid",
                                          std::to_string(kNobody),
                                          "--clear-groups",
                                          "--pdeathsig",
                                          "KILL"};
  command.insert(command.begin(), asNobody.begin(), asNobody.end());
  return command;
}

}  // namespace

Sway::Sway(const std::string& configuration) {
  configure(configuration);
  if (geteuid() == 0 && chown(directory_.path("").c_str(), kNobody, kNobody) != 0) {
    throw std::runtime_error("the runtime directory of sway cannot be given away");
  }
  auto variables = environment();
  variables.insert(variables.end(), {"WLR_BACKENDS=headless", "WLR_LIBINPUT_NO_DEVICES=1",
                                     "WLR_RENDERER=pixman", "HOME=" + directory_.path("")});
  process_ = std::make_unique<ChildProcess>(
      commandLine(directory_.path("config")), variables,
      "the tests of the Wayland port need a private compositor: sudo apt-get install sway",
      Streams{Streams::Errors::kCaptured, {}});
  process_->waitForLine("ready");
}

void Sway::configure(const std::string& configuration) const {
  std::ofstream(directory_.path("config")) << "xwayland disable\n"
                                              "output HEADLESS-1 resolution 640x480\n"
                                              "exec echo ready\n"
                                           << configuration;
}

std::vector<std::string> Sway::environment() const {
  return {"XDG_RUNTIME_DIR=" + directory_.path(""), "WAYLAND_DISPLAY=wayland-1",
          "SWAYSOCK=" + ipc(), "XDG_CURRENT_DESKTOP=sway"};
}

void Sway::enter(Ipc ipc) const {
  for (const auto& variable : environment()) {
    const auto name = variable.substr(0, variable.find('='));
    setenv(name.c_str(), variable.c_str() + name.size() + 1, 1);
  }
  if (ipc == Ipc::kHidden) unsetenv("SWAYSOCK");
}

bool Sway::run(const std::string& command) const {
  const auto connection = SwayConnection::open(ipc());
  return connection && connection->run(command);
}

void Sway::reload(const std::string& configuration) const {
  configure(configuration);
  // Reading it again takes a busy machine longer than a request may take.
  if (!eventually([this] { return run("reload"); }))
    throw std::runtime_error("sway does not reload its configuration");
}

void Sway::waitForFocus(const std::string& name) const {
  const auto connection = SwayConnection::open(ipc());
  const bool focused = eventually([&] {
    const auto tree = connection ? connection->ask(SwayRequest::kGetTree) : std::nullopt;
    const auto names = platform::wayland::focusedProgram(tree.value_or(""));
    return std::any_of(names.begin(), names.end(), [&](const std::string& id) {
      return id.size() >= name.size() &&
             strcasecmp(id.c_str() + id.size() - name.size(), name.c_str()) == 0;
    });
  });
  if (!focused) throw std::runtime_error("no window of " + name + " has the focus");
}

void Sway::kill() {
  process_->signal(SIGKILL);
  process_->wait();
}

}  // namespace seldial::tests
