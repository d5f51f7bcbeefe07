// The system calls of the program that can fail, each with the errors that its manual page names.
// EFAULT and EINVAL are left out: they indicate a bug in the program, not a condition of the
// system. Also left out are shutdown, which never fails on a local socket, and close, which closes
// the descriptor even if it fails.
#pragma once

#include <sys/syscall.h>

#include <array>
#include <cerrno>
#include <vector>

namespace seldial::tests {

/// The descriptor over which run_filtered sends its listener; sendmsg on it is never reported.
inline constexpr int kChannelDescriptor = 900;

struct SystemCallFaults {
  const char* name;
  long number;
  std::vector<int> errors;  ///< the most likely one first
  /// The call is made only on the connection to the X server, and fails because that is lost.
  /// libxcb treats any error as a lost connection, and waits forever if the connection still works.
  bool losesConnection = false;
};

inline const std::vector<SystemCallFaults>& systemCallTable() {
  static const std::vector<SystemCallFaults> table{
      {"accept", SYS_accept, {EMFILE, EINTR, ECONNABORTED, ENFILE, ENOBUFS, ENOMEM, EPERM}},
      {"accept4", SYS_accept4, {EMFILE, EINTR, ECONNABORTED, ENFILE, ENOBUFS, ENOMEM, EPERM}},
      {"access", SYS_access, {EACCES, EIO, ELOOP, ENOMEM}},
      {"bind", SYS_bind, {EADDRINUSE, EACCES, ENOMEM, EROFS, ELOOP, ENOTDIR}},
      {"clone3", SYS_clone3, {EAGAIN, ENOMEM, EPERM}},
      {"connect", SYS_connect, {ECONNREFUSED, EAGAIN, EACCES, EINTR, ENOENT, ETIMEDOUT}},
      {"dup", SYS_dup, {EMFILE, EBUSY, EINTR}},
      {"epoll_create1", SYS_epoll_create1, {EMFILE, ENFILE, ENOMEM}},
      {"epoll_ctl", SYS_epoll_ctl, {ENOMEM, ENOSPC}},
      {"epoll_wait", SYS_epoll_wait, {EINTR}},
      {"eventfd2", SYS_eventfd2, {EMFILE, ENFILE, ENODEV, ENOMEM}},
      {"fcntl", SYS_fcntl, {EAGAIN, EINTR, EPERM}},
      {"getpeername", SYS_getpeername, {ENOBUFS, ENOTCONN}},
      {"getrandom", SYS_getrandom, {EINTR, EAGAIN, ENOSYS}},
      {"listen", SYS_listen, {EADDRINUSE, EOPNOTSUPP}},
      {"mmap", SYS_mmap, {ENOMEM, EAGAIN}},
      {"newfstatat", SYS_newfstatat, {ENOENT, EACCES, ELOOP, ENOMEM, ENOTDIR}},
      {"openat", SYS_openat, {EMFILE, EACCES, ENFILE, ENOMEM}},
      {"pipe2", SYS_pipe2, {EMFILE, ENFILE}},
      {"poll", SYS_poll, {EINTR}},
      {"ppoll", SYS_ppoll, {EINTR, ENOMEM}},
      {"prlimit64", SYS_prlimit64, {EPERM}},
      {"read", SYS_read, {EINTR, EIO, ECONNRESET}},
      {"recvfrom", SYS_recvfrom, {ECONNRESET}, true},
      {"recvmsg", SYS_recvmsg, {ECONNRESET}, true},
      {"rt_sigaction", SYS_rt_sigaction, {}},  // marks the beginning of main
      {"sendmsg", SYS_sendmsg, {EINTR, EPIPE, ENOBUFS, ENOMEM}},
      {"sendto", SYS_sendto, {EPIPE, EINTR, EAGAIN, ECONNRESET, ENOBUFS, ENOMEM}},
      {"setsockopt", SYS_setsockopt, {ENOMEM, ENOBUFS}},
      {"signalfd4", SYS_signalfd4, {EMFILE, ENFILE, ENODEV, ENOMEM}},
      {"socket", SYS_socket, {EMFILE, EACCES, ENFILE, ENOBUFS, ENOMEM}},
      {"unlink", SYS_unlink, {EACCES, EBUSY, EIO, ENOENT, EPERM, EROFS}},
      {"write", SYS_write, {EIO, EINTR, EPIPE, ENOSPC, EAGAIN}},
      {"writev", SYS_writev, {EPIPE}, true},
  };
  return table;
}

}  // namespace seldial::tests
