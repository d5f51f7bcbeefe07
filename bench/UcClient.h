// The other end of the two sockets: a UC client that sends a command and receives one message.
#pragma once

#include <chrono>
#include <string>

namespace seldial::bench {

using Clock = std::chrono::steady_clock;

/// How long to wait for what must come. Used up only if it does not.
inline constexpr std::chrono::seconds kLimit{10};

/// One file descriptor, closed at the end.
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

/// Listens at a client socket in a directory of its own, which it removes at the end. Throws
/// std::runtime_error if the system fails.
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

  /// Watches the directory, for awaitListening(). To be called before the program is started.
  [[nodiscard]] Descriptor watch() const;
  /// Returns once a program listens at the dialer socket.
  void awaitListening(const Descriptor& watch) const;

  /// One connection that carries `command`.
  void send(const std::string& command) const;

  /// One whole message; empty if none came in time.
  [[nodiscard]] std::string receive(std::chrono::milliseconds limit = kLimit) const;

  /// Sends and receives. Throws if no answer comes.
  [[nodiscard]] std::string ask(const std::string& command,
                                std::chrono::milliseconds limit = kLimit) const;

 private:
  std::string directory_;
  Descriptor listener_;
};

}  // namespace seldial::bench
