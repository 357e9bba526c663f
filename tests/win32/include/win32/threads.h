#pragma once

#include <pthread.h>

#include "win32/types.h"

using LPTHREAD_START_ROUTINE = DWORD (*)(LPVOID parameter);

struct CRITICAL_SECTION {
    pthread_mutex_t mutex;
};
using LPCRITICAL_SECTION = CRITICAL_SECTION*;

struct SRWLOCK {
    pthread_mutex_t mutex;
};
using PSRWLOCK = SRWLOCK*;
inline constexpr SRWLOCK SRWLOCK_INIT = {PTHREAD_MUTEX_INITIALIZER};

struct CONDITION_VARIABLE {
    pthread_cond_t condition;
};
using PCONDITION_VARIABLE = CONDITION_VARIABLE*;
inline constexpr CONDITION_VARIABLE CONDITION_VARIABLE_INIT = {PTHREAD_COND_INITIALIZER};

inline constexpr DWORD TLS_OUT_OF_INDEXES = 0xFFFFFFFF;
inline constexpr DWORD INFINITE = 0xFFFFFFFF;
inline constexpr DWORD WAIT_OBJECT_0 = 0;
inline constexpr DWORD WAIT_TIMEOUT = 258;
inline constexpr DWORD WAIT_FAILED = 0xFFFFFFFF;
inline constexpr DWORD MAXIMUM_WAIT_OBJECTS = 64;

extern "C" {

// Flags, security and suspended threads are not supported; the stack's size is not looked at.
HANDLE CreateThread(LPSECURITY_ATTRIBUTES security, SIZE_T stackSize, LPTHREAD_START_ROUTINE start, LPVOID parameter,
                    DWORD flags, LPDWORD threadId);
DWORD GetCurrentThreadId();
void Sleep(DWORD milliseconds);
DWORD TlsAlloc();
BOOL TlsFree(DWORD index);
LPVOID TlsGetValue(DWORD index);
// Needs memory, and may fail for want of it, in a thread that has no value there.
BOOL TlsSetValue(DWORD index, LPVOID value);

// Names are not supported.
HANDLE CreateEventA(LPSECURITY_ATTRIBUTES security, BOOL manualReset, BOOL initialState, LPCSTR name);
HANDLE CreateEventW(LPSECURITY_ATTRIBUTES security, BOOL manualReset, BOOL initialState, LPCWSTR name);
BOOL SetEvent(HANDLE event);
BOOL ResetEvent(HANDLE event);

// Names are not looked at: what programs share by name on Windows, each has to itself here. Not to be owned twice.
HANDLE CreateMutexA(LPSECURITY_ATTRIBUTES security, BOOL initialOwner, LPCSTR name);
BOOL ReleaseMutex(HANDLE mutex);

DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds);
// Waiting for all is not supported.
DWORD WaitForMultipleObjects(DWORD count, const HANDLE* handles, BOOL waitForAll, DWORD milliseconds);

BOOL InitializeCriticalSectionAndSpinCount(LPCRITICAL_SECTION section, DWORD spinCount);
void DeleteCriticalSection(LPCRITICAL_SECTION section);
void EnterCriticalSection(LPCRITICAL_SECTION section);
void LeaveCriticalSection(LPCRITICAL_SECTION section);

// Locks that are shared are not supported.
void AcquireSRWLockExclusive(PSRWLOCK lock);
void ReleaseSRWLockExclusive(PSRWLOCK lock);
BOOL SleepConditionVariableSRW(PCONDITION_VARIABLE condition, PSRWLOCK lock, DWORD milliseconds, ULONG flags);
void WakeAllConditionVariable(PCONDITION_VARIABLE condition);

}  // extern "C"

inline void YieldProcessor() {
    __builtin_ia32_pause();
}
