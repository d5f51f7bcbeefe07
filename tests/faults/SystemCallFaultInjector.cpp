#include "tests/faults/SystemCallFaultInjector.h"

#include <linux/seccomp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <filesystem>

#include "tests/faults/SystemCallTable.h"

namespace seldial::tests {
namespace {

bool readableBefore(int descriptor, int stop) {
  pollfd descriptors[2] = {{descriptor, POLLIN, 0}, {stop, POLLIN, 0}};
  poll(descriptors, 2, -1);
  return descriptors[1].revents == 0 && (descriptors[0].revents & POLLIN) != 0;
}

/// Hangs up a socket of another process.
void loseConnection(unsigned process, int descriptor) {
  const auto handle = static_cast<int>(syscall(SYS_pidfd_open, process, 0));
  const auto connection = static_cast<int>(syscall(SYS_pidfd_getfd, handle, descriptor, 0));
  shutdown(connection, SHUT_RDWR);
  close(connection);
  close(handle);
}

bool isEventDescriptor(unsigned thread, unsigned long long descriptor) {
  const auto link = "/proc/" + std::to_string(thread) + "/fd/" + std::to_string(descriptor);
  std::error_code ignored;
  return std::filesystem::read_symlink(link, ignored) == "anon_inode:[eventfd]";
}

}  // namespace

SystemCallFaultInjector::SystemCallFaultInjector(std::optional<Fault> fault)
    : fault_(std::move(fault)), stop_(eventfd(0, EFD_CLOEXEC)), thread_([this] { run(); }) {}

SystemCallFaultInjector::~SystemCallFaultInjector() {
  eventfd_write(stop_, 1);
  thread_.join();
  close(stop_);
}

std::vector<std::string> SystemCallFaultInjector::command(std::vector<std::string> command) const {
  command.insert(command.begin(), {SELDIAL_RUN_FILTERED, path_});
  return command;
}

void SystemCallFaultInjector::enter(Phase phase) {
  const std::lock_guard lock(mutex_);
  phase_ = phase;
}

bool SystemCallFaultInjector::hasInjected() const {
  const std::lock_guard lock(mutex_);
  return injected_;
}

std::map<std::pair<Phase, std::string>, int> SystemCallFaultInjector::counts() const {
  const std::lock_guard lock(mutex_);
  return counts_;
}

void SystemCallFaultInjector::run() {
  if (!readableBefore(channel_.fd, stop_)) return;
  const int listener = receiveListener();
  if (listener == -1) return;
  serve(listener);
  close(listener);
}

int SystemCallFaultInjector::receiveListener() const {
  const Peer launcher = channel_.accepted();
  if (!readableBefore(launcher.fd, stop_)) return -1;
  char byte = 0;
  iovec content{&byte, 1};
  int listener = -1;
  alignas(cmsghdr) char control[CMSG_SPACE(sizeof listener)] = {};
  msghdr message{};
  message.msg_iov = &content;
  message.msg_iovlen = 1;
  message.msg_control = control;
  message.msg_controllen = sizeof control;
  if (recvmsg(launcher.fd, &message, MSG_CMSG_CLOEXEC) != 1) return -1;
  const cmsghdr* const header = CMSG_FIRSTHDR(&message);
  if (header != nullptr) std::memcpy(&listener, CMSG_DATA(header), sizeof listener);
  return listener;
}

void SystemCallFaultInjector::serve(int listener) {
  while (readableBefore(listener, stop_)) {
    seccomp_notif call{};
    if (ioctl(listener, SECCOMP_IOCTL_NOTIF_RECV, &call) != 0) continue;  // it was interrupted
    const int error = answer(call);
    seccomp_notif_resp response{};
    response.id = call.id;
    response.error = -error;
    response.flags = error == 0 ? SECCOMP_USER_NOTIF_FLAG_CONTINUE : 0;
    // Fails if the caller was interrupted meanwhile; it then makes the call again.
    ioctl(listener, SECCOMP_IOCTL_NOTIF_SEND, &response);
  }
}

int SystemCallFaultInjector::answer(const seccomp_notif& asked) {
  const long number = asked.data.nr;
  const auto firstArgument = asked.data.args[0];
  // Like shutdown and close, a write to an eventfd never fails in the way the program uses it.
  if (number == SYS_write && isEventDescriptor(asked.pid, firstArgument)) return 0;
  const std::lock_guard lock(mutex_);
  // The program begins by ignoring SIGPIPE; earlier calls are made by the loader.
  if (number == SYS_rt_sigaction && firstArgument == SIGPIPE) counting_ = true;
  if (!counting_) return 0;
  const auto& table = systemCallTable();
  const auto call = std::find_if(table.begin(), table.end(),
                                 [&](const auto& entry) { return entry.number == number; });
  if (call == table.end()) return 0;
  const int occurrence = counts_[{phase_, call->name}]++;
  if (!fault_ || fault_->phase != phase_ || fault_->name != call->name ||
      fault_->occurrence != occurrence) {
    return 0;
  }
  injected_ = true;
  if (call->losesConnection) loseConnection(asked.pid, static_cast<int>(firstArgument));
  return fault_->error;
}

}  // namespace seldial::tests
