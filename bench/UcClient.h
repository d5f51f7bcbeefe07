// The other end of the two sockets: a UC client that sends a command and receives one message.
#pragma once

#include <chrono>
#include <string>

namespace seldial::bench {

using Clock = std::chrono::steady_clock;

/// How long to wait for an expected event.
inline constexpr std::chrono::seconds kLimit{10};

/// A file descriptor that the destructor closes.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor();
  Descriptor(Descriptor&& other) noexcept : number_(other.number_) { other.number_ = -1; }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  Descriptor& operator=(Descriptor&&) = delete;

  [[nodiscard]] int number() const { return number_; }

 private:
  int number_;
};

/// Writes all of `bytes`.
void write(const Descriptor& connection, const std::string& bytes);

/// Listens at a client socket in its own directory, which the destructor removes. Throws
/// std::runtime_error on system errors.
class UcClient {
 public:
  UcClient();
  ~UcClient();
  UcClient(const UcClient&) = delete;
  UcClient& operator=(const UcClient&) = delete;

  [[nodiscard]] const std::string& directory() const { return directory_; }
  [[nodiscard]] std::string dialerSocket() const { return directory_ + "/dialer"; }
  [[nodiscard]] std::string clientSocket() const { return directory_ + "/client"; }

  /// A connection to the dialer socket; its number is -1 while nobody listens there.
  [[nodiscard]] Descriptor connect() const;

  /// Watches the directory, for awaitListening(). Call it before the program is started.
  [[nodiscard]] Descriptor watch() const;
  /// Returns once a program listens at the dialer socket.
  void awaitListening(const Descriptor& watch) const;

  /// Sends `command` over one connection.
  void send(const std::string& command) const;

  /// Receives one whole message; empty if none arrives in time.
  [[nodiscard]] std::string receive(std::chrono::milliseconds limit = kLimit) const;

  /// Sends and receives. Throws if no answer arrives.
  [[nodiscard]] std::string ask(const std::string& command,
                                std::chrono::milliseconds limit = kLimit) const;

 private:
  std::string directory_;
  Descriptor listener_;
};

}  // namespace seldial::bench
