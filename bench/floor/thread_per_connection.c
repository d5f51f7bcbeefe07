// The floor for the round trip of a command, the growth per command and a held connection: a
// minimal server with one thread per connection. It reads the command to its end, connects back,
// writes an answer of fixed length and closes.
//
// Usage: thread_per_connection DIALER_SOCKET CLIENT_SOCKET ANSWER_LENGTH
#include <pthread.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

static struct sockaddr_un client_address = {.sun_family = AF_UNIX};
static char answer[4096];
static size_t answer_length;

static void* serve(void* argument) {
  const int connection = (int)(intptr_t)argument;
  char command[256];
  while (read(connection, command, sizeof command) > 0) continue;
  close(connection);

  const int client = socket(AF_UNIX, SOCK_STREAM, 0);
  if (connect(client, (struct sockaddr*)&client_address, sizeof client_address) != 0 ||
      write(client, answer, answer_length) < 0) {
    perror("answer");
  }
  close(client);
  return NULL;
}

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  struct sockaddr_un address = {.sun_family = AF_UNIX};
  snprintf(address.sun_path, sizeof address.sun_path, "%s", argv[1]);
  snprintf(client_address.sun_path, sizeof client_address.sun_path, "%s", argv[2]);
  answer_length = strtoul(argv[3], NULL, 10);
  if (answer_length > sizeof answer) return 2;
  memset(answer, 'x', sizeof answer);

  const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
  if (bind(listener, (struct sockaddr*)&address, sizeof address) != 0 || listen(listener, 5) != 0) {
    perror(argv[1]);
    return 1;
  }
  pthread_attr_t detached;
  pthread_attr_init(&detached);
  pthread_attr_setdetachstate(&detached, PTHREAD_CREATE_DETACHED);
  for (;;) {
    const int connection = accept(listener, NULL, NULL);
    pthread_t thread;
    if (connection == -1 ||
        pthread_create(&thread, &detached, serve, (void*)(intptr_t)connection) != 0) {
      perror("connection");
      return 1;
    }
  }
}
