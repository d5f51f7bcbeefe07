#include "platform/linux/WaylandModule.h"

#include <dlfcn.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "platform/Output.h"
#include "platform/System.h"
#include "platform/linux/NoDesktop.h"
#include "platform/wayland/Desktop.h"

namespace seldial::platform::linux_port {
namespace {

std::string environment(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

/// A connection to the compositor that WAYLAND_DISPLAY names, a path or a file in the runtime
/// directory; -1 when none answers.
int connectToCompositor() {
  std::string path = environment("WAYLAND_DISPLAY");
  if (path.empty()) return -1;
  if (path[0] != '/') path = environment("XDG_RUNTIME_DIR") + "/" + path;
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) return -1;
  path.copy(address.sun_path, path.size());
  const int number = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (number == -1) return -1;
  if (connect(number, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0) return number;
  close(number);
  return -1;
}

/// The function in the module, beside the program in a build or where it is installed; null after
/// one line on standard error.
wayland::ConnectFunction* loadModule() {
  const std::string program = executablePath();
  const std::string folder = program.substr(0, program.rfind('/') + 1);
  std::string error;
  for (const std::string place : {"", SELDIAL_MODULE_DIRECTORY}) {
    const std::string path = folder + place + wayland::kModuleName;
    if (access(path.c_str(), F_OK) != 0) continue;
    void* const module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    void* const function =
        module != nullptr ? dlsym(module, wayland::kConnectFunctionName) : nullptr;
    if (function != nullptr) return reinterpret_cast<wayland::ConnectFunction*>(function);
    error = dlerror();
  }
  printError("seldial: this is a Wayland session, and " + std::string(wayland::kModuleName) +
             " cannot be loaded (" + (error.empty() ? "it is not installed" : error) +
             "); there will be no hot key");
  return nullptr;
}

}  // namespace

std::optional<DesktopPorts> connectToWayland(const std::shared_ptr<MainLoop>& loop,
                                             const std::function<void()>& connectionLost) {
  const int socket = connectToCompositor();
  if (socket == -1) return {};
  DesktopPorts ports{std::make_shared<NoHotKeyEvents>(), std::make_shared<NoClipboard>()};
  if (auto* const connectIn = loadModule()) {
    connectIn(socket, loop, connectionLost, ports);
  } else {
    close(socket);
  }
  return ports;
}

}  // namespace seldial::platform::linux_port
