#include "checking/Environment.h"

#include <windows.h>

#include <cstdlib>

namespace checking {

std::wstring TextFromEnvironment(const wchar_t* name) {
    std::wstring value(::GetEnvironmentVariableW(name, nullptr, 0), L'\0');
    value.resize(::GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
    return value;
}

unsigned long NumberFromEnvironment(const char* name, unsigned long otherwise) noexcept {
    char text[32];
    const DWORD length = ::GetEnvironmentVariableA(name, text, sizeof text);
    return length != 0 && length < sizeof text ? std::strtoul(text, nullptr, 10) : otherwise;
}

}  // namespace checking
