// The floor for start-up and idling: a program that binds, listens and waits in poll().
//
// Usage: listen_and_wait DIALER_SOCKET
#include <poll.h>
#include <stdio.h>
#include <sys/socket.h>
#include <sys/un.h>

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  struct sockaddr_un address = {.sun_family = AF_UNIX};
  snprintf(address.sun_path, sizeof address.sun_path, "%s", argv[1]);
  const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
  if (bind(listener, (struct sockaddr*)&address, sizeof address) != 0 || listen(listener, 5) != 0) {
    perror(argv[1]);
    return 1;
  }
  // A client that is never accepted leaves the listener readable, so the second wait watches no
  // descriptor.
  struct pollfd descriptor = {.fd = listener, .events = POLLIN};
  poll(&descriptor, 1, -1);
  return poll(NULL, 0, -1);
}
