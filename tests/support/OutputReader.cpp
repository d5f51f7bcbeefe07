#include "tests/support/OutputReader.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <stdexcept>
#include <utility>

#include "tests/support/Waiting.h"

namespace seldial::tests {

OutputReader::OutputReader(int descriptor)
    : descriptor_(descriptor), stop_(eventfd(0, EFD_CLOEXEC)), thread_([this] { run(); }) {}

OutputReader::~OutputReader() {
  eventfd_write(stop_, 1);
  thread_.join();
  close(descriptor_);
  close(stop_);
}

void OutputReader::run() {
  pollfd descriptors[2] = {{descriptor_, POLLIN, 0}, {stop_, POLLIN, 0}};
  do {
    poll(descriptors, 2, -1);
  } while (descriptors[1].revents == 0 && readOnce());
}

/// False at the end of the stream.
bool OutputReader::readOnce() {
  char chunk[65536];
  const ssize_t count = read(descriptor_, chunk, sizeof chunk);
  const std::lock_guard lock(mutex_);
  if (count > 0) text_.append(chunk, static_cast<std::size_t>(count));
  ended_ = count <= 0;
  changed_.notify_all();
  return !ended_;
}

template <class Condition>
void OutputReader::waitFor(std::unique_lock<std::mutex>& lock, const Condition& condition) {
  if (!changed_.wait_for(lock, kTimeLimit, condition)) {
    throw std::runtime_error("a child process printed nothing in time after: " + text_);
  }
}

std::optional<std::string> OutputReader::nextLine() {
  std::unique_lock lock(mutex_);
  std::size_t searched = 0;
  auto end = std::string::npos;
  waitFor(lock, [&] {
    end = text_.find('\n', searched);
    searched = text_.size();
    return end != std::string::npos || ended_;
  });
  if (end == std::string::npos && text_.empty()) return {};
  if (end == std::string::npos) return std::exchange(text_, {});
  auto line = text_.substr(0, end);
  text_.erase(0, end + 1);
  return line;
}

std::string OutputReader::rest() {
  std::unique_lock lock(mutex_);
  waitFor(lock, [this] { return ended_; });
  return std::exchange(text_, {});
}

}  // namespace seldial::tests
