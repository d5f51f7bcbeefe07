#pragma once

#include <cstdio>
#include <cstdlib>

/// Aborts, naming the line, if `condition` is false. Unlike assert, it is active in every build.
#define CHECK(condition)                                                                   \
  do {                                                                                     \
    if (!(condition)) {                                                                    \
      (void)std::fprintf(stderr, "%s:%d: not true: %s\n", __FILE__, __LINE__, #condition); \
      std::abort();                                                                        \
    }                                                                                      \
  } while (false)
