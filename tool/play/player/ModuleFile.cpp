#include "tool/play/player/ModuleFile.h"

#include <windows.h>

#include <algorithm>
#include <cctype>

#include "tool/text/Utf8.h"
#include "vsmsgbus_testing/Failure.hpp"

namespace tool::play {

namespace {

using vsmsgbus::testing::Failure;

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char character) { return static_cast<char>(std::tolower(character)); });
    return text;
}

template <class Type>
const Type* At(const void* base, size_t offset) {
    return reinterpret_cast<const Type*>(static_cast<const unsigned char*>(base) + offset);
}

std::string SystemReason(DWORD error) {
    wchar_t text[256] = {};
    ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0, text, 256, nullptr);
    std::string reason = Utf8(text);
    while (!reason.empty() && (reason.back() == '\n' || reason.back() == '\r' || reason.back() == '.')) {
        reason.pop_back();
    }
    return "error " + std::to_string(error) + (reason.empty() ? "" : ", " + reason);
}

}  // namespace

std::string ModuleFile::Name() const {
    return Utf8(path.filename());
}

void ModuleFile::Load() {
    if (handle != nullptr) {
        throw Failure(Name() + " is loaded");
    }
    handle = ::LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (handle == nullptr) {
        throw Failure(Utf8(path) + " cannot be loaded: " + SystemReason(::GetLastError()));
    }
}

void ModuleFile::Free() {
    if (handle == nullptr) {
        throw Failure(Name() + " is not loaded");
    }
    if (::FreeLibrary(static_cast<HMODULE>(handle)) == FALSE) {
        throw Failure(Name() + " cannot be unloaded: " + SystemReason(::GetLastError()));
    }
    handle = nullptr;
}

std::string ModuleFile::FindFunction(const std::string& ending) const {
    const std::string wanted = Lower(ending);
    const std::string unwanted = "un" + wanted;
    std::vector<std::string> found;
    for (const std::string& name : Exports()) {
        const std::string lower = Lower(name);
        if (lower.ends_with(wanted) && !lower.ends_with(unwanted)) {
            found.push_back(name);
        }
    }
    if (found.size() > 1) {
        throw Failure(Name() + " has several functions whose names end with " + ending + ": " + found[0] + ", " +
                      found[1] + "; say which with \"function\"");
    }
    return found.empty() ? std::string() : found.front();
}

bool ModuleFile::Call(const std::string& function, Say say, void* userData) const {
    if (handle == nullptr) {
        throw Failure(Name() + " is not loaded");
    }
    // A function that takes no parameters may be called with some: in this calling convention the caller cleans up.
    using Function = bool (*)(Say, void*);
    const auto address = reinterpret_cast<Function>(
        reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(handle), function.c_str())));
    if (address == nullptr) {
        throw Failure(Name() + " has no function " + function);
    }
    try {
        return address(say, userData);
    } catch (...) {
        throw Failure(function + " of " + Name() + " has thrown");
    }
}

std::vector<std::string> ModuleFile::Exports() const {
    if (handle == nullptr) {
        throw Failure(Name() + " is not loaded");
    }
    const auto* const dos = At<IMAGE_DOS_HEADER>(handle, 0);
    const auto* const headers = At<IMAGE_NT_HEADERS64>(handle, static_cast<size_t>(dos->e_lfanew));
    const IMAGE_DATA_DIRECTORY& place = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
    std::vector<std::string> names;
    if (place.Size != 0) {
        const auto* const table = At<IMAGE_EXPORT_DIRECTORY>(handle, place.VirtualAddress);
        for (DWORD i = 0; i < table->NumberOfNames; ++i) {
            names.emplace_back(At<char>(handle, At<DWORD>(handle, table->AddressOfNames)[i]));
        }
    }
    return names;
}

}  // namespace tool::play
