// GoogleTest names std::mutex and std::condition_variable in one class, and the compiler's win32 thread model
// lacks both. To be included before it in the Windows test build.
#pragma once

#ifdef __cplusplus
#include <bits/c++config.h>

#include <condition_variable>
#include <mutex>
#ifndef _GLIBCXX_HAS_GTHREADS
#include <windows.h>

namespace std {

class mutex {
 public:
  void lock() { AcquireSRWLockExclusive(&lock_); }
  void unlock() { ReleaseSRWLockExclusive(&lock_); }
  SRWLOCK* native() { return &lock_; }

 private:
  SRWLOCK lock_ = SRWLOCK_INIT;
};

class condition_variable {
 public:
  void notify_all() { WakeAllConditionVariable(&condition_); }
  template <class Lock, class Predicate>
  void wait(Lock& lock, Predicate ready) {
    while (!ready()) SleepConditionVariableSRW(&condition_, lock.mutex()->native(), INFINITE, 0);
  }

 private:
  CONDITION_VARIABLE condition_ = CONDITION_VARIABLE_INIT;
};

}  // namespace std
#endif
#endif
