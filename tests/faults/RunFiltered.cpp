// run_filtered CHANNEL PROGRAM ARGUMENT...: executes PROGRAM with a seccomp filter that reports
// every call in SystemCallTable.h, before it is made, to the process that listens at the socket
// CHANNEL.
#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

#include "tests/faults/SystemCallTable.h"
#include "tests/support/Sockets.h"

namespace seldial::tests {
namespace {

sock_filter statement(unsigned code, std::uint32_t value) {
  return {static_cast<std::uint16_t>(code), 0, 0, value};
}

/// Executes the next statement if the loaded word is `value`, otherwise skips `skipped` statements.
sock_filter unlessEqualSkip(long value, std::uint8_t skipped) {
  return {BPF_JMP | BPF_JEQ | BPF_K, 0, skipped, static_cast<std::uint32_t>(value)};
}

std::vector<sock_filter> filter() {
  const auto notify = statement(BPF_RET | BPF_K, SECCOMP_RET_USER_NOTIF);
  const auto allow = statement(BPF_RET | BPF_K, SECCOMP_RET_ALLOW);
  std::vector<sock_filter> code{
      statement(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      unlessEqualSkip(SYS_sendmsg, 4),
      statement(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[0])),
      unlessEqualSkip(kChannelDescriptor, 1),
      allow,
      notify,
  };
  for (const auto& call : systemCallTable()) {
    code.push_back(unlessEqualSkip(call.number, 1));
    code.push_back(notify);
  }
  code.push_back(allow);
  return code;
}

int installFilter() {
  auto code = filter();
  const sock_fprog program{static_cast<unsigned short>(code.size()), code.data()};
  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) return -1;
  return static_cast<int>(
      syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_NEW_LISTENER, &program));
}

bool sendDescriptor(int descriptor) {
  char byte = 0;
  iovec content{&byte, 1};
  alignas(cmsghdr) char control[CMSG_SPACE(sizeof descriptor)] = {};
  msghdr message{};
  message.msg_iov = &content;
  message.msg_iovlen = 1;
  message.msg_control = control;
  message.msg_controllen = sizeof control;
  cmsghdr* const header = CMSG_FIRSTHDR(&message);
  header->cmsg_level = SOL_SOCKET;
  header->cmsg_type = SCM_RIGHTS;
  header->cmsg_len = CMSG_LEN(sizeof descriptor);
  std::memcpy(CMSG_DATA(header), &descriptor, sizeof descriptor);
  return sendmsg(kChannelDescriptor, &message, 0) == 1;
}

int run(char* arguments[]) {
  const Peer channel = Peer::connectedTo(arguments[1]);
  if (dup3(channel.fd, kChannelDescriptor, O_CLOEXEC) == -1) return 126;
  // From here on each call in the table waits for an answer, but the owner of the channel cannot
  // answer before it has the listener.
  const int listener = installFilter();
  if (listener == -1 || !sendDescriptor(listener)) return 126;
  execv(arguments[2], arguments + 2);
  return 127;
}

}  // namespace
}  // namespace seldial::tests

int main(int argc, char* argv[]) {
  return argc < 3 ? 125 : seldial::tests::run(argv);
}
