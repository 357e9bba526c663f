#include "Call.h"
#include "win32/threads.h"

BOOL InitializeCriticalSectionAndSpinCount(LPCRITICAL_SECTION section, DWORD /*spinCount*/) {
    pthread_mutexattr_t attributes;
    ::pthread_mutexattr_init(&attributes);
    ::pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    win32::Support(::pthread_mutex_init(&section->mutex, &attributes) == 0, "so many critical sections");
    ::pthread_mutexattr_destroy(&attributes);
    return TRUE;
}

void DeleteCriticalSection(LPCRITICAL_SECTION section) {
    win32::Support(::pthread_mutex_destroy(&section->mutex) == 0, "deleting a critical section that is in use");
}

void EnterCriticalSection(LPCRITICAL_SECTION section) {
    win32::Support(::pthread_mutex_lock(&section->mutex) == 0, "entering a critical section that is not there");
}

void LeaveCriticalSection(LPCRITICAL_SECTION section) {
    win32::Support(::pthread_mutex_unlock(&section->mutex) == 0,
                   "leaving a critical section that the thread is not in");
}
