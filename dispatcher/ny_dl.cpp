#include "VsMsgbus/ny_dl.h"

#include <windows.h>

namespace {
constexpr int smallestErrorBuffer = 260;
}

uint32_t ny_dl_open(const char* path, unsigned flags, ny_dl_t* lib) noexcept {
    if (path == nullptr || lib == nullptr) {
        return 1;
    }
    lib->module = ::LoadLibraryExA(path, nullptr, flags != 0 ? flags : LOAD_WITH_ALTERED_SEARCH_PATH);
    return lib->module != nullptr ? 0 : ::GetLastError();
}

void* ny_dl_sym(ny_dl_t* lib, const char* name) noexcept {
    if (lib == nullptr || lib->module == nullptr || name == nullptr) {
        return nullptr;
    }
    return reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(lib->module), name));
}

void ny_dl_close(ny_dl_t* lib) noexcept {
    if (lib == nullptr || lib->module == nullptr) {
        return;
    }
    ::FreeLibrary(static_cast<HMODULE>(lib->module));
    lib->module = nullptr;
}

uint32_t ny_dl_error(char* buffer, int size) noexcept {
    if (buffer == nullptr || size < smallestErrorBuffer) {
        return 1;
    }
    const DWORD error = ::GetLastError();
    buffer[0] = '\0';
    // Some system texts have places to fill in ("%1 is not a valid Win32 application"), for which there are no values
    // here.
    ::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0, buffer,
                     static_cast<DWORD>(size), nullptr);
    return 0;
}
