// This system's threads, and what macOS has beside them.
#pragma once

#include_next <pthread.h>

#ifdef __cplusplus
extern "C" {
#endif
/// Not 0 in the main thread.
int pthread_main_np(void);
#ifdef __cplusplus
}
#endif
