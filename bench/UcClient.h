// The other end of the two sockets: a UC client that sends a command and receives one message.
#pragma once

#include <chrono>
#include <string>

namespace seldial::bench {

using Clock = std::chrono::steady_clock;

/// How long anything is waited for that must come; used up only when it does not.
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

/// Writes all of `bytes`, a few.
void write(const Descriptor& connection, const std::string& bytes);

/// Listens at a client socket in a directory of its own, which it removes at the end. Failures of
/// the system are a std::runtime_error.
class UcClient {
 public:
  UcClient();
  ~UcClient();
  UcClient(const UcClient&) = delete;
  UcClient& operator=(const UcClient&) = delete;

  [[nodiscard]] const std::string& directory() const { return directory_; }
  [[nodiscard]] std::string dialerSocket() const { return directory_ + "/dialer"; }
  [[nodiscard]] std::string clientSocket() const { return directory_ + "/client"; }

  /// A connection to the dialer socket; number -1 while nobody listens there.
  [[nodiscard]] Descriptor connect() const;

  /// Returns once somebody listens at the dialer socket. `inotify` watches the directory since
  /// before that could happen.
  void awaitListening(const Descriptor& inotify) const;
  [[nodiscard]] Descriptor watch() const;

  /// One connection that carries `command`.
  void send(const std::string& command) const;

  /// One message to its end; empty when none came in time.
  [[nodiscard]] std::string receive(std::chrono::milliseconds limit = kLimit) const;

  /// Sends and receives. Throws when no answer comes.
  [[nodiscard]] std::string ask(const std::string& command) const;

 private:
  std::string directory_;
  Descriptor listener_;
};

}  // namespace seldial::bench
