#include "dispatcher/RuntimePath.h"

#include <windows.h>

#include <cstring>

#include "agent/ny_agent.h"
#include "base/Boundary.h"
#include "base/UniqueHandle.h"

namespace bridge {

namespace {

constexpr char applicationsKey[] = R"(Software\Corvane\Agent\Applications\)";
constexpr char pathValue[] = "RuntimeSdkPath64";
constexpr size_t pathCapacity = 512;

}  // namespace

int32_t LookUpRuntimePath(const char* product, std::optional<std::string>& path) noexcept {
    path.reset();
    if (product == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    return Guarded<int32_t>(NY_OUT_OF_MEMORY, [&]() -> int32_t {
        const std::string keyName = std::string(applicationsKey) + product;
        HKEY opened = nullptr;
        if (::RegOpenKeyExA(HKEY_LOCAL_MACHINE, keyName.c_str(), 0, KEY_READ | KEY_WOW64_32KEY, &opened) !=
            ERROR_SUCCESS) {
            return NY_RUNTIME_PATH_MISSING;
        }
        const UniqueKey key(opened);
        char text[pathCapacity] = {};
        DWORD size = pathCapacity;
        if (::RegQueryValueExA(key.get(), pathValue, nullptr, nullptr, reinterpret_cast<BYTE*>(text), &size) !=
            ERROR_SUCCESS) {
            return NY_RUNTIME_PATH_MISSING;
        }
        // Up to its first zero: what the registry holds need not be terminated.
        path.emplace(text, ::strnlen(text, size));
        return NY_OK;
    });
}

}  // namespace bridge
