// xcb/xkb.h names a field `explicit`, which is a word of C++. Include this file in its stead.
#pragma once

#define explicit isExplicit
#include <xcb/xkb.h>
#undef explicit
