// Thin wrappers over the standard mutex and condition variable that clang's thread-safety analysis
// understands: what a lock guards is said where the field is declared, and checked by the compiler.
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

/// A mutex, not recursive. Any thread.
class SELDIAL_CAPABILITY("mutex") Mutex {
 public:
  /// Waits until no other thread holds it, and holds it from then on.
  void lock() SELDIAL_ACQUIRE() { mutex_.lock(); }
  /// Lets go of it: in the thread that holds it alone.
  void unlock() SELDIAL_RELEASE() { mutex_.unlock(); }

 private:
  friend class Condition;
  std::mutex mutex_;
};

/// Holds a Mutex for as long as it lives.
class SELDIAL_SCOPED_CAPABILITY MutexLock {
 public:
  /// Locks `mutex`, which has to outlive the object.
  explicit MutexLock(Mutex& mutex) SELDIAL_ACQUIRE(mutex) : mutex_(mutex) { mutex_.lock(); }
  /// Unlocks it.
  ~MutexLock() SELDIAL_RELEASE() { mutex_.unlock(); }
  MutexLock(const MutexLock&) = delete;
  MutexLock& operator=(const MutexLock&) = delete;

 private:
  Mutex& mutex_;
};

/// Something to wait for under a Mutex. Any thread.
class Condition {
 public:
  /// Unlocks `mutex`, which the thread holds, until notifyAll(), and locks it again. To be called
  /// in a loop that tests what is waited for: a wait may end for no reason.
  void wait(Mutex& mutex) SELDIAL_REQUIRES(mutex) {
    std::unique_lock<std::mutex> lock(mutex.mutex_, std::adopt_lock);
    condition_.wait(lock);
    lock.release();
  }
  /// Ends the waits of all threads. The mutex may be held or not.
  void notifyAll() { condition_.notify_all(); }

 private:
  std::condition_variable condition_;
};

}  // namespace seldial
