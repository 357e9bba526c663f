#include "win32/process.h"

#include <malloc.h>
#include <unistd.h>

#include "OpenKey.h"
#include "win32_faults.h"

using win32::AnswerOr;

namespace {

void CheckIsCurrent(HANDLE process) {
    if (process != GetCurrentProcess()) {
        throw win32::Failure{ERROR_INVALID_HANDLE};
    }
}

}  // namespace

DWORD GetCurrentProcessId() {
    return static_cast<DWORD>(::getpid());
}

HANDLE GetCurrentProcess() {
    return reinterpret_cast<HANDLE>(intptr_t{-1});
}

BOOL CloseHandle(HANDLE handle) {
    return AnswerOr(FALSE, "CloseHandle", [&] {
        // A registry key is closed by RegCloseKey alone.
        const bool isKey = std::dynamic_pointer_cast<win32::OpenKey>(win32::ObjectOf<win32::Object>(handle)) != nullptr;
        if (isKey || win32::TakeHandle(handle) == nullptr) {
            throw win32::Failure{ERROR_INVALID_HANDLE};
        }
        return TRUE;
    });
}

BOOL DuplicateHandle(HANDLE sourceProcess, HANDLE handle, HANDLE targetProcess, HANDLE* copy, DWORD /*access*/,
                     BOOL /*inherit*/, DWORD /*options*/) {
    return AnswerOr(FALSE, "DuplicateHandle", [&] {
        CheckIsCurrent(sourceProcess);
        CheckIsCurrent(targetProcess);
        *copy = win32::OpenHandle(win32::ObjectOf<win32::Object>(handle));
        return TRUE;
    });
}

BOOL GetHandleInformation(HANDLE handle, LPDWORD flags) {
    return AnswerOr(FALSE, "GetHandleInformation", [&] {
        win32::ObjectOf<win32::Object>(handle);
        *flags = 0;
        return TRUE;
    });
}

BOOL GetProcessHandleCount(HANDLE process, LPDWORD count) {
    return AnswerOr(FALSE, "GetProcessHandleCount", [&] {
        CheckIsCurrent(process);
        *count = static_cast<DWORD>(win32::OpenHandles());
        return TRUE;
    });
}

intptr_t _get_heap_handle() {
    return 1;
}

// The sanitizers' allocators know their blocks, also those that were freed.
BOOL HeapValidate(HANDLE /*heap*/, DWORD /*flags*/, const void* block) {
    win32::Support(block != nullptr, "validating a whole heap");
    return ::malloc_usable_size(const_cast<void*>(block)) != 0 ? TRUE : FALSE;
}
