#include "component/com/thread_support.h"

#include <pthread.h>
#include <windows.h>

#include <cerrno>
#include <initializer_list>

// The run-time calls these few functions, by these names. The library that has them for programs
// never gives back, when a DLL goes, its slot for thread values, of which a process has 1,088, nor
// two handles for each thread. Should the run-time come to need another function, that library is
// linked as well, and the names clash.

namespace velk {

namespace {

// One key is all that the run-time makes: that of its thread_local variables.
// NOLINTBEGIN(*-avoid-non-const-global-variables)
DWORD slot = FLS_OUT_OF_INDEXES;
void (*destroyValue)(void*) = nullptr;
// NOLINTEND(*-avoid-non-const-global-variables)

// The run-time's function has another calling convention than 32-bit Windows demands.
void WINAPI destroyThreadValue(void* value) {
  destroyValue(value);
}

/// A lock or a condition of Windows in the run-time's word for one. Windows' begin with 0 and never
/// become -1 or -3, with which the run-time's static ones begin. Those with -3 may be locked again
/// by their owner, which nothing here does.
template <class Native>
Native* native(intptr_t* word) {
  static_assert(sizeof(Native) == sizeof(intptr_t));
  auto* const place = reinterpret_cast<void**>(word);
  for (const intptr_t fresh : {PTHREAD_MUTEX_INITIALIZER, PTHREAD_RECURSIVE_MUTEX_INITIALIZER}) {
    InterlockedCompareExchangePointer(place, nullptr, reinterpret_cast<void*>(fresh));
  }
  return reinterpret_cast<Native*>(place);
}

}  // namespace

void freeThreadValues() {
  if (slot != FLS_OUT_OF_INDEXES) FlsFree(slot);
}

}  // namespace velk

extern "C" {

int pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t*) {
  InitializeSRWLock(velk::native<SRWLOCK>(mutex));
  return 0;
}
int pthread_mutex_destroy(pthread_mutex_t*) {
  return 0;
}
int pthread_mutex_lock(pthread_mutex_t* mutex) {
  AcquireSRWLockExclusive(velk::native<SRWLOCK>(mutex));
  return 0;
}
int pthread_mutex_unlock(pthread_mutex_t* mutex) {
  ReleaseSRWLockExclusive(velk::native<SRWLOCK>(mutex));
  return 0;
}

int pthread_cond_wait(pthread_cond_t* cv, pthread_mutex_t* external_mutex) {
  SleepConditionVariableSRW(velk::native<CONDITION_VARIABLE>(cv),
                            velk::native<SRWLOCK>(external_mutex), INFINITE, 0);
  return 0;
}
int pthread_cond_broadcast(pthread_cond_t* cv) {
  WakeAllConditionVariable(velk::native<CONDITION_VARIABLE>(cv));
  return 0;
}

int pthread_once(pthread_once_t* o, void (*func)()) {
  constexpr long running = 1;
  constexpr long done = 2;
  long before = InterlockedCompareExchange(o, running, PTHREAD_ONCE_INIT);
  if (before == PTHREAD_ONCE_INIT) {
    func();
    InterlockedExchange(o, done);
  }
  // What starts is done in moments, so that it is not worth an object to wait for.
  for (; before == running; before = InterlockedCompareExchange(o, done, done)) Sleep(1);
  return 0;
}

int pthread_key_create(pthread_key_t* key, void (*destroy)(void*)) {
  if (velk::slot != FLS_OUT_OF_INDEXES) return EAGAIN;
  velk::destroyValue = destroy;
  velk::slot = FlsAlloc(velk::destroyThreadValue);
  *key = velk::slot;
  return velk::slot == FLS_OUT_OF_INDEXES ? EAGAIN : 0;
}
void* pthread_getspecific(pthread_key_t key) {
  const DWORD lastError = GetLastError();  // which the next call sets to 0
  void* const value = FlsGetValue(key);
  SetLastError(lastError);
  return value;
}
int pthread_setspecific(pthread_key_t key, const void* value) {
  return FlsSetValue(key, const_cast<void*>(value)) == FALSE ? ENOMEM : 0;
}

}  // extern "C"
