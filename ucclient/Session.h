#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "ucclient/ChildProcess.h"
#include "ucclient/Console.h"
#include "ucclient/Dialler.h"
#include "ucclient/MainThread.h"
#include "ucclient/MessageListener.h"
#include "ucclient/Options.h"
#include "ucclient/Places.h"

namespace seldial {

/// One run of the client: starts Seldial, sends it the hot key once it listens, and shows or dials
/// what it sends until either is ended. Main thread only.
class Session : public std::enable_shared_from_this<Session> {
 public:
  explicit Session(Options options);

  /// Runs the session to its end. Returns the exit status: 0 when the end was asked for, 1 after
  /// any error.
  int run();

  /// A function for any thread that ends the session, Seldial first. The second call kills Seldial.
  /// It does not keep the session alive.
  [[nodiscard]] std::function<void()> endRequest();

 private:
  bool makeDirectory();
  bool listenForMessages();
  bool startDialer();

  void dialerWrote(const std::string& line);
  void sendSetHotKey();
  void received(const std::string& message);
  void dialled(const std::string& number) const;
  void dialFailed(const std::string& what) const;
  void notDialled(const std::string& why) const;
  void endRequested();
  void dialerEnded();
  [[nodiscard]] bool restartsAfter(int status) const;
  void restartLater(int status);
  void restart();

  void end(int status);
  void fail(const std::string& sentence);
  void killDialer();
  void killDialerAfterLimit();

  /// A function for any thread that runs `step` on the main thread if the session still exists.
  template <class... Arguments>
  [[nodiscard]] auto onMainThread(void (Session::*step)(Arguments...)) {
    return [mainThread = mainThread_, weak = weak_from_this(), step](Arguments... arguments) {
      mainThread->post([weak, step, arguments...] {
        if (const auto self = weak.lock()) (self.get()->*step)(arguments...);
      });
    };
  }

  const Options options_;
  const Console console_;
  const std::shared_ptr<MainThread> mainThread_ = std::make_shared<MainThread>();
  // In this order: the child ends first, then the socket closes, then the directory goes.
  std::unique_ptr<PrivateDirectory> directory_;
  std::unique_ptr<MessageListener> listener_;
  std::unique_ptr<ChildProcess> dialer_;
  std::string dialerPath_;
  std::unique_ptr<Dialler> dialling_;  ///< null when numbers are only printed
  bool hotKeyWasSet_ = false;
  std::chrono::steady_clock::time_point started_;  ///< of the child
  std::chrono::seconds pause_{1};                  ///< before the next restart
  bool ending_ = false;
  bool endRequested_ = false;
  int status_ = 0;
};

}  // namespace seldial
