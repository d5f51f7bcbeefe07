#include "platform/wayland/SwayHotKeys.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <utility>

#include "api/JSON.h"
#include "platform/Output.h"
#include "platform/System.h"
#include "platform/linux/KeyTable.h"

namespace seldial::platform::wayland {
namespace {

/// How long a key counts as held if sway does not report its release.
constexpr std::chrono::seconds kMaxPressTime{10};

constexpr const char* kPressed = "pressed";
constexpr const char* kReleased = "released";

/// The command of a registration's bindings. It contains the process ID because every Seldial
/// receives the events of all bindings.
std::string commandOf(HotKeyRef ref, const char* what) {
  return "nop seldial " + std::to_string(getpid()) + " " + std::to_string(ref) + " " + what;
}

std::string unbindCommands(const std::string& combination) {
  return "unbindcode --release " + combination + "; unbindcode " + combination;
}

std::string quoted(const std::string& text) {
  std::string result = "\"";
  for (const char character : text) {
    if (character == '"' || character == '\\') result += '\\';
    result += character;
  }
  return result + '"';
}

std::string fileName(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

/// A text in the dictionary, or in its member `outer`; empty if there is none.
std::string stringAt(const std::optional<JSONValue>& value, std::string_view key,
                     std::string_view outer = {}) {
  const auto* dictionary = value ? value->dictionary() : nullptr;
  if (dictionary != nullptr && !outer.empty()) {
    const auto found = dictionary->find(outer);
    dictionary = found != dictionary->end() ? found->second.dictionary() : nullptr;
  }
  if (dictionary == nullptr) return {};
  const auto found = dictionary->find(key);
  const auto* const text = found != dictionary->end() ? found->second.text() : nullptr;
  return text != nullptr ? *text : std::string();
}

}  // namespace

SwayHotKeys::SwayHotKeys(std::unique_ptr<SwayConnection> commands,
                         std::unique_ptr<SwayConnection> events, const std::string& socketPath,
                         linux_port::MainLoop& loop, SymbolsOfKey symbolsOfKey,
                         std::function<void()> connectionLost)
    : RegisteredHotKeys(loop),
      loop_(loop),
      commands_(std::move(commands)),
      symbolsOfKey_(std::move(symbolsOfKey)),
      claims_(sharedRuntimeDirectory(), fileName(socketPath)),
      events_(
          std::move(events), R"(["binding","workspace","mode"])", loop,
          [this](SwayEvent event, const std::string& content) { handle(event, content); },
          std::move(connectionLost)) {
  for (const auto& combination : claims_.takeAbandoned()) unbind(combination, {});
}

SwayHotKeys::~SwayHotKeys() {
  unregisterAll();
}

std::optional<HotKeyRef> SwayHotKeys::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                     HotKeyID hotKeyID) {
  if (!canBeHotKey(keyCode, modifiers)) return {};
  const SwayCombination combination{*linux_port::keyAtPosition(keyCode),
                                    modifiers & linux_port::kHotKeyModifiers};
  auto claim = claims_.claim(combination.text());
  if (!claim || !isFree(combination)) return {};
  auto registration = makeRegistration(hotKeyID, {combination, std::move(*claim), {}});
  if (!bind(registration, currentMode())) {
    unbind(combination.text(), {});
    return {};
  }
  return add(std::move(registration));
}

bool SwayHotKeys::canBeHotKey(std::uint32_t keyCode, std::uint32_t modifiers) {
  return linux_port::canBeBound(keyCode, modifiers);
}

bool SwayHotKeys::isFree(const SwayCombination& combination) {
  const std::string file = answer(SwayRequest::kGetVersion, "loaded_config_file_name");
  const SwayConfiguration configuration{answer(SwayRequest::kGetConfig, "config"),
                                        std::filesystem::path(file).parent_path()};
  const auto line = findBinding(configuration, combination, symbolsOfKey_(combination.key));
  if (line) {
    printError("seldial: sway's configuration already binds this combination: " + *line);
  }
  return !line;
}

/// Adds the bindings in `mode`, the current binding mode.
bool SwayHotKeys::bind(Registration& registration, const std::string& mode) {
  registration.modes.insert(mode);
  const std::string combination = registration.combination.text();
  return commands_->run("bindcode --no-warn --no-repeat " + combination + " " +
                        commandOf(registration.ref, kPressed) + "; bindcode --no-warn --release " +
                        combination + " " + commandOf(registration.ref, kReleased));
}

void SwayHotKeys::unregisterHotKey(HotKeyRef ref) {
  waitForRelease();
  if (const auto removed = remove(ref)) unbind(removed->combination.text(), removed->modes);
}

void SwayHotKeys::unregisterAll() {
  if (registrations_.empty()) return;
  if (waitForRelease()) {
    for (const auto& registration : registrations_) {
      unbind(registration.combination.text(), registration.modes);
    }
  }
  registrations_.clear();
}

/// sway crashes if a binding is removed while its key is held: the release uses the binding. If
/// another key was pressed meanwhile, sway reports no release, and the binding can be removed after
/// a while. False if the program must end at once.
bool SwayHotKeys::waitForRelease() {
  commands_->ask(SwayRequest::kGetBindingState);  // sway sends earlier events before its reply
  events_.waitFor([this] { return !pressed_; }, pressed_.value_or(Clock::now()) + kMaxPressTime);
  return !pressed_ || !loop_.interrupted();
}

/// Removes the bindings in the current mode and in `modes`. sway removes bindings only from the
/// current mode, so the other modes are entered for this, in a single message that cannot be
/// interrupted.
void SwayHotKeys::unbind(const std::string& combination, const std::set<std::string>& modes) {
  const std::string current = currentMode();
  std::string commands = unbindCommands(combination);
  bool left = false;
  for (const auto& mode : modes) {
    if (mode == current) continue;
    commands += "; mode " + quoted(mode) + "; " + unbindCommands(combination);
    left = true;
  }
  if (left) commands += "; mode " + quoted(current);
  commands_->run(commands);  // a missing binding is not an error here
}

std::string SwayHotKeys::currentMode() {
  auto mode = answer(SwayRequest::kGetBindingState, "name");
  return mode.empty() ? "default" : mode;
}

/// A text in the reply to a request; empty if there is none.
std::string SwayHotKeys::answer(SwayRequest request, const char* key) {
  const auto reply = commands_->ask(request);
  return stringAt(reply ? readJSON(*reply) : std::nullopt, key);
}

std::vector<std::string> SwayHotKeys::focusedProgram() {
  const auto tree = commands_->ask(SwayRequest::kGetTree);
  return tree ? wayland::focusedProgram(*tree) : std::vector<std::string>();
}

void SwayHotKeys::handle(SwayEvent event, const std::string& content) {
  const auto value = readJSON(content);
  if (event == SwayEvent::kBinding) {
    used(stringAt(value, "command", "binding"));
  } else if (event == SwayEvent::kMode) {
    bindMissing();
  } else if (event == SwayEvent::kWorkspace && stringAt(value, "change") == "reload") {
    for (auto& registration : registrations_) registration.modes.clear();
    bindMissing();
  }
}

void SwayHotKeys::used(const std::string& command) {
  for (const auto& registration : registrations_) {
    if (command == commandOf(registration.ref, kPressed)) pressed_ = Clock::now();
    if (command != commandOf(registration.ref, kReleased)) continue;
    pressed_.reset();
    postReleased(registration.hotKeyID);
  }
}

/// Never replaces a binding, whose keys may be down; see waitForRelease().
void SwayHotKeys::bindMissing() {
  const std::string mode = currentMode();
  for (auto& registration : registrations_) {
    if (registration.modes.contains(mode)) continue;
    if (!isFree(registration.combination) || !bind(registration, mode)) {
      printError("seldial: the hot key cannot be registered with the new configuration");
    }
  }
}

}  // namespace seldial::platform::wayland
