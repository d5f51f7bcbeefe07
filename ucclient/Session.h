#pragma once

#include <chrono>
#include <ctime>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "ucclient/ChildProcess.h"
#include "ucclient/Console.h"
#include "ucclient/Control.h"
#include "ucclient/Dialling.h"
#include "ucclient/MainThread.h"
#include "ucclient/MessageListener.h"
#include "ucclient/Options.h"
#include "ucclient/Paths.h"

namespace seldial {

/// One run of the client: starts Seldial, sends it the hot key once it listens, and shows or dials
/// the numbers that it sends, until either program ends. Main thread only.
class Session : public std::enable_shared_from_this<Session> {
 public:
  /// Reads the options again. Nothing if they are invalid; `error` then says why.
  using ReloadOptions = std::function<std::optional<Options>(std::string& error)>;

  Session(Options options, ReloadOptions reloadOptions);

  /// Runs the session to its end. Returns the exit status: 0 if the end was requested, 1 after any
  /// error.
  int run();

  /// Returns a function that ends Seldial and then the session. The second call kills Seldial. The
  /// function does not keep the session alive. Any thread may call it.
  [[nodiscard]] std::function<void()> endRequest();

 private:
  void apply(Options options);
  void makeDialler();
  void answerRequests();
  bool makeDirectory();
  bool listenForMessages();
  bool startSeldial();

  void handleSeldialLine(const std::string& line);
  void sendSetHotKey();
  void received(const std::string& message);
  void hotKeyWasSet();
  void hotKeyWasRefused(const std::string& why);
  void dialled(const std::string& number);
  void dialFailed(const std::string& what);
  void notDialled(const std::string& why);
  void endRequested();
  void seldialEnded();
  [[nodiscard]] bool restartsAfter(int status) const;
  void restartLater(int status);
  void restart();

  void answer(const std::string& request, const ControlSocket::Reply& reply);
  [[nodiscard]] std::string statusText() const;
  bool answerTrial();
  void reload(const ControlSocket::Reply& reply);
  void finishReload(const std::string& answer);

  void end(int status);
  void fail(const std::string& sentence);
  void killSeldial();
  void killSeldialAfterLimit();

  /// A function for any thread that runs `step` on the main thread if the session still exists.
  template <class... Arguments>
  [[nodiscard]] auto onMainThread(void (Session::*step)(Arguments...)) {
    return [mainThread = mainThread_, weak = weak_from_this(), step](Arguments... arguments) {
      mainThread->post([weak, step, arguments...] {
        if (const auto self = weak.lock()) (self.get()->*step)(arguments...);
      });
    };
  }

  Options options_;
  Options previousOptions_;  ///< while a reload waits for the hot key
  const ReloadOptions reloadOptions_;
  Console console_;
  const std::shared_ptr<MainThread> mainThread_ = std::make_shared<MainThread>();
  // The order matters: the child ends first, then the socket closes, then the directory is removed.
  std::unique_ptr<PrivateDirectory> directory_;
  std::unique_ptr<ControlSocket> control_;  ///< null if another client has it
  std::unique_ptr<MessageListener> listener_;
  std::unique_ptr<ChildProcess> seldial_;
  std::string commandSocketPath_;
  std::unique_ptr<Dialler> dialler_;  ///< null if numbers are only printed
  History history_;
  ControlSocket::Reply reloadReply_;  ///< for the result of a reload; empty if there is none
  std::string reloadNote_;            ///< the answer if the reload succeeds
  ControlSocket::Reply
      trialReply_;  ///< to notify of the next use instead of dialling; may be empty
  bool hasHotKey_ = false;
  bool hotKeyWasSet_ = false;  ///< at least once
  const std::time_t startTime_ = std::time(nullptr);
  std::chrono::steady_clock::time_point seldialStartTime_;
  std::chrono::seconds restartDelay_{1};  ///< before the next restart
  bool ending_ = false;
  bool endRequested_ = false;
  int status_ = 0;
};

}  // namespace seldial
