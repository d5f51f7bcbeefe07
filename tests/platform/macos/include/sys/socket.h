// This system's sockets, and what macOS has beside them.
#pragma once

#include_next <sys/socket.h>

#define SO_NOSIGPIPE 0x1022
