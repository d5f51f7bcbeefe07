// The entry point of the program on Linux, which chooses the desktop: Wayland in a Wayland session,
// otherwise X11.
//
// The Wayland port is a module that is loaded in a Wayland session only, so that the program on X11
// does not load the Wayland libraries.
#include <dlfcn.h>
#include <malloc.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <optional>
#include <string>

#include "platform/Output.h"
#include "platform/Ports.h"
#include "platform/System.h"
#include "platform/linux/Application.h"
#include "platform/linux/BackgroundQueue.h"
#include "platform/wayland/Desktop.h"
#include "platform/x11/Desktop.h"

namespace seldial::platform {
namespace {

using linux_port::MainLoop;
using linux_port::noDesktop;

std::string environment(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

/// The socket of the compositor that WAYLAND_DISPLAY names, a path or a file in the runtime
/// directory; empty if it is not set.
std::string compositorPath() {
  std::string path = environment("WAYLAND_DISPLAY");
  if (!path.empty() && path[0] != '/') path = environment("XDG_RUNTIME_DIR") + "/" + path;
  return path;
}

/// A connection to the compositor; -1 and errno if there is none.
int connectToCompositor(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) {
    errno = ENAMETOOLONG;
    return -1;
  }
  path.copy(address.sun_path, path.size());
  // Non-blocking: a frozen compositor accepts nothing, and connecting would wait once its backlog
  // is full. libwayland works with either kind.
  const int number = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (number == -1) return -1;
  if (connect(number, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0) return number;
  const int error = errno;
  close(number);
  errno = error;
  return -1;
}

/// The module's connect function. The module is next to the program in a build folder, otherwise
/// where it is installed. Null, after one line on standard error, if it cannot be loaded.
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

/// The ports of the Wayland session whose compositor listens at WAYLAND_DISPLAY; nothing if there
/// is none. If the compositor is frozen or the module is missing, the ports refuse everything. X11
/// is not tried then: Xwayland, which the session may also have, does not report keys that go to
/// Wayland windows.
std::optional<DesktopPorts> connectToWayland(const std::shared_ptr<MainLoop>& loop,
                                             const std::function<void()>& connectionLost) {
  const std::string path = compositorPath();
  if (path.empty()) return {};
  const int socket = connectToCompositor(path);
  if (socket == -1 && errno != EAGAIN) return {};
  DesktopPorts ports = noDesktop();
  if (socket == -1) {
    printError("seldial: the Wayland session " + environment("WAYLAND_DISPLAY") +
               " does not answer; there will be no hot key");
  } else if (auto* const connectIn = loadModule()) {
    connectIn(socket, loop, connectionLost, ports);
  } else {
    close(socket);
  }
  return ports;
}

DesktopPorts connectDesktop(const std::shared_ptr<MainLoop>& loop,
                            std::function<void()> connectionLost) {
  if (auto ports = connectToWayland(loop, connectionLost)) return *std::move(ports);
  if (const auto session = x11::connect(loop, std::move(connectionLost))) {
    return {x11::hotKeyEvents(session), x11::makeClipboard(session)};
  }
  return noDesktop();
}

/// Call this before any other thread is started. Programs that use only the libraries keep their
/// own allocator settings.
void tuneAllocator() {
  mallopt(M_ARENA_MAX, 1);  // threads come and go, and each would keep an arena
  // Large blocks are returned to the system when they are freed. By default, freeing the first one
  // raises this limit, and later ones stay in the process.
  mallopt(M_MMAP_THRESHOLD, 128 * 1024);
  // The program is idle then: return the memory of the last burst to the system.
  linux_port::setBackgroundThreadEndAction([] { malloc_trim(0); });
}

}  // namespace

int applicationMain(int argc, char* const argv[], const MakeApplicationDelegate& makeDelegate) {
  tuneAllocator();
  return linux_port::runApplication(argc, argv, makeDelegate, connectDesktop);
}

}  // namespace seldial::platform
