#include "client/Connection.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <utility>

#include "platform/System.h"
#include "unixsocket/GDUnixSocketClient.h"

namespace seldial {
namespace {

/// Time limit for a connect and a write together. Even a seldial that is dialling accepts sooner.
constexpr std::chrono::seconds kSendLimit{3};

/// Time limit for an answer, in seconds: seldial-uc may have to wait until its seldial has dialled.
constexpr time_t kAnswerLimit = 20;

using Socket = std::shared_ptr<GDUnixSocketClient>;

/// Describes an error without the descriptor numbers that the library's texts contain.
std::string describeError(const std::string& what, const Error& error) {
  return what + ": " + platform::errorText(error.errorNumber);
}

/// Null if the connection fails; `failure` then says why.
Socket connectTo(const std::string& path, std::string& failure) {
  auto socket = GDUnixSocketClient::initWithSocketPath(path);
  if (!socket) {
    failure = path + " cannot be the path of a socket";
    return nullptr;
  }
  socket->setSendTimeout(kSendLimit);
  std::optional<Error> error;
  if (socket->connectWithAutoRead(false, &error)) return socket;
  failure = describeError("nobody answers at " + path, *error);
  return nullptr;
}

bool writeAll(GDUnixSocketClient& socket, const std::string& text, std::string& failure) {
  std::optional<Error> error;
  const auto count = socket.writeData(text, &error);
  if (count == static_cast<std::int64_t>(text.size())) return true;
  failure = error ? describeError("the command could not be sent", *error)
                  : "seldial did not read the whole command";
  return false;
}

std::optional<std::string> readAll(GDUnixSocketClient& socket) {
  const timeval limit{kAnswerLimit, 0};
  setsockopt(socket.fd(), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
  std::string all;
  std::optional<Error> error;
  while (const auto data = socket.readWithError(&error)) all += *data;
  return error ? std::nullopt : std::optional(all);
}

bool isPrivateDirectory(const char* directory) {
  struct stat status {};
  return stat(directory, &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == geteuid() &&
         (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

}  // namespace

std::optional<std::string> sendCommand(const std::string& command, const std::string& path) {
  std::string failure;
  const Socket socket = connectTo(path, failure);
  const bool sent = socket && writeAll(*socket, command, failure);
  return sent ? std::nullopt : std::optional(failure);
}

bool isListening(const std::string& path) {
  std::string ignored;
  return connectTo(path, ignored) != nullptr;
}

std::string controlSocketPath() {
  for (const char* const name : {"XDG_RUNTIME_DIR", "TMPDIR"}) {
    const char* const directory = std::getenv(name);
    if (directory == nullptr || directory[0] != '/' || !isPrivateDirectory(directory)) continue;
    char* const real = realpath(directory, nullptr);
    std::string path = real != nullptr ? std::string(real) + "/seldial-uc" : "";
    std::free(real);
    return path;
  }
  return "";
}

std::optional<std::string> askRunningClient(const std::string& request, std::string& error) {
  const std::string path = controlSocketPath();
  std::string failure;
  const Socket socket = path.empty() ? nullptr : connectTo(path, failure);
  if (!socket) {
    error = "seldial-uc is not running";
    return std::nullopt;
  }
  auto answer = writeAll(*socket, request + "\n", failure) ? readAll(*socket) : std::nullopt;
  if (!answer) error = "the running seldial-uc does not answer";
  return answer;
}

/// The connection and its delegate. The callback runs on a thread of the library.
class HotKeyTrial::Receiver final : public GDUnixSocketClientDelegate {
 public:
  Receiver(Socket socket, std::function<void()> used)
      : socket_(std::move(socket)), used_(std::move(used)) {}

  void close() { socket_->close(); }

  void unixSocketClientDidReceiveData(GDUnixSocketClient& /*client*/,
                                      const Data& /*data*/) override {
    if (const auto used = std::exchange(used_, nullptr)) used();
  }

 private:
  const Socket socket_;
  std::function<void()> used_;
};

std::unique_ptr<HotKeyTrial> HotKeyTrial::start(std::function<void()> used) {
  const std::string path = controlSocketPath();
  std::string failure;
  const Socket socket = path.empty() ? nullptr : connectTo(path, failure);
  if (!socket || !writeAll(*socket, std::string(kTrialRequest) + "\n", failure)) return nullptr;
  std::unique_ptr<HotKeyTrial> trial(new HotKeyTrial);
  trial->receiver_ = std::make_shared<Receiver>(socket, std::move(used));
  socket->setDelegate(trial->receiver_);
  socket->readLoop();
  return trial;
}

HotKeyTrial::~HotKeyTrial() {
  receiver_->close();
}

}  // namespace seldial
