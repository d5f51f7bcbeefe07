#include "ucclient/Check.h"

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

#include "client/Connection.h"
#include "client/LoginStart.h"
#include "client/Options.h"
#include "client/Protocol.h"
#include "platform/System.h"
#include "ucclient/ChildProcess.h"
#include "ucclient/MainThread.h"
#include "ucclient/Places.h"

namespace seldial {
namespace {

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

/// Whether execvp() would find it.
bool isProgram(const std::string& program) {
  if (program.find('/') != std::string::npos) return access(program.c_str(), X_OK) == 0;
  const std::string path = variable("PATH");
  for (std::size_t begin = 0; begin <= path.size();) {
    const auto end = std::min(path.find(':', begin), path.size());
    const std::string file = path.substr(begin, end - begin).append("/").append(program);
    if (access(file.c_str(), X_OK) == 0) return true;
    begin = end + 1;
  }
  return false;
}

/// One seldial of its own, for as long as it takes to set the hot key once.
class Trial {
 public:
  explicit Trial(const Options& options) : options_(options) {}

  /// Seldial's answer; nothing when there is none, and `failure` says why.
  std::optional<Message> run(const std::string& program, std::string& failure) {
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
    seldial->signal(SIGTERM);
    const int status = seldial->wait();
    if (!answer_ && failure_.empty()) failure_ = "seldial " + describedExitStatus(status);
    failure = failure_;
    return answer_;
  }

 private:
  void wrote(const std::string& line) {
    const auto logged = loggedMessage(line);
    if (logged && logged->starts_with("Unix socket server listen ok")) {
      const auto failed = sendCommand(setHotKeyCommand(options_.hotKey, options_.delay), path_);
      if (!failed) return;
      failure_ = *failed;
      return mainThread_->stop();
    }
    const Message message = messageFromJSON(line);
    if (message.kind == Message::Kind::Unknown) return;
    answer_ = message;
    mainThread_->stop();
  }

  const Options& options_;
  const std::shared_ptr<MainThread> mainThread_ = std::make_shared<MainThread>();
  std::string path_;
  std::string failure_;
  std::optional<Message> answer_;
};

/// Prints one line for each thing that was looked at.
class Report {
 public:
  void tell(bool isGood, const std::string& what, const std::string& text) {
    std::printf("%-5s %-14s %s\n", isGood ? "ok" : "wrong", what.c_str(), text.c_str());
    isGood_ = isGood_ && isGood;
  }

  [[nodiscard]] bool isGood() const { return isGood_; }

 private:
  bool isGood_ = true;
};

void checkSession(Report& report) {
  const std::string type = variable("XDG_SESSION_TYPE");
  const std::string display = variable("DISPLAY");
  report.tell(!display.empty() || !variable("WAYLAND_DISPLAY").empty(), "session",
              (type.empty() ? "of unknown type" : type) + ", " +
                  (display.empty() ? "DISPLAY is not set" : "DISPLAY " + display));
  report.tell(!variable("DBUS_SESSION_BUS_ADDRESS").empty() || !variable("XDG_RUNTIME_DIR").empty(),
              "notifications", "over the session bus");
}

void checkHotKey(Report& report, const Options& options) {
  const std::string program =
      options.seldial.empty() ? findSeldial(ownDirectory()) : options.seldial;
  report.tell(isProgram(program), "program", program);
  std::string why;
  const auto running = askRunningClient(kHotKeyRequest, why);
  report.tell(true, "client", running ? "seldial-uc is running" : why);
  if (running && *running == spellingOfHotKey(options.hotKey)) {
    return report.tell(true, "hot key", options.spelling + " is held by the running seldial-uc");
  }
  const auto answer = Trial(options).run(program, why);
  if (!answer) return report.tell(false, "hot key", why);
  if (answer->kind == Message::Kind::HotKeySet) {
    return report.tell(true, "hot key", options.spelling + " is free");
  }
  report.tell(false, "hot key",
              options.spelling + " is refused: " + answer->text +
                  ". Often the desktop's own shortcuts, the input method or a clipboard manager "
                  "have it. Or there is no such key");
}

void checkDialling(Report& report, const DialSettings& dialling) {
  const std::string program = dialling.scheme.empty() && dialling.dials() ? dialling.command.front()
                                                                          : platform::uriOpener();
  if (!dialling.dials()) {
    report.tell(false, "dialling", "neither dial nor open is set: numbers are only printed");
  } else {
    report.tell(isProgram(program), "dialling",
                isProgram(program) ? "by " + program : "there is no program " + program);
  }
  report.tell(true, "region", dialling.region.empty() ? "none" : dialling.region);
}

}  // namespace

bool checkEverything(const Options& options) {
  Report report;
  checkSession(report);
  const std::string file =
      options.configuration.empty() ? usualConfigurationPath() : options.configuration;
  report.tell(true, "configuration", access(file.c_str(), R_OK) == 0 ? file : "none at " + file);
  checkHotKey(report, options);
  checkDialling(report, options.dialling);
  report.tell(true, "login", startsAtLogin() ? "seldial-uc starts" : "seldial-uc does not start");
  return report.isGood();
}

}  // namespace seldial
