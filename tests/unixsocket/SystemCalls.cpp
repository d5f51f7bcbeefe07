#include "tests/unixsocket/SystemCalls.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace seldial::tests {
namespace {

struct Functions {
  SystemCalls::Before before;
  SystemCalls::After after;
};

std::mutex mutex;
std::condition_variable left;
std::shared_ptr<const Functions> installed = std::make_shared<Functions>();
int inside = 0;

/// Keeps the installed functions in place while one of them is used.
class FunctionsInUse {
 public:
  FunctionsInUse() {
    const std::lock_guard lock(mutex);
    functions = installed;
    ++inside;
  }
  ~FunctionsInUse() {
    const std::lock_guard lock(mutex);
    if (--inside == 0) left.notify_all();
  }
  FunctionsInUse(const FunctionsInUse&) = delete;
  FunctionsInUse& operator=(const FunctionsInUse&) = delete;

  std::shared_ptr<const Functions> functions;
};

/// Makes the real call, unless it is to fail.
template <class Real>
auto route(const SystemCall& call, const Real& real) -> decltype(real()) {
  {
    const FunctionsInUse inUse;
    const auto& before = inUse.functions->before;
    if (const auto error = before ? before(call) : std::nullopt) {
      errno = *error;
      return -1;
    }
  }
  const auto result = real();
  const int error = errno;
  {
    const FunctionsInUse inUse;
    if (inUse.functions->after) inUse.functions->after(call);
  }
  errno = error;
  return result;
}

}  // namespace

void SystemCalls::set(Before before, After after) {
  std::unique_lock lock(mutex);
  installed = std::make_shared<Functions>(Functions{std::move(before), std::move(after)});
  left.wait(lock, [] { return inside == 0; });
}

void SystemCalls::limitWrites(std::size_t maxSize) {
  set([maxSize](const SystemCall& call) {
    if (call.size != nullptr) *call.size = std::min(*call.size, maxSize);
    return std::optional<int>();
  });
}

SystemCalls::Before failing(const std::string& name, int error, int first, int times) {
  const auto count = std::make_shared<std::atomic<int>>(0);
  return [=](const SystemCall& call) -> std::optional<int> {
    if (call.name != name) return {};
    const int turn = (*count)++;
    if (turn < first || turn >= first + times) return {};
    return error;
  };
}

}  // namespace seldial::tests

// The names are given by the linker.
// NOLINTBEGIN
extern "C" {

using seldial::tests::route;

int __real_socket(int domain, int type, int protocol);
int __wrap_socket(int domain, int type, int protocol) {
  return route({"socket", -1}, [&] { return __real_socket(domain, type, protocol); });
}

int __real_bind(int fd, const sockaddr* address, socklen_t size);
int __wrap_bind(int fd, const sockaddr* address, socklen_t size) {
  return route({"bind", fd}, [&] { return __real_bind(fd, address, size); });
}

int __real_listen(int fd, int backlog);
int __wrap_listen(int fd, int backlog) {
  return route({"listen", fd}, [&] { return __real_listen(fd, backlog); });
}

int __real_accept4(int fd, sockaddr* address, socklen_t* size, int flags);
int __wrap_accept4(int fd, sockaddr* address, socklen_t* size, int flags) {
  return route({"accept", fd}, [&] { return __real_accept4(fd, address, size, flags); });
}

int __real_connect(int fd, const sockaddr* address, socklen_t size);
int __wrap_connect(int fd, const sockaddr* address, socklen_t size) {
  return route({"connect", fd}, [&] { return __real_connect(fd, address, size); });
}

int __real_shutdown(int fd, int how);
int __wrap_shutdown(int fd, int how) {
  return route({"shutdown", fd}, [&] { return __real_shutdown(fd, how); });
}

ssize_t __real_read(int fd, void* bytes, size_t size);
ssize_t __wrap_read(int fd, void* bytes, size_t size) {
  return route({"read", fd}, [&] { return __real_read(fd, bytes, size); });
}

ssize_t __real_write(int fd, const void* bytes, size_t size);
ssize_t __wrap_write(int fd, const void* bytes, size_t size) {
  return route({"write", fd, &size}, [&] { return __real_write(fd, bytes, size); });
}

// The tests treat a send as a write.
ssize_t __real_send(int fd, const void* bytes, size_t size, int flags);
ssize_t __wrap_send(int fd, const void* bytes, size_t size, int flags) {
  return route({"write", fd, &size}, [&] { return __real_send(fd, bytes, size, flags); });
}

int __real_close(int fd);
int __wrap_close(int fd) {
  return route({"close", fd}, [&] { return __real_close(fd); });
}

int __real_stat(const char* path, struct stat* status);
int __wrap_stat(const char* path, struct stat* status) {
  return route({"stat", -1}, [&] { return __real_stat(path, status); });
}

int __real_unlink(const char* path);
int __wrap_unlink(const char* path) {
  return route({"unlink", -1}, [&] { return __real_unlink(path); });
}

int __real_getentropy(void* bytes, size_t size);
int __wrap_getentropy(void* bytes, size_t size) {
  return route({"getentropy", -1}, [&] { return __real_getentropy(bytes, size); });
}

}  // extern "C"
// NOLINTEND
