// The environment of the process, and its debugger.
#include <algorithm>
#include <cstdlib>
#include <mutex>

#include "Call.h"
#include "Text.h"
#include "win32/process.h"

using win32::AnswerOr;
using win32::Failure;

namespace {

// The C library's functions do not wait for each other.
std::mutex& EnvironmentLock() {
    static std::mutex& lock = *new std::mutex;
    return lock;
}

std::string Checked(LPCWSTR name) {
    if (name == nullptr || *name == L'\0') {
        throw Failure{ERROR_INVALID_PARAMETER};
    }
    return win32::Narrow(name);
}

}  // namespace

DWORD GetEnvironmentVariableW(LPCWSTR name, LPWSTR value, DWORD size) {
    return AnswerOr<DWORD>(0, "GetEnvironmentVariableW", [&] {
        const std::string narrowName = Checked(name);
        const std::lock_guard guard(EnvironmentLock());
        const char* const found = std::getenv(narrowName.c_str());
        if (found == nullptr) {
            throw Failure{ERROR_ENVVAR_NOT_FOUND};
        }
        const std::wstring text = win32::Widen(found);
        if (size <= text.size()) {
            return static_cast<DWORD>(text.size() + 1);
        }
        *std::copy(text.begin(), text.end(), value) = L'\0';
        return static_cast<DWORD>(text.size());
    });
}

BOOL SetEnvironmentVariableW(LPCWSTR name, LPCWSTR value) {
    return AnswerOr(FALSE, "SetEnvironmentVariableW", [&] {
        const std::string narrowName = Checked(name);
        const std::lock_guard guard(EnvironmentLock());
        const int result = value != nullptr ? ::setenv(narrowName.c_str(), win32::Narrow(value).c_str(), 1)
                                            : ::unsetenv(narrowName.c_str());
        win32::Support(result == 0, "this name of an environment variable");
        return TRUE;
    });
}

void OutputDebugStringW(LPCWSTR /*text*/) {}
