#include "platform/wayland/SwayIpc.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <utility>

#include "api/JSON.h"

namespace seldial::platform::wayland {
namespace {

constexpr std::string_view kMagic = "i3-ipc";
constexpr std::size_t kHeaderSize = kMagic.size() + 2 * sizeof(std::uint32_t);

/// How long sway may take to answer.
constexpr std::chrono::seconds kTimeout{5};

/// More than any tree of windows needs.
constexpr std::uint32_t kMaxBytes = 64U * 1024 * 1024;

std::string numberAsBytes(std::uint32_t number) {
  std::string bytes(sizeof number, '\0');
  std::memcpy(bytes.data(), &number, sizeof number);
  return bytes;
}

std::uint32_t numberAt(const std::string& bytes, std::size_t offset) {
  std::uint32_t number = 0;
  std::memcpy(&number, bytes.data() + offset, sizeof number);
  return number;
}

const JSONValue* member(const JSONValue& value, std::string_view key) {
  const auto* const dictionary = value.dictionary();
  if (dictionary == nullptr) return nullptr;
  const auto found = dictionary->find(key);
  return found != dictionary->end() ? &found->second : nullptr;
}

void addText(std::vector<std::string>& texts, const JSONValue* value) {
  if (value != nullptr && value->text() != nullptr) texts.push_back(*value->text());
}

}  // namespace

std::unique_ptr<SwayConnection> SwayConnection::open(const std::string& path) {
  std::unique_ptr<SwayConnection> connection(new SwayConnection(path));
  return connection->connect() ? std::move(connection) : nullptr;
}

SwayConnection::~SwayConnection() {
  disconnect();
}

bool SwayConnection::connect() {
  disconnect();
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path_.empty() || path_.size() >= sizeof address.sun_path) return false;
  path_.copy(address.sun_path, path_.size());
  socket_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  closed_ = socket_ == -1 ||
            ::connect(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address) == -1;
  return !closed_;
}

void SwayConnection::disconnect() {
  if (socket_ != -1) close(socket_);
  socket_ = -1;
  closed_ = true;
  received_.clear();
}

std::optional<std::string> SwayConnection::ask(SwayRequest request, const std::string& content) {
  const auto deadline = Clock::now() + kTimeout;
  if ((closed_ && !connect()) || !send(request, content)) return {};
  for (;;) {
    if (auto message = next()) {
      if (message->type == static_cast<std::uint32_t>(request)) return std::move(message->content);
      continue;  // an event, which is not the reply
    }
    if (closed_ || !waitFor(POLLIN, deadline)) {
      closed_ = true;  // a late reply would be mistaken for the next one
      return {};
    }
  }
}

bool SwayConnection::run(const std::string& commands) {
  const auto reply = ask(SwayRequest::kRunCommand, commands);
  const auto results = reply ? readJSON(*reply) : std::nullopt;
  if (!results || results->array() == nullptr) return false;
  return std::all_of(results->array()->begin(), results->array()->end(), [](const auto& result) {
    const auto* const success = member(result, "success");
    return success != nullptr && success->boolean().value_or(false);
  });
}

bool SwayConnection::send(SwayRequest request, const std::string& content) {
  const auto deadline = Clock::now() + kTimeout;
  const std::string bytes = std::string(kMagic) +
                            numberAsBytes(static_cast<std::uint32_t>(content.size())) +
                            numberAsBytes(static_cast<std::uint32_t>(request)) + content;
  for (std::size_t sent = 0; sent < bytes.size();) {
    const auto count = ::send(socket_, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
    if (count > 0) {
      sent += static_cast<std::size_t>(count);
    } else if ((count < 0 && errno != EAGAIN && errno != EINTR) || !waitFor(POLLOUT, deadline)) {
      closed_ = true;
      return false;
    }
  }
  return true;
}

/// False after the deadline.
bool SwayConnection::waitFor(short events, Clock::time_point deadline) {
  pollfd socket{socket_, events, 0};
  for (auto now = Clock::now(); now < deadline; now = Clock::now()) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - now);
    if (poll(&socket, 1, static_cast<int>(left.count())) > 0) return true;
  }
  return false;
}

std::optional<SwayMessage> SwayConnection::next() {
  for (;;) {
    if (received_.size() >= kHeaderSize) {
      const auto size = numberAt(received_, kMagic.size());
      if (!received_.starts_with(kMagic) || size > kMaxBytes) closed_ = true;
      if (closed_) return {};
      if (received_.size() >= kHeaderSize + size) {
        SwayMessage message{numberAt(received_, kMagic.size() + sizeof size),
                            received_.substr(kHeaderSize, size)};
        received_.erase(0, kHeaderSize + size);
        return message;
      }
    }
    if (!readMore()) return {};
  }
}

bool SwayConnection::readMore() {
  std::array<char, 16384> buffer{};
  const auto count = recv(socket_, buffer.data(), buffer.size(), 0);
  if (count > 0) {
    received_.append(buffer.data(), static_cast<std::size_t>(count));
    return true;
  }
  if (count == -1 && errno == EINTR) return readMore();
  if (count == 0 || errno != EAGAIN) closed_ = true;
  return false;
}

SwayEvents::SwayEvents(std::unique_ptr<SwayConnection> connection, const std::string& names,
                       linux_port::MainLoop& loop, Handler handler,
                       std::function<void()> connectionLost)
    : connection_(std::move(connection)),
      loop_(loop),
      handler_(std::move(handler)),
      connectionLost_(std::move(connectionLost)) {
  connection_->ask(SwayRequest::kSubscribe, names);
  loop_.watch(*this);
}

SwayEvents::~SwayEvents() {
  if (watched_) loop_.unwatch(*this);
}

bool SwayEvents::waitFor(const std::function<bool()>& condition,
                         std::chrono::steady_clock::time_point deadline) {
  for (handleArrived(); !condition(); handleArrived()) {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    if (left.count() <= 0 || connection_->closed() || loop_.interrupted()) return false;
    std::array<pollfd, 2> sources{
        {{connection_->descriptor(), POLLIN, 0}, {loop_.interruption(), POLLIN, 0}}};
    poll(sources.data(), sources.size(), static_cast<int>(left.count()));
  }
  return true;
}

void SwayEvents::readable() {
  handleArrived();
  if (!connection_->closed() || !std::exchange(watched_, false)) return;
  loop_.unwatch(*this);
  connectionLost_();
}

void SwayEvents::handleArrived() {
  while (const auto message = connection_->next()) {
    handler_(static_cast<SwayEvent>(message->type), message->content);
  }
}

std::vector<std::string> focusedProgram(const std::string& tree) {
  const auto root = readJSON(tree);
  if (!root) return {};
  std::vector<const JSONValue*> waiting{&*root};
  while (!waiting.empty()) {
    const auto& node = *waiting.back();
    waiting.pop_back();
    const auto* const focused = member(node, "focused");
    if (focused != nullptr && focused->boolean().value_or(false)) {
      std::vector<std::string> names;
      addText(names, member(node, "app_id"));
      if (const auto* const properties = member(node, "window_properties")) {
        addText(names, member(*properties, "class"));
        addText(names, member(*properties, "instance"));
      }
      return names;
    }
    for (const auto* const key : {"nodes", "floating_nodes"}) {
      const auto* const nodes = member(node, key);
      if (nodes == nullptr || nodes->array() == nullptr) continue;
      for (const auto& child : *nodes->array()) waiting.push_back(&child);
    }
  }
  return {};
}

}  // namespace seldial::platform::wayland
