#include "loglib/LogDestination.h"

#include <windows.h>

#include <algorithm>
#include <cwchar>

#include "base/UniqueHandle.h"
#include "loglib/ProcessRights.h"
#include "loglib/Utf8.h"

namespace bridge {

namespace {

constexpr wchar_t fileVariable[] = L"LOGLIB_FILE";

// Empty when the variable is not there, or changes while it is read, or is not for this process: a user
// who starts a program that has more rights must not choose the file that it writes.
std::wstring FileOfEnvironment() {
    const DWORD capacity = ::GetEnvironmentVariableW(fileVariable, nullptr, 0);
    std::wstring path(capacity, L'\0');
    const DWORD length = ::GetEnvironmentVariableW(fileVariable, path.data(), capacity);
    path.resize(length < capacity ? length : 0);
    return path.empty() || HasHigherRights() ? std::wstring() : path;
}

}  // namespace

bool LogDestination::Choose(const wchar_t* path) {
    const size_t length = path != nullptr ? std::wcslen(path) : 0;
    if (length >= pathCapacity) {
        return false;
    }
    const ScopedLock guard(mutex);
    isChosen = path != nullptr;
    *std::copy_n(path, length, chosen.begin()) = L'\0';
    return true;
}

std::wstring LogDestination::File() const {
    {
        const ScopedLock guard(mutex);
        if (isChosen) {
            return chosen.data();
        }
    }
    return FileOfEnvironment();
}

bool LogDestination::Append(const std::wstring& path, const std::string& bytes) const {
    const ScopedLock guard(writing);
    const HANDLE opened =
        ::CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                      OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened == INVALID_HANDLE_VALUE) {
        return false;
    }
    const UniqueHandle file(opened);
    DWORD written = 0;
    const BOOL isWritten = ::WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    return isWritten && written == bytes.size();
}

void LogDestination::Write(const std::wstring& line) const {
    const std::wstring file = File();
    if (file.empty() || !Append(file, Utf8FromWide(line))) {
        ::OutputDebugStringW(line.c_str());
    }
}

}  // namespace bridge
