// The floor: the agent's functions through bare pointers, resolved by hand.
#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>

#include "dispatcher/EntryPoint.h"

namespace bench {

// The address of an agent function, by its prototype. Null until resolved.
template <auto function>
inline decltype(function) pointerTo = nullptr;

inline void* AddressIn(HMODULE library, const char* name) {
    void* const address = reinterpret_cast<void*>(::GetProcAddress(library, name));
    if (address == nullptr) {
        throw std::runtime_error(std::string("not exported: ") + name);
    }
    return address;
}

// Opens a library by its whole path; stays open.
inline HMODULE LoadedLibrary(const std::string& path) {
    const HMODULE library = ::LoadLibraryExA(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (library == nullptr) {
        throw std::runtime_error("cannot be opened: " + path);
    }
    return library;
}

// Resolves the functions in the library.
template <auto... functions>
void Resolve(HMODULE library) {
    const auto resolve = [library]<auto function>() {
        pointerTo<function> = reinterpret_cast<decltype(function)>(
            AddressIn(library, std::string(bridge::entrypoint::NameOf<function>()).c_str()));
    };
    (resolve.template operator()<functions>(), ...);
}

// What no call of the bare agent answers but success.
inline void Require(int32_t result) {
    if (result != NY_OK) [[unlikely]] {
        throw std::runtime_error("an agent call failed");
    }
}

}  // namespace bench
