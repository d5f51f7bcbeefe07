#include "platform/wayland/ClipboardText.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/epoll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <iterator>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/linux/SelectionText.h"

namespace seldial::platform::wayland {
namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

/// How long an owner may take for each piece of the text.
constexpr milliseconds kTimeout{1000};

/// How long the whole transfer may take.
constexpr milliseconds kTimeLimit{5000};

/// The longest text that is read.
constexpr std::size_t kMaxBytes = std::size_t{256} * 1024 * 1024;

/// As much as a pipe holds.
constexpr std::size_t kPipeSize = std::size_t{64} * 1024;

std::string cleaned(std::string text) {
  return linux_port::repairedUtf8(linux_port::withoutTerminator(std::move(text)));
}

}  // namespace

std::size_t textTypeRank(const char* type) {
  const auto* const found =
      std::find(std::begin(kTextTypes), std::end(kTextTypes), std::string_view(type));
  return static_cast<std::size_t>(found - std::begin(kTextTypes));
}

std::optional<std::string> readToEnd(int pipe, Clock::time_point deadline, std::string text) {
  std::vector<char> buffer(kPipeSize);
  for (auto left = deadline - Clock::now(); left.count() > 0; left = deadline - Clock::now()) {
    pollfd readable{pipe, POLLIN, 0};
    const auto timeout = std::min<Clock::duration>(left, kTimeout);
    const int ready =
        poll(&readable, 1, static_cast<int>(std::chrono::ceil<milliseconds>(timeout).count()));
    if (ready == -1 && errno == EINTR) continue;
    if (ready != 1) return {};
    const auto count = read(pipe, buffer.data(), buffer.size());
    if (count == 0) return text;
    if (count == -1 && (errno == EINTR || errno == EAGAIN)) continue;
    if (count == -1 || static_cast<std::size_t>(count) > kMaxBytes - text.size()) return {};
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
  return {};
}

std::optional<std::string> readClipboardText(int pipe) {
  auto text = readToEnd(pipe, Clock::now() + kTimeLimit);
  if (text) text = cleaned(*std::move(text));
  return text;
}

IncomingText::IncomingText(linux_port::MainLoop& loop)
    : loop_(loop), epoll_(epoll_create1(EPOLL_CLOEXEC)) {
  if (epoll_ == -1) throw std::system_error(errno, std::generic_category(), "epoll_create");
  loop_.watch(*this);
}

IncomingText::~IncomingText() {
  closePipe();
  loop_.unwatch(*this);
  close(epoll_);
}

int IncomingText::begin() {
  std::array<int, 2> pipe{};
  if (pipe2(pipe.data(), O_CLOEXEC) == -1) {
    abandon();
    return -1;
  }
  beginFrom(pipe[0]);
  return pipe[1];
}

void IncomingText::beginFrom(int pipe) {
  abandon();
  fcntl(pipe, F_SETFL, O_NONBLOCK);  // the owner's end may block
  pipe_ = pipe;
  text_.emplace();
  epoll_event event{};
  event.events = EPOLLIN;
  epoll_ctl(epoll_, EPOLL_CTL_ADD, pipe_, &event);  // if that fails, finish() reads all of it
}

void IncomingText::abandon() {
  closePipe();
  text_.reset();
}

std::optional<std::string> IncomingText::finish() {
  auto text = std::exchange(text_, {});
  if (text && pipe_ != -1) text = readToEnd(pipe_, Clock::now() + kTimeLimit, *std::move(text));
  closePipe();
  if (text) text = cleaned(*std::move(text));
  return text;
}

bool IncomingText::readableWhileBlocked() {
  readArrived();
  return true;
}

std::optional<std::string> IncomingText::arrived() {
  while (readArrived()) {
  }
  return pipe_ == -1 ? finish() : std::nullopt;
}

/// Reads once: the loop calls again if there is more. False if there was nothing to read.
bool IncomingText::readArrived() {
  if (pipe_ == -1) return false;
  std::vector<char> buffer(kPipeSize);
  const auto count = read(pipe_, buffer.data(), buffer.size());
  if (count == -1 && (errno == EINTR || errno == EAGAIN)) return false;
  if (count == -1 || static_cast<std::size_t>(count) > kMaxBytes - text_->size()) {
    abandon();
  } else if (count == 0) {
    closePipe();
  } else {
    text_->append(buffer.data(), static_cast<std::size_t>(count));
  }
  return true;
}

/// This also removes it from epoll_.
void IncomingText::closePipe() {
  if (pipe_ != -1) close(std::exchange(pipe_, -1));
}

}  // namespace seldial::platform::wayland
