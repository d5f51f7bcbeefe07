#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "ucclient/MainThread.h"
#include "unixsocket/GDUnixSocketServer.h"

namespace seldial {

/// Assembles messages: one connection carries one message in any number of chunks, and the end of
/// the connection ends the message. Several connections may be open at once. One thread.
class MessageAssembler {
 public:
  void append(const std::string& connection, const std::string& chunk);

  /// The connection has ended. Returns its message, which may be empty.
  [[nodiscard]] std::string finish(const std::string& connection);

  /// The connection has failed. Discards its message.
  void discard(const std::string& connection);

 private:
  std::map<std::string, std::string> partial_;
};

/// The socket on which Seldial delivers its messages. The events are called on the main thread, in
/// the order in which they happened. Create, use and destroy it on the main thread.
class MessageListener {
 public:
  struct Events {
    std::function<void()> connected;
    std::function<void(const std::string& message)> received;  ///< its connection has ended
    std::function<void(const std::string& why)> failed;
  };

  /// Null if listening at `path` fails; `error` then says why.
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
