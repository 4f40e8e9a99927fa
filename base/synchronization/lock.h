#pragma once
// A plain mutual-exclusion lock and its scope guard. Not recursive: a thread that holds the
// lock must not acquire it again. Use AutoLock rather than Acquire/Release where a scope fits,
// so that an early return or an exception cannot leave the lock held.
#include <mutex>

namespace nbase {

class Lock {
 public:
  Lock() = default;
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;

  // Blocks until this thread holds the lock.
  void Acquire() { mutex_.lock(); }
  // Gives the lock up; only the thread that holds it may call this.
  void Release() { mutex_.unlock(); }
  // Takes the lock if it is free and returns true; returns false at once if another thread
  // holds it.
  bool Try() { return mutex_.try_lock(); }

 private:
  std::mutex mutex_;
};

// Holds `lock` from construction to the end of its scope.
class AutoLock {
 public:
  explicit AutoLock(Lock& lock) : lock_(lock) { lock_.Acquire(); }
  ~AutoLock() { lock_.Release(); }
  AutoLock(const AutoLock&) = delete;
  AutoLock& operator=(const AutoLock&) = delete;

 private:
  Lock& lock_;
};

}  // namespace nbase
