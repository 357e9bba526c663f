#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string>

#include "Call.h"
#include "Modules.h"
#include "References.h"
#include "Text.h"
#include "psapi.h"
#include "win32/libraries.h"

using win32::AnswerOr;
using win32::Failure;

namespace win32 {

namespace {

// A library's name without an extension stands for one with ".dll"; a point at its end says that there is none.
std::string FileOf(const char* text) {
    std::string path = text;
    std::replace(path.begin(), path.end(), '\\', '/');
    if (path.ends_with('.')) {
        path.pop_back();
    } else if (!std::filesystem::path(path).has_extension()) {
        path += ".dll";
    }
    return path;
}

HMODULE LoadOrRefer(const char* text) {
    const std::string file = FileOf(text);
    if (file.find('/') != std::string::npos) {
        return Load(file);
    }
    try {
        return ReferByFile(file.c_str());
    } catch (const Failure&) {
        return Load((std::filesystem::path(ProgramPath()).parent_path() / file).string());
    }
}

HMODULE ReferByText(const char* text) {
    return ReferByFile(text != nullptr ? FileOf(text).c_str() : nullptr);
}

HMODULE WithoutReference(HMODULE library) {
    Release(library);
    return library;
}

// As GetModuleHandleEx, for both kinds of text.
template <class Character>
HMODULE Refer(DWORD flags, const Character* nameOrAddress, HMODULE (*referByText)(const Character*)) {
    const HMODULE library = (flags & GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS) != 0 ? ReferByAddress(nameOrAddress)
                                                                                  : referByText(nameOrAddress);
    if ((flags & GET_MODULE_HANDLE_EX_FLAG_PIN) != 0) {
        Pin(library);
        return WithoutReference(library);
    }
    return (flags & GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT) != 0 ? WithoutReference(library) : Count(library);
}

HMODULE ReferByWideText(const wchar_t* text) {
    return ReferByText(text != nullptr ? Narrow(text).c_str() : nullptr);
}

// As GetModuleFileName: what does not fit is cut off, and the size then says so.
template <class Character>
DWORD GivePath(const std::basic_string<Character>& path, Character* buffer, DWORD size) {
    if (size == 0) {
        throw Failure{ERROR_INSUFFICIENT_BUFFER};
    }
    const size_t length = std::min<size_t>(path.size(), size - 1);
    std::copy_n(path.begin(), length, buffer);
    buffer[length] = 0;
    if (length < path.size()) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return size;
    }
    return static_cast<DWORD>(length);
}

std::string PathOrProgram(HMODULE library) {
    return library != nullptr ? PathOf(library) : ProgramPath();
}

}  // namespace

}  // namespace win32

HMODULE LoadLibraryExA(LPCSTR path, HANDLE /*reserved*/, DWORD flags) {
    return AnswerOr<HMODULE>(nullptr, "LoadLibraryExA", [&] {
        if (path == nullptr || (flags != 0 && flags != LOAD_WITH_ALTERED_SEARCH_PATH)) {
            throw Failure{ERROR_INVALID_PARAMETER};
        }
        return win32::Count(win32::LoadOrRefer(path));
    });
}

HMODULE LoadLibraryA(LPCSTR path) {
    return AnswerOr<HMODULE>(nullptr, "LoadLibraryA", [&] {
        if (path == nullptr) {
            throw Failure{ERROR_INVALID_PARAMETER};
        }
        return win32::Count(win32::LoadOrRefer(path));
    });
}

BOOL FreeLibrary(HMODULE library) {
    return AnswerOr(FALSE, "FreeLibrary", [&] {
        win32::Discount(library);
        win32::Release(library);
        return TRUE;
    });
}

FARPROC GetProcAddress(HMODULE library, LPCSTR name) {
    return AnswerOr<FARPROC>(nullptr, "GetProcAddress", [&] {
        void* const address = win32::ExportOf(library, name);
        if (address == nullptr) {
            throw Failure{ERROR_PROC_NOT_FOUND};
        }
        return reinterpret_cast<FARPROC>(address);
    });
}

HMODULE GetModuleHandleA(LPCSTR name) {
    return AnswerOr<HMODULE>(nullptr, "GetModuleHandleA",
                             [&] { return win32::WithoutReference(win32::ReferByText(name)); });
}

HMODULE GetModuleHandleW(LPCWSTR name) {
    return AnswerOr<HMODULE>(nullptr, "GetModuleHandleW",
                             [&] { return win32::WithoutReference(win32::ReferByWideText(name)); });
}

BOOL GetModuleHandleExA(DWORD flags, LPCSTR nameOrAddress, HMODULE* library) {
    *library = AnswerOr<HMODULE>(nullptr, "GetModuleHandleExA",
                                 [&] { return win32::Refer(flags, nameOrAddress, win32::ReferByText); });
    return *library != nullptr ? TRUE : FALSE;
}

BOOL GetModuleHandleExW(DWORD flags, LPCWSTR nameOrAddress, HMODULE* library) {
    *library = AnswerOr<HMODULE>(nullptr, "GetModuleHandleExW",
                                 [&] { return win32::Refer(flags, nameOrAddress, win32::ReferByWideText); });
    return *library != nullptr ? TRUE : FALSE;
}

DWORD GetModuleFileNameA(HMODULE library, LPSTR path, DWORD size) {
    return AnswerOr<DWORD>(0, "GetModuleFileNameA",
                           [&] { return win32::GivePath(win32::PathOrProgram(library), path, size); });
}

DWORD GetModuleFileNameW(HMODULE library, LPWSTR path, DWORD size) {
    return AnswerOr<DWORD>(0, "GetModuleFileNameW",
                           [&] { return win32::GivePath(win32::Widen(win32::PathOrProgram(library)), path, size); });
}

BOOL EnumProcessModules(HANDLE /*process*/, HMODULE* /*modules*/, DWORD /*size*/, LPDWORD needed) {
    return AnswerOr(FALSE, "EnumProcessModules", [&] {
        *needed = static_cast<DWORD>(win32::CountModules() * sizeof(HMODULE));
        return TRUE;
    });
}
