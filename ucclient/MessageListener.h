#pragma once

#include <functional>
#include <memory>
#include <string>

#include "ucclient/MainThread.h"
#include "unixsocket/GDUnixSocketServer.h"

namespace seldial {

/// The socket that the dialer delivers its messages to. The library calls from its own threads;
/// what they bring is handed to the main thread in the order in which it came, and each of the
/// functions below is called there. Made, asked and destroyed on the main thread.
class MessageListener {
 public:
  struct Events {
    std::function<void()> connected;
    std::function<void(const std::string& message)> received;  ///< its connection has ended
    std::function<void(const std::string& why)> failed;
  };

  /// Null when nothing can listen at `path`; `error` then says why.
  static std::unique_ptr<MessageListener> listenAt(const std::string& path,
                                                   std::shared_ptr<MainThread> mainThread,
                                                   Events events, std::string& error);

  ~MessageListener();
  MessageListener(const MessageListener&) = delete;
  MessageListener& operator=(const MessageListener&) = delete;

 private:
  class Receiver;

  MessageListener(std::shared_ptr<GDUnixSocketServer> server, std::shared_ptr<Receiver> receiver);

  const std::shared_ptr<GDUnixSocketServer> server_;
  const std::shared_ptr<Receiver> receiver_;
};

}  // namespace seldial
