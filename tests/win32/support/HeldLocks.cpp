#include "support/HeldLocks.h"

#include "win32/held_locks.h"

size_t HeldLocks() {
    return ::HeldLocksOfThread();
}
