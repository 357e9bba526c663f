// The environment of the process, and its debugger.
#include <strings.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
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

// The name under which a variable of that name stands in the environment: their case does not count.
std::string KnownName(const std::string& name) {
    for (char** variable = environ; *variable != nullptr; ++variable) {
        const char* const end = std::strchr(*variable, '=');
        if (end == *variable + name.size() && ::strncasecmp(*variable, name.c_str(), name.size()) == 0) {
            return {*variable, name.size()};
        }
    }
    return name;
}

bool IsEmpty(LPCWSTR name) {
    return name == nullptr || *name == L'\0';
}

}  // namespace

DWORD GetEnvironmentVariableW(LPCWSTR name, LPWSTR value, DWORD size) {
    return AnswerOr<DWORD>(0, "GetEnvironmentVariableW", [&] {
        const std::string narrowName = win32::Narrow(IsEmpty(name) ? L"" : name);
        const std::lock_guard guard(EnvironmentLock());
        const char* const found = std::getenv(KnownName(narrowName).c_str());
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
        if (IsEmpty(name)) {
            throw Failure{ERROR_INVALID_PARAMETER};
        }
        const std::lock_guard guard(EnvironmentLock());
        const std::string narrowName = KnownName(win32::Narrow(name));
        const int result = value != nullptr ? ::setenv(narrowName.c_str(), win32::Narrow(value).c_str(), 1)
                                            : ::unsetenv(narrowName.c_str());
        win32::Support(result == 0, "this name of an environment variable");
        return TRUE;
    });
}

void OutputDebugStringW(LPCWSTR /*text*/) {}
