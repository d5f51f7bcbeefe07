#include "ucclient/Trial.h"

#include <csignal>

#include "client/Connection.h"
#include "ucclient/Places.h"

namespace seldial {
namespace {

/// The text that is selected in the window. It is not a telephone number.
constexpr const char* kSelectedText = "Seldial 0123456789";

/// On a busy desktop, a window that has just opened may not copy at once.
constexpr int kMostWindows = 3;

}  // namespace

std::optional<Message> Trial::run(const std::string& program, std::string& failure) {
  const auto directory = PrivateDirectory::makeUnder(PrivateDirectory::usualParents());
  path_ = directory ? directory->file("dialer") : "";
  const auto seldial =
      ChildProcess::start({program, "-jsonlog", "dialerpipename=" + path_},
                          {[this, main = mainThread_](const std::string& line) {
                             main->post([this, line] { wrote(line); });
                           },
                           [main = mainThread_] { main->post([main] { main->stop(); }); }},
                          failure);
  if (!seldial) return std::nullopt;
  mainThread_->run();
  copying_.reset();
  seldial->signal(SIGTERM);
  const int status = seldial->wait();
  if (!answer_ && failure_.empty()) failure_ = "seldial " + describedExitStatus(status);
  failure = failure_;
  return answer_;
}

void Trial::wrote(const std::string& line) {
  const auto logged = loggedMessage(line);
  if (logged && logged->starts_with("Unix socket server listen ok")) return setHotKey();
  if (logged == "no number found on pasteboard") {
    return windows_ < kMostWindows ? useHotKey() : endWith("nothing was copied");
  }
  const Message message = messageFromJSON(line);
  if (message.kind == Message::Kind::Unknown) return;
  if (message.kind == Message::Kind::MakeCall) {
    return endWith(message.text == kSelectedText ? "" : "another text than the selected one came");
  }
  answer_ = message;
  const bool isSet = message.kind == Message::Kind::HotKeySet;
  isSet && !window_.empty() ? useHotKey() : mainThread_->stop();
}

void Trial::setHotKey() {
  const auto failed = sendCommand(setHotKeyCommand(hotKey_, delay_), path_);
  if (!failed) return;
  failure_ = *failed;
  mainThread_->stop();
}

void Trial::useHotKey() {
  std::string error;
  const int window = ++windows_;
  const std::string spelling = spellingOfHotKey(hotKey_).value_or("");
  copying_ = ChildProcess::start(
      {window_, "--test-copy", kSelectedText, "--hotkey", spelling},
      {[](const std::string& /*line*/) {},
       [this, window, main = mainThread_] { main->post([this, window] { windowEnded(window); }); }},
      error);
  if (!copying_) endWith(error);
}

void Trial::windowEnded(int window) {
  if (window == windows_) endWith("the hot key did not work in a window");
}

void Trial::endWith(const std::string& copyFailure) {
  if (!copyFailure.empty()) copyFailure_ = copyFailure;
  mainThread_->stop();
}

}  // namespace seldial
