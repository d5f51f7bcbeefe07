#pragma once

#include "unixsocket/Mutex.h"

namespace seldial {

/// Threads wait at it until it is opened, once and for all.
class Gate {
 public:
  void open() SELDIAL_EXCLUDES(mutex_) {
    const MutexLock lock(mutex_);
    open_ = true;
    opened_.notifyAll();
  }

  void wait() SELDIAL_EXCLUDES(mutex_) {
    const MutexLock lock(mutex_);
    while (!open_) opened_.wait(mutex_);
  }

 private:
  Mutex mutex_;
  bool open_ SELDIAL_GUARDED_BY(mutex_) = false;
  Condition opened_;
};

}  // namespace seldial
