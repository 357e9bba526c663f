#include <cstdio>

#include "Call.h"

namespace {
constexpr DWORD firstCodeWithoutText = 16000;
thread_local DWORD lastError = ERROR_SUCCESS;
}  // namespace

DWORD GetLastError() {
    return lastError;
}

void SetLastError(DWORD error) {
    lastError = error;
}

DWORD FormatMessageA(DWORD flags, const void* /*source*/, DWORD message, DWORD /*language*/, LPSTR buffer, DWORD size,
                     va_list* /*arguments*/) {
    win32::Support((flags & FORMAT_MESSAGE_FROM_SYSTEM) != 0, "texts that are not the system's");
    return win32::AnswerOr<DWORD>(0, "FormatMessageA", [&] {
        if (message >= firstCodeWithoutText) {
            throw win32::Failure{ERROR_MR_MID_NOT_FOUND};
        }
        const int length = std::snprintf(buffer, size, "Error %u.\r\n", message);
        if (length < 0 || static_cast<DWORD>(length) >= size) {
            throw win32::Failure{ERROR_INSUFFICIENT_BUFFER};
        }
        return static_cast<DWORD>(length);
    });
}
