#include "platform/wayland/ClipboardText.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <string_view>
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

}  // namespace

std::size_t textTypeRank(const char* type) {
  const auto* const found =
      std::find(std::begin(kTextTypes), std::end(kTextTypes), std::string_view(type));
  return static_cast<std::size_t>(found - std::begin(kTextTypes));
}

std::optional<std::string> readToEnd(int pipe, Clock::time_point deadline) {
  std::string text;
  std::vector<char> buffer(64UL * 1024);
  for (auto left = deadline - Clock::now(); left.count() > 0; left = deadline - Clock::now()) {
    pollfd readable{pipe, POLLIN, 0};
    const auto timeout = std::min<Clock::duration>(left, kTimeout);
    const int ready =
        poll(&readable, 1, static_cast<int>(std::chrono::ceil<milliseconds>(timeout).count()));
    if (ready == -1 && errno == EINTR) continue;
    if (ready != 1) return {};
    const auto count = read(pipe, buffer.data(), buffer.size());
    if (count == 0) return text;
    if (count == -1 && errno == EINTR) continue;
    if (count == -1 || static_cast<std::size_t>(count) > kMaxBytes - text.size()) return {};
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
  return {};
}

std::optional<std::string> readClipboardText(int pipe) {
  auto text = readToEnd(pipe, Clock::now() + kTimeLimit);
  if (text) text = linux_port::repairedUtf8(linux_port::withoutTerminator(*std::move(text)));
  return text;
}

}  // namespace seldial::platform::wayland
