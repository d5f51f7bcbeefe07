// The macOS socket code, run on Linux sockets. Linux refuses SO_NOSIGPIPE, and an accepted
// connection inherits no flags there: the linker routes these calls through here (--wrap, see
// CMakeLists.txt).
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <future>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "platform/System.h"

namespace {

std::mutex mutex;
std::vector<int> withoutSignals;  // descriptors for which SO_NOSIGPIPE was set
std::atomic<bool> refusePipes = false;
std::atomic<int> lateAccepts = 0;  // this many calls act as if another thread was faster

// SO_NOSIGPIPE has no effect here.
const auto signalBefore = std::signal(SIGPIPE, SIG_IGN);

}  // namespace

// The names are the linker's.
// NOLINTBEGIN
extern "C" {
int __real_setsockopt(int number, int level, int option, const void* value, socklen_t size);
int __wrap_setsockopt(int number, int level, int option, const void* value, socklen_t size) {
  if (level != SOL_SOCKET || option != SO_NOSIGPIPE) {
    return __real_setsockopt(number, level, option, value, size);
  }
  const std::lock_guard lock(mutex);
  if (size == sizeof(int) && *static_cast<const int*>(value) == 1) withoutSignals.push_back(number);
  return 0;
}

int __real_pipe(int* ends);
int __wrap_pipe(int* ends) {
  if (!refusePipes) return __real_pipe(ends);
  errno = EMFILE;
  return -1;
}

int __real_accept(int number, sockaddr* address, socklen_t* size);
int __wrap_accept(int number, sockaddr* address, socklen_t* size) {
  if (lateAccepts > 0) {
    --lateAccepts;
    errno = EWOULDBLOCK;
    return -1;
  }
  const int accepted = __real_accept(number, address, size);
  // As on macOS, a connection inherits the flags of its listening socket.
  if (accepted != -1) ::fcntl(accepted, F_SETFL, ::fcntl(number, F_GETFL));
  return accepted;
}
}
// NOLINTEND

namespace seldial::platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A listening socket for test connections.
struct MacSockets : testing::Test {
  MacSockets() : listening(::socket(AF_UNIX, SOCK_STREAM, 0)) {
    // Without a name the system chooses one.
    const sockaddr_un address{AF_UNIX, {}};
    const auto* generic = reinterpret_cast<const sockaddr*>(&address);
    EXPECT_EQ(::bind(listening, generic, sizeof address.sun_family), 0);
    EXPECT_EQ(::listen(listening, 5), 0);
    const std::lock_guard lock(mutex);
    withoutSignals.clear();
  }
  ~MacSockets() override { ::close(listening); }

  [[nodiscard]] int connected() const {
    sockaddr_un address{};
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    EXPECT_EQ(::getsockname(listening, generic, &size), 0);
    const int number = ::socket(AF_UNIX, SOCK_STREAM, 0);
    EXPECT_EQ(::connect(number, generic, size), 0);
    return number;
  }

  const int listening;
  std::unique_ptr<Acceptor> acceptor = makeAcceptor();
};

TEST_F(MacSockets, AnAcceptWaitsForAConnection) {
  auto accepted = std::async(std::launch::async, [this] { return acceptor->accept(listening); });
  const int connection = connected();
  const int number = accepted.get();
  ASSERT_GE(number, 0);
  EXPECT_EQ(::write(connection, "x", 1), 1);
  char byte = 0;
  EXPECT_EQ(::read(number, &byte, 1), 1);
  EXPECT_EQ(byte, 'x');
  ::close(number);
  ::close(connection);
}

TEST_F(MacSockets, AnEndWakesAnAccept) {
  std::promise<void> started;
  auto accepted = std::async(std::launch::async, [this, &started] {
    started.set_value();
    const int number = acceptor->accept(listening);
    return std::pair(number, errno);
  });
  started.get_future().wait();
  acceptor->end(listening);
  EXPECT_EQ(accepted.get(), std::pair(-1, ECONNABORTED));
}

TEST_F(MacSockets, AnEndWakesAnAcceptThatHadConnectionsBefore) {
  const int connection = connected();
  ::close(acceptor->accept(listening));
  auto accepted = std::async(std::launch::async, [this] { return acceptor->accept(listening); });
  acceptor->end(listening);
  EXPECT_EQ(accepted.get(), -1);
  ::close(connection);
}

TEST_F(MacSockets, AnEndWakesEveryAccept) {
  std::vector<std::future<int>> accepts;
  accepts.reserve(4);
  for (int i = 0; i < 4; ++i) {
    accepts.push_back(
        std::async(std::launch::async, [this] { return acceptor->accept(listening); }));
  }
  acceptor->end(listening);
  for (auto& accept : accepts) EXPECT_EQ(accept.get(), -1);
}

TEST_F(MacSockets, AfterAnEndNothingIsAcceptedThoughAConnectionWaits) {
  const int connection = connected();
  acceptor->end(listening);
  acceptor->end(listening);
  EXPECT_EQ(acceptor->accept(listening), -1);
  EXPECT_EQ(errno, ECONNABORTED);
  ::close(connection);
}

TEST_F(MacSockets, OneAcceptGetsAConnectionAndTheOtherKeepsWaiting) {
  auto first = std::async(std::launch::async, [this] { return acceptor->accept(listening); });
  auto second = std::async(std::launch::async, [this] { return acceptor->accept(listening); });
  const int connection = connected();
  const int next = connected();
  EXPECT_GE(first.get(), 0);
  EXPECT_GE(second.get(), 0);
  ::close(connection);
  ::close(next);
}

TEST_F(MacSockets, AnAcceptThatLosesItsConnectionToAnotherThreadKeepsWaiting) {
  const int connection = connected();
  lateAccepts = 3;
  const int number = acceptor->accept(listening);
  EXPECT_GE(number, 0);
  EXPECT_EQ(lateAccepts, 0);
  ::close(number);
  ::close(connection);
}

TEST_F(MacSockets, WhatAnAcceptorOpensIsNotInherited) {
  const int connection = connected();
  constexpr int kMany = 256;
  std::vector<int> before(kMany);
  for (int number = 0; number < kMany; ++number)
    before[static_cast<std::size_t>(number)] = ::fcntl(number, F_GETFD);
  const int accepted = acceptor->accept(listening);
  int opened = 0;
  for (int number = 0; number < kMany; ++number) {
    const int flags = ::fcntl(number, F_GETFD);
    if (before[static_cast<std::size_t>(number)] != -1 || flags == -1) continue;
    EXPECT_EQ(flags, FD_CLOEXEC) << number;
    ++opened;
  }
  EXPECT_EQ(opened, 3) << "the connection and the ends of the pipe";
  EXPECT_THAT(withoutSignals, ElementsAre(accepted));
  ::close(accepted);
  ::close(connection);
}

TEST_F(MacSockets, AnAcceptedConnectionBlocksAndTheListeningSocketDoesNot) {
  const int connection = connected();
  const int number = acceptor->accept(listening);
  EXPECT_EQ(::fcntl(number, F_GETFL) & O_NONBLOCK, 0);
  EXPECT_NE(::fcntl(listening, F_GETFL) & O_NONBLOCK, 0);
  ::close(number);
  ::close(connection);
}

TEST_F(MacSockets, AnAcceptOnASocketThatDoesNotListenFails) {
  const int idle = ::socket(AF_UNIX, SOCK_STREAM, 0);
  EXPECT_EQ(acceptor->accept(idle), -1);
  EXPECT_EQ(errno, EINVAL);
  ::close(idle);
}

TEST_F(MacSockets, AnAcceptFailsWhenNoDescriptorIsLeftForThePipe) {
  // UndefinedBehaviorSanitizer uses a pipe when it first checks a type: let it do so now.
  acceptor->end(listening);
  EXPECT_EQ(acceptor->accept(listening), -1);
  acceptor = makeAcceptor();
  Acceptor& fresh = *acceptor;
  const int on = listening;
  refusePipes = true;
  const int number = fresh.accept(on);
  const int error = errno;
  refusePipes = false;
  EXPECT_EQ(number, -1);
  EXPECT_EQ(error, EMFILE);
}

TEST_F(MacSockets, ANewSocketIsClosedOnExecAndRaisesNoSigpipe) {
  const int number = makeStreamSocket();
  ASSERT_NE(number, -1);
  EXPECT_EQ(::fcntl(number, F_GETFD), FD_CLOEXEC);
  EXPECT_THAT(withoutSignals, ElementsAre(number));
  ::close(number);
}

TEST_F(MacSockets, ASocketThatCannotBeMadeKeepsItsErrno) {
  rlimit before{};
  ::getrlimit(RLIMIT_NOFILE, &before);
  const rlimit none{0, before.rlim_max};
  ::setrlimit(RLIMIT_NOFILE, &none);
  const int number = makeStreamSocket();
  const int error = errno;
  ::setrlimit(RLIMIT_NOFILE, &before);
  EXPECT_EQ(number, -1);
  EXPECT_EQ(error, EMFILE);
  EXPECT_THAT(withoutSignals, IsEmpty());
}

TEST_F(MacSockets, AWriteOnAnUnknownSocketRaisesNoSigpipe) {
  int ends[2];
  ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
  EXPECT_EQ(writeOnce(ends[0], "abc", 3), 3);
  EXPECT_THAT(withoutSignals, ElementsAre(ends[0]));
  ::close(ends[1]);
  EXPECT_EQ(writeOnce(ends[0], "abc", 3), -1);
  EXPECT_EQ(errno, EPIPE);
  ::close(ends[0]);
}

}  // namespace
}  // namespace seldial::platform
