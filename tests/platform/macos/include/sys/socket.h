// This system's header, with an addition of macOS.
#pragma once

#include_next <sys/socket.h>

#define SO_NOSIGPIPE 0x1022
