// From a SetHotKey command to a registered hot key, and from its use to a MakeCall.
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

void AppDelegate::processSetHotKey(const SetHotKeyApi& command) {
  log("process set hotkey");
  unregisterCurrentHotKey();  // before any check: a rejected command leaves no hot key, on purpose
  if (command.VirtualKey == SetHotKeyApi::kNoVirtualKey) {
    return sendHotKeyState({false, "invalid virtual key value"});
  }
  const auto center = QKHotKeyCenter::sharedHotKeyCenter();
  if (!center) return sendHotKeyState({false, "internal error; hotkey center"});
  // Weakly: this object owns the record, and the record its task.
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
  const auto number = desktop_.clipboard->text();
  if (!number) return log("no number found on pasteboard");
  const auto message = MakeCallApi{number}.toJSONString();
  if (!message) return log("error while serializing [makecall]");
  emitMessage(*message);
}

void AppDelegate::copySelectionToPasteboard() {
  if (desktop_.clipboard->copySelection()) return;
  log("internal error; copy selection to pastboard");  // the misspelling is kept
}

}  // namespace seldial
