#include "checking/Channels.h"

#include <windows.h>

#include "base/Boundary.h"
#include "checking/Environment.h"
#include "checking/Texts.h"

namespace checking {

namespace {

void Write(HANDLE file, const std::string& line) noexcept {
    DWORD written = 0;
    ::WriteFile(file, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
}

// Others may read the file meanwhile, or add to it.
void AddToFile(const std::wstring& path, const std::string& line) noexcept {
    HANDLE const file = ::CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        Write(file, line);
        ::CloseHandle(file);
    }
}

}  // namespace

void Tell(const std::string& message, bool mayStop) noexcept {
    bridge::Guarded([&] {
        const std::string line = message + "\n";
        ::OutputDebugStringW(Wide(line).c_str());
        Write(::GetStdHandle(STD_ERROR_HANDLE), line);
        if (const std::wstring path = TextFromEnvironment(L"VSMSGBUS_CHECK_FILE"); !path.empty()) {
            AddToFile(path, line);
        }
        const std::wstring wish = mayStop ? TextFromEnvironment(L"VSMSGBUS_CHECK") : std::wstring();
        if (wish == L"break") {
            ::DebugBreak();
        } else if (wish == L"abort") {
            ::TerminateProcess(::GetCurrentProcess(), 3);
        }
    });
}

}  // namespace checking
