// Thin wrappers over the standard mutex and condition variable that clang's thread-safety analysis
// understands: a field's declaration names the lock that guards it, and clang checks every access.
#pragma once

#include <condition_variable>
#include <mutex>

#if defined(__clang__)
#define SELDIAL_THREAD_ANNOTATION(attribute) __attribute__((attribute))
#else
#define SELDIAL_THREAD_ANNOTATION(attribute)
#endif

#define SELDIAL_CAPABILITY(name) SELDIAL_THREAD_ANNOTATION(capability(name))
#define SELDIAL_SCOPED_CAPABILITY SELDIAL_THREAD_ANNOTATION(scoped_lockable)
#define SELDIAL_GUARDED_BY(mutex) SELDIAL_THREAD_ANNOTATION(guarded_by(mutex))
#define SELDIAL_ACQUIRE(...) SELDIAL_THREAD_ANNOTATION(acquire_capability(__VA_ARGS__))
#define SELDIAL_RELEASE(...) SELDIAL_THREAD_ANNOTATION(release_capability(__VA_ARGS__))
#define SELDIAL_REQUIRES(...) SELDIAL_THREAD_ANNOTATION(requires_capability(__VA_ARGS__))
#define SELDIAL_EXCLUDES(...) SELDIAL_THREAD_ANNOTATION(locks_excluded(__VA_ARGS__))
#define SELDIAL_RETURN_CAPABILITY(mutex) SELDIAL_THREAD_ANNOTATION(lock_returned(mutex))

namespace seldial {

/// A non-recursive mutex. Any thread.
class SELDIAL_CAPABILITY("mutex") Mutex {
 public:
  /// Blocks while another thread holds it.
  void lock() SELDIAL_ACQUIRE() { mutex_.lock(); }
  /// Only in the thread that holds it.
  void unlock() SELDIAL_RELEASE() { mutex_.unlock(); }

 private:
  friend class Condition;
  std::mutex mutex_;
};

/// Locks a Mutex for its lifetime.
class SELDIAL_SCOPED_CAPABILITY MutexLock {
 public:
  /// Locks `mutex`, which must outlive this object.
  explicit MutexLock(Mutex& mutex) SELDIAL_ACQUIRE(mutex) : mutex_(mutex) { mutex_.lock(); }
  ~MutexLock() SELDIAL_RELEASE() { mutex_.unlock(); }
  MutexLock(const MutexLock&) = delete;
  MutexLock& operator=(const MutexLock&) = delete;

 private:
  Mutex& mutex_;
};

/// A condition variable for use with a Mutex. Any thread.
class Condition {
 public:
  /// Unlocks `mutex`, which the thread holds, waits for notifyAll() and locks it again. Call it in
  /// a loop that tests the condition: a wait may end spuriously.
  void wait(Mutex& mutex) SELDIAL_REQUIRES(mutex) {
    std::unique_lock<std::mutex> lock(mutex.mutex_, std::adopt_lock);
    condition_.wait(lock);
    lock.release();
  }
  /// Wakes all waiting threads. The mutex may be held or not.
  void notifyAll() { condition_.notify_all(); }

 private:
  std::condition_variable condition_;
};

}  // namespace seldial
