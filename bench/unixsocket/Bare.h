// The same work with bare system calls, for comparison.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <thread>

#include "bench/UcClient.h"

namespace seldial::bench {

/// A counter to which several threads add and on which one waits.
class ByteCounter {
 public:
  void add(std::size_t count = 1);

  /// Waits until the sum of all additions reaches `total`.
  void waitFor(std::size_t total);

 private:
  std::mutex mutex_;  ///< guards the two numbers
  std::condition_variable enough_;
  std::size_t added_ = 0;
  std::size_t wanted_ = 0;
};

/// A path for a socket, in a directory that the destructor removes.
class TemporarySocketPath {
 public:
  TemporarySocketPath();
  ~TemporarySocketPath();
  TemporarySocketPath(const TemporarySocketPath&) = delete;
  TemporarySocketPath& operator=(const TemporarySocketPath&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  std::string directory_;
  std::string path_;
};

/// These functions throw std::runtime_error on failure.
Descriptor bareListen(const std::string& path);
Descriptor bareConnect(const std::string& path);
Descriptor bareAccept(const Descriptor& listener);

/// Sends all of it.
void bareSend(const Descriptor& connection, const std::string& bytes);

/// Reads to the end of the stream, at most `fragment` bytes at a time, and adds their count.
void bareReadAll(const Descriptor& connection, std::size_t fragment, ByteCounter& bytes);

/// Accepts connections and reads each to its end, one after the other, until it is destroyed.
class BareServer {
 public:
  explicit BareServer(const std::string& path);
  ~BareServer();
  BareServer(const BareServer&) = delete;
  BareServer& operator=(const BareServer&) = delete;

  /// When the last connection was accepted; valid once `accepted` has counted it.
  [[nodiscard]] Clock::time_point acceptedAt() const { return acceptedAt_; }

  ByteCounter accepted;
  ByteCounter ended;

 private:
  void serve();

  const Descriptor listener_;
  Clock::time_point acceptedAt_;
  std::thread thread_;
};

}  // namespace seldial::bench
