// The requests that a session answers on its control socket.
#include <cstdlib>
#include <utility>

#include "client/Connection.h"
#include "client/Protocol.h"
#include "ucclient/Session.h"

namespace seldial {
namespace {

std::string describeDialling(const DialSettings& settings) {
  if (!settings.scheme.empty()) return "opens " + settings.scheme + ": URIs";
  return settings.command.empty() ? "no, prints only" : "runs " + settings.command.front();
}

}  // namespace

/// Everything else works without a control socket.
void Session::answerRequests() {
  const std::string path = controlSocketPath();
  if (path.empty()) return;
  control_ = ControlSocket::listenAt(
      path, mainThread_, [this](const std::string& request, const ControlSocket::Reply& reply) {
        answer(request, reply);
      });
}

void Session::answer(const std::string& request, const ControlSocket::Reply& reply) {
  if (request == kStatusRequest) {
    reply(statusText());
  } else if (request == kTrialRequest) {
    trialReply_ = reply;
  } else if (request == kHotKeyRequest) {
    reply(hasHotKey_ ? hotKeySpelling(options_.hotKey).value_or("") : "");
  } else if (request == kReloadRequest) {
    reload(reply);
  } else {
    reply("unknown request " + printable(request));
  }
}

std::string Session::statusText() const {
  const auto variable = [](const char* name) {
    const char* const value = std::getenv(name);
    return std::string(value != nullptr && value[0] != '\0' ? value : "none");
  };
  return "Hot key:  " + options_.spelling + (hasHotKey_ ? "" : " (not set)") + "\n" +
         "Dials:    " + describeDialling(options_.dialling) + "\n" +
         "Session:  " + variable("XDG_SESSION_TYPE") + ", DISPLAY " + variable("DISPLAY") + "\n" +
         "Running:  since " + timeText(startTime_) + "\n" +
         (trialReply_ ? "Next use: is shown in the settings window, not dialled\n" : "") +
         history_.text();
}

/// Whether a client is waiting for this use of the hot key as a trial.
bool Session::answerTrial() {
  const auto reply = std::exchange(trialReply_, nullptr);
  return reply && reply("used\n");
}

/// Applies the current configuration. A different seldial program is started only when the current
/// one ends.
void Session::reload(const ControlSocket::Reply& reply) {
  std::string error;
  const auto options = reloadOptions_(error);
  if (!options || reloadReply_ || !hasHotKey_) {
    reply(!options ? error : "seldial is not ready, please try again");
    return;
  }
  const bool sameProgram = options->seldial == options_.seldial;
  reloadNote_ = sameProgram ? ""
                            : kReloadNote + std::string(
                                                "the new seldial is used when "
                                                "seldial-uc is started again");
  previousOptions_ = options_;
  apply(*options);
  reloadReply_ = reply;
  sendSetHotKey();
}

void Session::finishReload(const std::string& answer) {
  if (const auto reply = std::exchange(reloadReply_, nullptr)) reply(answer);
}

}  // namespace seldial
