#include "ucclient/Session.h"

#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <thread>
#include <utility>

#include "client/Connection.h"
#include "client/Protocol.h"
#include "ucclient/Notifications.h"

namespace seldial {
namespace {

/// How long Seldial may take to end, in addition to its read delay.
constexpr std::chrono::seconds kEndLimit{5};

/// Pauses before restarts double up to this limit. A Seldial that has run for longer resets them.
constexpr std::chrono::seconds kMaxRestartDelay{60};
constexpr std::chrono::seconds kMinRestartDelay{1};

/// The status with which Seldial ends when it loses the X server.
constexpr int kDesktopLost = 1;

/// Runs `task` on a separate thread after `time`.
void runLater(std::chrono::milliseconds time, std::function<void()> task) {
  std::thread([time, task = std::move(task)] {
    std::this_thread::sleep_for(time);
    task();
  }).detach();
}

/// Seldial reports the same reason for every refusal of the desktop.
std::string explainFailReason(const std::string& failReason) {
  if (failReason != "hotkey not set") return failReason;
  return failReason +
         " (another program holds it, the keyboard has no such key, or there is no desktop)";
}

void showRefusal(const std::string& hotKey, const std::string& why) {
  showNotificationAndWait(translated("There is no hot key"),
                          translated("the hot key %1 was refused: %2", {hotKey, translated(why)}));
}

}  // namespace

Session::Session(Options options, ReloadOptions reloadOptions)
    : options_(std::move(options)),
      reloadOptions_(std::move(reloadOptions)),
      console_(options_.conversation) {
  makeDialler();
}

void Session::apply(Options options) {
  options_ = std::move(options);
  console_ = Console(options_.conversation);
  makeDialler();
}

void Session::makeDialler() {
  dialler_.reset();
  if (!options_.dialling.dials()) return;
  dialler_ = std::make_unique<Dialler>(
      options_.dialling, mainThread_,
      Dialler::Events{[this](const std::string& number) { dialled(number); },
                      [this](const std::string& what) { dialFailed(what); },
                      [this](const std::string& why) { notDialled(why); }});
}

int Session::run() {
  if (!makeDirectory() || !listenForMessages() || !startSeldial()) return 1;
  answerRequests();
  mainThread_->run();
  return status_;
}

std::function<void()> Session::endRequest() {
  return onMainThread(&Session::endRequested);
}

bool Session::makeDirectory() {
  directory_ = PrivateDirectory::createIn(PrivateDirectory::defaultParents());
  if (directory_) {
    commandSocketPath_ = directory_->file("dialer");
    return true;
  }
  console_.error("cannot create a directory for the sockets under XDG_RUNTIME_DIR, TMPDIR or /tmp");
  return false;
}

bool Session::listenForMessages() {
  std::string error;
  listener_ = MessageListener::listenAt(directory_->file("client"), mainThread_,
                                        {[this] { console_.onClientSocket("connected"); },
                                         [this](const std::string& message) { received(message); },
                                         [this](const std::string& why) { fail(why); }},
                                        error);
  if (!listener_) console_.error(error);
  return listener_ != nullptr;
}

bool Session::startSeldial() {
  const std::string program =
      options_.seldial.empty() ? findSeldial(executableDirectory()) : options_.seldial;
  seldialStartTime_ = std::chrono::steady_clock::now();
  std::string error;
  // Only the log shows that Seldial listens.
  seldial_ = ChildProcess::start(
      {program, "-jsonlog", "dialerpipename=" + commandSocketPath_,
       "clientpipename=" + directory_->path() + "/client"},
      {onMainThread(&Session::handleSeldialLine), onMainThread(&Session::seldialEnded)}, error);
  if (!seldial_) console_.error(error);
  return seldial_ != nullptr;
}

void Session::handleSeldialLine(const std::string& line) {
  const auto logged = loggedMessage(line);
  if (!logged || ending_) return;
  if (logged->starts_with("Unix socket server listen ok")) {
    sendSetHotKey();
  } else if (*logged == "no number found on pasteboard") {
    if (!answerTrial() && dialler_) notDialled("nothing was selected");
  } else if (logged->starts_with("Unix socket server listen failed") ||
             logged->starts_with("Failed to start unix socket server")) {
    fail("seldial cannot listen at " + commandSocketPath_);
  }
}

void Session::sendSetHotKey() {
  const std::string command = setHotKeyCommand(options_.hotKey, options_.delay);
  if (const auto failure = sendCommand(command, commandSocketPath_)) return fail(*failure);
  console_.onDialerSocket("connected");
  console_.sent(command);
  console_.onDialerSocket("disconnected");
}

void Session::received(const std::string& text) {
  const Message message = messageFromJSON(text);
  // Numbers that are dialled are not printed: many sessions write standard output to a log file.
  const bool isPrivate = dialler_ != nullptr && message.kind == Message::Kind::MakeCall;
  if (!isPrivate || options_.conversation) console_.received(text);
  console_.onClientSocket("disconnected");  // that ended the message
  switch (message.kind) {
    case Message::Kind::HotKeySet:
      hotKeyWasSet();
      break;
    case Message::Kind::HotKeyNotSet:
      hotKeyWasRefused(explainFailReason(message.text));
      break;
    case Message::Kind::Error:
      fail("seldial did not accept the command: " + message.text);
      break;
    case Message::Kind::MakeCall:
      if (answerTrial()) break;
      if (dialler_) {
        dialler_->dial(message.text);
      } else {
        console_.dial(message.text);
      }
      break;
    case Message::Kind::Unknown:
      break;
  }
  if (console_.broken()) fail("standard output cannot be written");
}

void Session::hotKeyWasSet() {
  hasHotKey_ = hotKeyWasSet_ = true;
  console_.hotKeySet(options_.spelling);
  finishReload(reloadNote_);
}

/// If a reload caused this, the previous hot key is set again.
void Session::hotKeyWasRefused(const std::string& why) {
  hasHotKey_ = false;
  const std::string sentence = "the hot key " + options_.spelling + " was refused: " + why;
  if (!reloadReply_) {
    if (dialler_) showRefusal(options_.spelling, why);
    return fail(sentence);
  }
  console_.error(sentence);
  apply(previousOptions_);
  finishReload(sentence);
  sendSetHotKey();
}

void Session::dialled(const std::string& number) {
  console_.dialled();
  history_.add("called " + number);
  showNotification(translated("Calling %1", {number}), "");
}

void Session::dialFailed(const std::string& what) {
  console_.error(what);
  history_.add(what);
  showNotification(translated("The call failed"), what);
}

void Session::notDialled(const std::string& why) {
  console_.notDialled(why);
  history_.add("nothing was dialled: " + why);
  showNotification(translated("Nothing was dialled"), translated(why));
}

void Session::endRequested() {
  if (std::exchange(endRequested_, true)) return killSeldial();
  end(0);
}

void Session::seldialEnded() {
  const int status = seldial_->wait();
  hasHotKey_ = false;
  finishReload("seldial " + describeExitStatus(status));
  if (!ending_ && restartsAfter(status)) return restartLater(status);
  if (!ending_) {
    status_ = 1;
    console_.error("seldial " + describeExitStatus(status));
  }
  mainThread_->stop();
}

/// A client that dials keeps running when Seldial fails. It ends with the desktop, and if there
/// never was a hot key.
bool Session::restartsAfter(int status) const {
  const bool desktopLost = WIFEXITED(status) && WEXITSTATUS(status) == kDesktopLost;
  return dialler_ && hotKeyWasSet_ && !desktopLost;
}

void Session::restartLater(int status) {
  seldial_.reset();
  if (std::chrono::steady_clock::now() - seldialStartTime_ > kMaxRestartDelay)
    restartDelay_ = kMinRestartDelay;
  console_.error("seldial " + describeExitStatus(status) + "; restarting it in " +
                 std::to_string(restartDelay_.count()) + " s");
  runLater(restartDelay_, onMainThread(&Session::restart));
  restartDelay_ = std::min(2 * restartDelay_, kMaxRestartDelay);
}

void Session::restart() {
  if (ending_ || startSeldial()) return;
  status_ = 1;
  mainThread_->stop();
}

void Session::end(int status) {
  if (std::exchange(ending_, true)) return;
  status_ = status;
  if (!seldial_) return mainThread_->stop();  // it is about to be started again
  seldial_->signal(SIGTERM);
  killSeldialAfterLimit();
}

void Session::fail(const std::string& sentence) {
  if (!ending_) console_.error(sentence);
  end(1);
}

void Session::killSeldial() {
  if (seldial_) seldial_->signal(SIGKILL);
}

void Session::killSeldialAfterLimit() {
  runLater(kEndLimit + std::chrono::milliseconds(options_.delay),
           onMainThread(&Session::killSeldial));
}

}  // namespace seldial
