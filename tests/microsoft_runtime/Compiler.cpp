// Symbols that the compiler refers to and that are not in Microsoft's own DLLs.
#include <windows.h>

#include <climits>

// NOLINTBEGIN(bugprone-reserved-identifier)

extern "C" {

// Looked for by the linker when numbers with a point occur.
extern const int _fltused;
const int _fltused = 0;

// Every type that is thrown, or looked up, points to this table; no code calls through it.
extern void* typeInfoTable[2] __asm__("??_7type_info@@6B@");
void* typeInfoTable[2];

// A function's static object is constructed once. Its guard is 0 before, `underConstruction` meanwhile, and then the
// number that `constructions` had. A thread looks here only if its own number is less than the guard.
int constructions = INT_MIN;
__declspec(thread) int _Init_thread_epoch = INT_MIN;

static constexpr int underConstruction = -1;
static SRWLOCK lock = SRWLOCK_INIT;
static CONDITION_VARIABLE isConstructed = CONDITION_VARIABLE_INIT;

// The caller constructs the object if the guard is `underConstruction` afterwards.
void __cdecl _Init_thread_header(int* guard) {
    AcquireSRWLockExclusive(&lock);
    while (*guard == underConstruction) {
        SleepConditionVariableSRW(&isConstructed, &lock, INFINITE, 0);
    }
    if (*guard == 0) {
        *guard = underConstruction;
    } else {
        _Init_thread_epoch = constructions;
    }
    ReleaseSRWLockExclusive(&lock);
}

void __cdecl _Init_thread_footer(int* guard) {
    AcquireSRWLockExclusive(&lock);
    *guard = ++constructions;
    _Init_thread_epoch = constructions;
    ReleaseSRWLockExclusive(&lock);
    WakeAllConditionVariable(&isConstructed);
}

// The constructor has thrown: the next one tries again.
void __cdecl _Init_thread_abort(int* guard) {
    AcquireSRWLockExclusive(&lock);
    *guard = 0;
    ReleaseSRWLockExclusive(&lock);
    WakeAllConditionVariable(&isConstructed);
}

}  // extern "C"

// NOLINTEND(bugprone-reserved-identifier)
