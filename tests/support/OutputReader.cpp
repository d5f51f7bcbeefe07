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
  if (count > 0) add({chunk, static_cast<std::size_t>(count)});
  ended_ = count <= 0;
  changed_.notify_all();
  return !ended_;
}

void OutputReader::add(std::string_view text) {
  for (auto end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
    lines_.push_back(std::exchange(unfinished_, {}).append(text.substr(0, end)));
    text.remove_prefix(end + 1);
  }
  unfinished_.append(text);
}

template <class Condition>
void OutputReader::waitFor(std::unique_lock<std::mutex>& lock, const Condition& condition) {
  if (!changed_.wait_for(lock, kTimeLimit, condition)) {
    throw std::runtime_error("a child process printed nothing in time after: " + takeAll());
  }
}

std::optional<std::string> OutputReader::nextLine() {
  std::unique_lock lock(mutex_);
  waitFor(lock, [this] { return !lines_.empty() || ended_; });
  if (lines_.empty() && unfinished_.empty()) return {};
  if (lines_.empty()) return std::exchange(unfinished_, {});
  auto line = std::move(lines_.front());
  lines_.pop_front();
  return line;
}

std::string OutputReader::rest() {
  std::unique_lock lock(mutex_);
  waitFor(lock, [this] { return ended_; });
  return takeAll();
}

std::string OutputReader::takeAll() {
  std::string text;
  for (const auto& line : std::exchange(lines_, {})) text.append(line).append("\n");
  return text.append(std::exchange(unfinished_, {}));
}

}  // namespace seldial::tests
