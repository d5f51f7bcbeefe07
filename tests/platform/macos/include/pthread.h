// This system's header, with an addition of macOS.
#pragma once

#include_next <pthread.h>

#ifdef __cplusplus
extern "C" {
#endif
/// Not 0 on the main thread.
int pthread_main_np(void);
#ifdef __cplusplus
}
#endif
