#include "platform/wayland/PressHotKeys.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <utility>

#include "platform/Output.h"
#include "platform/System.h"
#include "platform/linux/KeyTable.h"

namespace seldial::platform::wayland {
namespace {

/// The number of presses that may wait while one is handled.
constexpr int kBacklog = 16;

/// Creates a socket that listens at `path`, replacing any file there; -1 on failure.
int listenAt(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.empty() || path.size() >= sizeof address.sun_path) return -1;
  path.copy(address.sun_path, path.size());
  const int number = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (number == -1) return -1;
  unlink(path.c_str());
  if (bind(number, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
      ::listen(number, kBacklog) == 0) {
    return number;
  }
  close(number);
  return -1;
}

}  // namespace

PressHotKeys::PressHotKeys(linux_port::MainLoop& loop, std::string session)
    : RegisteredHotKeys(loop), loop_(loop), session_(std::move(session)) {}

PressHotKeys::~PressHotKeys() {
  unregisterAll();
}

std::optional<HotKeyRef> PressHotKeys::registerHotKey(std::uint32_t keyCode,
                                                      std::uint32_t modifiers, HotKeyID hotKeyID) {
  if (!canBeHotKey(keyCode, modifiers)) return {};
  if (socket_ == -1 && !listen()) {
    printError(
        "seldial: another Seldial waits for \"seldial-uc press\", or there is no runtime "
        "directory for its socket");
    return {};
  }
  printError(
      "seldial: " + session_ +
      " has no hot keys for programs; bind a key to \"seldial-uc press\" in its configuration");
  return add(makeRegistration(hotKeyID, {}));
}

bool PressHotKeys::canBeHotKey(std::uint32_t keyCode, std::uint32_t /*modifiers*/) {
  return linux_port::keyAtPosition(keyCode).has_value();
}

void PressHotKeys::unregisterHotKey(HotKeyRef ref) {
  remove(ref);
  if (registrations_.empty()) unregisterAll();
}

/// Because of the claim, an existing socket file belongs to a killed process.
bool PressHotKeys::listen() {
  claim_ = HotKeyClaims(sharedRuntimeDirectory(), "press").claim("socket");
  if (claim_) socket_ = listenAt(pressSocketPath());
  if (socket_ == -1) {
    claim_.reset();
    return false;
  }
  loop_.watch(*this);
  return true;
}

void PressHotKeys::unregisterAll() {
  registrations_.clear();
  if (socket_ == -1) return;
  loop_.unwatch(*this);
  unlink(pressSocketPath().c_str());
  close(std::exchange(socket_, -1));
  claim_.reset();
}

void PressHotKeys::readable() {
  for (int press = accept(socket_, nullptr, nullptr); press != -1;
       press = accept(socket_, nullptr, nullptr)) {
    close(press);
    postReleased(registrations_.back().hotKeyID);
  }
}

}  // namespace seldial::platform::wayland
