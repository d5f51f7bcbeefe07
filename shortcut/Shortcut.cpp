#include "shortcut/Shortcut.h"

#include <QCoreApplication>
#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <iterator>
#include <map>
#include <memory>
#include <mutex>

#include "client/Connection.h"
#include "client/Protocol.h"
#include "hotkey/QKHotKeyCenter.h"
#include "hotkey/QKKeyStrings.h"
#include "platform/System.h"
#include "platform/VirtualKeys.h"
#include "unixsocket/GDUnixSocketServer.h"

namespace seldial {
namespace {

using namespace platform;  // NOLINT: keys and modifiers by their short names

struct Texts {
  Q_DECLARE_TR_FUNCTIONS(Keys)
};

struct LabelledKey {
  VirtualKey key;
  const char* label;
};

/// Names of keys that are displayed as a glyph or not at all. All other keys are named by the
/// character that they type.
constexpr LabelledKey kLabels[] = {
    {kVK_Return, QT_TRANSLATE_NOOP("Keys", "Return")},
    {kVK_Tab, QT_TRANSLATE_NOOP("Keys", "Tab")},
    {kVK_Space, QT_TRANSLATE_NOOP("Keys", "Space")},
    {kVK_Delete, QT_TRANSLATE_NOOP("Keys", "Backspace")},
    {kVK_Escape, QT_TRANSLATE_NOOP("Keys", "Escape")},
    {kVK_CapsLock, QT_TRANSLATE_NOOP("Keys", "Caps Lock")},
    {kVK_ANSI_KeypadClear, QT_TRANSLATE_NOOP("Keys", "Num Lock")},
    {kVK_VolumeUp, QT_TRANSLATE_NOOP("Keys", "Volume Up")},
    {kVK_VolumeDown, QT_TRANSLATE_NOOP("Keys", "Volume Down")},
    {kVK_Mute, QT_TRANSLATE_NOOP("Keys", "Mute")},
    {kVK_ANSI_KeypadEnter, QT_TRANSLATE_NOOP("Keys", "Enter")},
    {kVK_ContextualMenu, QT_TRANSLATE_NOOP("Keys", "Menu")},
    {kVK_Help, QT_TRANSLATE_NOOP("Keys", "Insert")},
    {kVK_Home, QT_TRANSLATE_NOOP("Keys", "Home")},
    {kVK_PageUp, QT_TRANSLATE_NOOP("Keys", "Page Up")},
    {kVK_ForwardDelete, QT_TRANSLATE_NOOP("Keys", "Delete")},
    {kVK_End, QT_TRANSLATE_NOOP("Keys", "End")},
    {kVK_PageDown, QT_TRANSLATE_NOOP("Keys", "Page Down")},
    {kVK_LeftArrow, QT_TRANSLATE_NOOP("Keys", "Left")},
    {kVK_RightArrow, QT_TRANSLATE_NOOP("Keys", "Right")},
    {kVK_DownArrow, QT_TRANSLATE_NOOP("Keys", "Down")},
    {kVK_UpArrow, QT_TRANSLATE_NOOP("Keys", "Up")},
};

/// The labels of the modifiers, listed here for the translation tools.
[[maybe_unused]] constexpr const char* kModifierLabels[] = {
    QT_TRANSLATE_NOOP("Keys", "Ctrl"), QT_TRANSLATE_NOOP("Keys", "Alt"),
    QT_TRANSLATE_NOOP("Keys", "Shift"), QT_TRANSLATE_NOOP("Keys", "Super")};

constexpr VirtualKey kKeypadKeys[] = {
    kVK_ANSI_KeypadDecimal, kVK_ANSI_KeypadMultiply, kVK_ANSI_KeypadPlus, kVK_ANSI_KeypadDivide,
    kVK_ANSI_KeypadMinus,   kVK_ANSI_KeypadEquals,   kVK_ANSI_Keypad0,    kVK_ANSI_Keypad1,
    kVK_ANSI_Keypad2,       kVK_ANSI_Keypad3,        kVK_ANSI_Keypad4,    kVK_ANSI_Keypad5,
    kVK_ANSI_Keypad6,       kVK_ANSI_Keypad7,        kVK_ANSI_Keypad8,    kVK_ANSI_Keypad9,
    kVK_JIS_KeypadComma,
};

QString keyLabel(std::uint16_t keyCode, KeyboardLayout& layout) {
  const auto* const labelled =
      std::find_if(std::begin(kLabels), std::end(kLabels),
                   [=](const LabelledKey& entry) { return entry.key == keyCode; });
  if (labelled != std::end(kLabels)) return Texts::tr(labelled->label);
  const QString typed = QString::fromStdString(QKStringFromKeyCode(keyCode, 0, layout)).toUpper();
  if (typed.isEmpty()) return Texts::tr("key %1").arg(keyCode);
  const bool keypad =
      std::find(std::begin(kKeypadKeys), std::end(kKeypadKeys), keyCode) != std::end(kKeypadKeys);
  return keypad ? Texts::tr("Keypad %1").arg(typed) : typed;
}

/// Time limit for the answer. A seldial that is dialling answers after the call.
constexpr std::chrono::seconds kAnswerLimit{10};

/// Waits for the first answer among the messages that arrive. A MakeCall is not an answer.
class Receiver final : public GDUnixSocketServerDelegate {
 public:
  /// Nothing if none has arrived in time.
  std::optional<Message> wait() {
    std::unique_lock lock(mutex_);
    arrived_.wait_for(lock, kAnswerLimit, [this] { return answer_.has_value(); });
    return answer_;
  }

  void unixSocketServerDidReceiveData(GDUnixSocketServer& /*server*/, const Data& data,
                                      const std::string& clientID) override {
    const std::lock_guard lock(mutex_);
    partial_[clientID] += data;
  }

  void unixSocketServerClientWithIDDidDisconnect(GDUnixSocketServer& /*server*/,
                                                 const std::string& clientID) override {
    const std::lock_guard lock(mutex_);
    const Message message = messageFromJSON(partial_[clientID]);
    const bool isAnswer =
        message.kind != Message::Kind::Unknown && message.kind != Message::Kind::MakeCall;
    if (isAnswer) answer_ = message;
    arrived_.notify_one();
  }

 private:
  std::mutex mutex_;  ///< guards the members below
  std::condition_variable arrived_;
  std::map<std::string, std::string> partial_;  ///< messages, by connection
  std::optional<Message> answer_;
};

/// Closes the server at the end of the scope: a listening server lives until it is closed.
struct CloseServer {
  void operator()(GDUnixSocketServer* server) const { server->close(); }
};

struct DeliveryTexts {
  Q_DECLARE_TR_FUNCTIONS(Delivery)
};

std::optional<std::string> failureOf(const std::optional<Message>& answer) {
  if (!answer) return DeliveryTexts::tr("Seldial has not answered").toStdString();
  if (answer->kind == Message::Kind::HotKeySet) return std::nullopt;
  return DeliveryTexts::tr("Seldial refused the shortcut: %1")
      .arg(QString::fromStdString(answer->text))
      .toStdString();
}

}  // namespace

QStringList keyLabels(const QKHotKey& hotKey, KeyboardLayout& layout) {
  QStringList words;
  for (const auto& modifier : kModifiers) {
    if ((hotKey.modifierFlags() & modifier.flag) != 0) words << Texts::tr(modifier.label);
  }
  if (!hasOnlyModifiers(hotKey)) words << keyLabel(hotKey.keyCode(), layout);
  return words;
}

QString shortcutText(const QKHotKey& hotKey, KeyboardLayout& layout) {
  return keyLabels(hotKey, layout).join(QStringLiteral(" + "));
}

HotKey hotKeyOf(const QKHotKey& hotKey) {
  HotKey result;
  result.virtualKey = hotKey.keyCode();
  for (const auto& modifier : kModifiers) {
    result.modifierFlags |= hotKey.modifierFlags() & modifier.flag;
  }
  return result;
}

bool hasOnlyModifiers(const QKHotKey& hotKey) {
  return isModifierKey(hotKey.keyCode());
}

bool ShortcutTrial::isUsable(const QKHotKey& hotKey) {
  const auto center = QKHotKeyCenter::sharedHotKeyCenter();
  return center && center->canRegisterHotKeyWithKeyCode(hotKey.keyCode(), hotKey.modifierFlags());
}

ShortcutState ShortcutTrial::start(const std::shared_ptr<QKHotKey>& hotKey) {
  if (hotKey_ == hotKey) return hotKey ? ShortcutState::kFree : ShortcutState::kUnknown;
  stop();
  const auto center = QKHotKeyCenter::sharedHotKeyCenter();
  if (!hotKey || !center) return ShortcutState::kUnknown;
  if (!isUsable(*hotKey)) return ShortcutState::kUnusable;
  hotKey_ = center->registerHotKey(hotKey);
  return hotKey_ ? ShortcutState::kFree : ShortcutState::kHeld;
}

void ShortcutTrial::stop() {
  if (!hotKey_) return;
  QKHotKeyCenter::sharedHotKeyCenter()->unregisterHotKey(hotKey_);
  hotKey_.reset();
}

std::optional<std::string> sendAndAwaitAnswer(const std::string& command, const std::string& path,
                                              const std::string& answerPath) {
  if (isListening(answerPath)) return sendCommand(command, path);
  const auto server = GDUnixSocketServer::initWithSocketPath(answerPath);
  if (!server) return answerPath + " cannot be the path of a socket";
  const std::unique_ptr<GDUnixSocketServer, CloseServer> closed(server.get());
  const auto receiver = std::make_shared<Receiver>();
  server->setDelegate(receiver);
  std::optional<Error> error;
  if (!server->listenWithError(&error)) {
    return "cannot listen at " + answerPath + ": " + platform::errorText(error->errorNumber);
  }
  auto failure = sendCommand(command, path);
  return failure ? failure : failureOf(receiver->wait());
}

}  // namespace seldial
