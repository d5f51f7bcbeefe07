#include <csignal>

#include "client/Connection.h"
#include "ucclient/Check.h"
#include "ucclient/Paths.h"

namespace seldial {
namespace {

/// The text that is selected in the window. It is not a telephone number.
constexpr const char* kSelectedText = "Seldial 0123456789";

}  // namespace

std::optional<Message> TrialRun::run(const std::string& program, std::string& failure) {
  const auto directory = PrivateDirectory::createIn(PrivateDirectory::defaultParents());
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
  if (!answer_ && failure_.empty()) failure_ = "seldial " + describeExitStatus(status);
  failure = failure_;
  return answer_;
}

void TrialRun::wrote(const std::string& line) {
  const auto logged = loggedMessage(line);
  if (logged && logged->starts_with("Unix socket server listen ok")) return setHotKey();
  if (logged == "no number found on pasteboard") {
    return finish("nothing was copied within " + std::to_string(delay_) + " ms");
  }
  const Message message = messageFromJSON(line);
  if (message.kind == Message::Kind::Unknown) return;
  if (message.kind == Message::Kind::MakeCall) {
    return finish(message.text == kSelectedText ? "" : "a different text was copied");
  }
  answer_ = message;
  const bool isSet = message.kind == Message::Kind::HotKeySet;
  isSet && !window_.empty() ? useHotKey() : mainThread_->stop();
}

void TrialRun::setHotKey() {
  const auto failed = sendCommand(setHotKeyCommand(hotKey_, delay_), path_);
  if (!failed) return;
  failure_ = *failed;
  mainThread_->stop();
}

void TrialRun::useHotKey() {
  std::string error;
  const std::string spelling = hotKeySpelling(hotKey_).value_or("");
  copying_ =
      ChildProcess::start({window_, "--test-copy", kSelectedText, "--hotkey", spelling},
                          {[](const std::string& /*line*/) {},
                           [this, main = mainThread_] {
                             main->post([this] { finish("the hot key did not work in a window"); });
                           }},
                          error);
  if (!copying_) finish(error);
}

void TrialRun::finish(const std::string& copyFailure) {
  if (!copyFailure.empty()) copyFailure_ = copyFailure;
  mainThread_->stop();
}

}  // namespace seldial
