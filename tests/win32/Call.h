// The frame of every function of the layer that can fail: counts its uses and injects its faults.
#pragma once

#include <algorithm>
#include <iterator>
#include <new>
#include <optional>
#include <string_view>

#include "win32/errors.h"

namespace win32 {

inline constexpr std::string_view functionNames[] = {
    "CloseHandle",
    "CreateEventA",
    "CreateEventW",
    "CreateFileW",
    "CreateMutexA",
    "CreateThread",
    "DuplicateHandle",
    "EnumProcessModules",
    "FormatMessageA",
    "FreeLibrary",
    "GetEnvironmentVariableW",
    "GetHandleInformation",
    "GetModuleFileNameA",
    "GetModuleFileNameW",
    "GetModuleHandleA",
    "GetModuleHandleExA",
    "GetModuleHandleExW",
    "GetModuleHandleW",
    "GetProcAddress",
    "GetProcessHandleCount",
    "GetTokenInformation",
    "LoadLibraryA",
    "LoadLibraryExA",
    "MultiByteToWideChar",
    "OpenProcessToken",
    "RegCloseKey",
    "RegCreateKeyExA",
    "RegDeleteKeyExA",
    "RegDeleteTreeA",
    "RegDeleteValueA",
    "RegNotifyChangeKeyValue",
    "RegOpenKeyExA",
    "RegOpenKeyExW",
    "RegOverridePredefKey",
    "RegQueryValueExA",
    "RegQueryValueExW",
    "RegSetValueExA",
    "RegSetValueExW",
    "ReleaseMutex",
    "ResetEvent",
    "SetEnvironmentVariableW",
    "SetEvent",
    "SleepConditionVariableSRW",
    "TlsAlloc",
    "TlsSetValue",
    "WaitForMultipleObjects",
    "WaitForSingleObject",
    "WideCharToMultiByte",
    "WriteFile",
};

constexpr size_t IndexOf(std::string_view name) {
    return static_cast<size_t>(std::find(std::begin(functionNames), std::end(functionNames), name) -
                               std::begin(functionNames));
}

// The name of a function that can fail; any other literal does not compile.
struct FunctionName {
    template <size_t size>
    consteval FunctionName(const char (&literal)[size]) : index(IndexOf(literal)) {
        if (index == std::size(functionNames)) {
            throw "functionNames does not hold this name";
        }
    }

    size_t index;
};

// Counts a use of the function; the error of the fault that is due, if one is.
std::optional<DWORD> CountUse(FunctionName name) noexcept;

// Ends a function of the layer with an error.
struct Failure {
    LONG error;
};

// The error with which the body ended, ERROR_SUCCESS when it did not fail.
template <class Body>
LONG ErrorOf(FunctionName name, const Body& body) noexcept {
    if (const auto injected = CountUse(name)) {
        return static_cast<LONG>(*injected);
    }
    try {
        body();
        return ERROR_SUCCESS;
    } catch (const Failure& failure) {
        return failure.error;
    } catch (const std::bad_alloc&) {
        return ERROR_NOT_ENOUGH_MEMORY;
    }
}

// The body's answer, or `whenFailed` with the last error set.
template <class Answer, class Body>
Answer AnswerOr(Answer whenFailed, FunctionName name, const Body& body) noexcept {
    Answer answer{};
    const LONG error = ErrorOf(name, [&] { answer = body(); });
    if (error == ERROR_SUCCESS) {
        return answer;
    }
    SetLastError(static_cast<DWORD>(error));
    return whenFailed;
}

// Ends the process: something is asked for that the layer does not do, and no answer would be Windows' own.
[[noreturn]] void NotSupported(const char* what) noexcept;

inline void Support(bool isSupported, const char* what) noexcept {
    if (!isSupported) {
        NotSupported(what);
    }
}

}  // namespace win32
