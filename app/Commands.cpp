// Commands: validation, SetHotKey, and handling of the hot key.
#include <utility>

#include "api/MessageRecords.h"
#include "app/AppDelegate.h"
#include "hotkey/QKHotKey.h"
#include "hotkey/QKHotKeyCenter.h"
#include "platform/Clipboard.h"
#include "platform/VirtualKeys.h"

namespace seldial {
namespace {

std::uint64_t modifierFlags(const SetHotKeyApi& command) {
  std::uint64_t flags = 0;
  if (command.ModifierShift) flags |= platform::kModifierFlagShift;
  if (command.ModifierCtrl) flags |= platform::kModifierFlagControl;
  if (command.ModifierAlt) flags |= platform::kModifierFlagOption;
  if (command.ModifierCommand) flags |= platform::kModifierFlagCommand;
  return flags;
}

}  // namespace

// The texts mention the standard input stream, which is never read. They are part of the interface.
void AppDelegate::processInputString(std::optional<std::string> input) {
  if (!input) return answerError("error reading from standard input stream");
  if (input->empty()) return answerError("empty string on standard input stream");
  auto command = SetHotKeyApi::fromJSONString(*input);
  input.reset();  // frees a large input before the answer is made
  if (!command.Command) return answerError("command tag not found");
  if (lowercased(*command.Command) == "sethotkey") return processSetHotKey(command);
  answerError("invalid command: " + *std::move(command.Command));
}

void AppDelegate::answerError(std::string message) {
  log(message);
  emitMessage(ErrorApi{std::move(message)}.toJSONString());
}

void AppDelegate::processSetHotKey(const SetHotKeyApi& command) {
  log("process set hotkey");
  unregisterCurrentHotKey();  // before any check, on purpose: a rejected command leaves no hot key
  if (command.VirtualKey == SetHotKeyApi::kNoVirtualKey) {
    return sendHotKeyState({false, "invalid virtual key value"});
  }
  const auto center = QKHotKeyCenter::sharedHotKeyCenter();
  if (!center) return sendHotKeyState({false, "internal error; hotkey center"});
  // A weak reference: this object owns the record, which owns the task.
  const auto task = [weakSelf = weak_from_this()](const QKKeyEvent& /*event*/) {
    if (const auto self = weakSelf.lock()) self->hotKeyPressed();
  };
  CurrentHotKey =
      center->registerHotKeyWithKeyCode(command.VirtualKey, modifierFlags(command), task);
  if (!CurrentHotKey) return sendHotKeyState({false, "hotkey not set"});
  ReadPasteboardDelay = command.ReadDelay;
  log("ReadPasteBoardDelay: " + std::to_string(ReadPasteboardDelay));
  sendHotKeyStateOk();
}

void AppDelegate::unregisterCurrentHotKey() {
  if (!CurrentHotKey) return;
  log("unregister current hotkey");
  const auto center = QKHotKeyCenter::sharedHotKeyCenter();
  if (!center) return log("internal error; hotkey center");
  center->unregisterHotKey(CurrentHotKey);
  CurrentHotKey = nullptr;
}

void AppDelegate::sendHotKeyStateOk() {
  sendHotKeyState({true, std::nullopt});
}

void AppDelegate::sendHotKeyState(const HotKeyStateApi& state) {
  const auto message = state.toJSONString();
  if (!message) return log("error while serializing [hotkeystate]");
  emitMessage(*message);
}

void AppDelegate::hotKeyPressed() {
  log("hot key pressed (pasteboard)");
  desktop_.clipboard->clear();  // so that an older text is never dialled
  copySelectionToPasteboard();
  ports_.application->usleep(ReadPasteboardDelay * 1000U);
  auto number = desktop_.clipboard->text();
  if (!number) return log("no number found on pasteboard");
  const auto message = MakeCallApi{std::move(number)}.toJSONString();
  if (!message) return log("error while serializing [makecall]");
  emitMessage(*message);
}

void AppDelegate::copySelectionToPasteboard() {
  if (desktop_.clipboard->copySelection()) return;
  log("internal error; copy selection to pastboard");  // the misspelling is kept
}

}  // namespace seldial
