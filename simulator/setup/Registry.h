// What the setup needs of the registry; every failure throws std::system_error.
#pragma once

#include <windows.h>

#include <string>

namespace simulator {

// An open key, closed at the end.
class RegistryKey {
public:
    // Opens the key, with the keys above it, and makes what is not there. `access` may name a view.
    RegistryKey(HKEY parent, const std::string& path, REGSAM access);
    ~RegistryKey();
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;

    HKEY Get() const { return key; }
    void WriteText(const std::string& name, const std::string& text) const;

private:
    HKEY key = nullptr;
};

// Both count as done when the key or the value is not there. `view` is 0, KEY_WOW64_32KEY or KEY_WOW64_64KEY.
// Writes a value that means nothing, which wakes those who wait for a change of the key. Nothing when there is no key.
void TouchRegistryKey(HKEY parent, const std::string& path, REGSAM view);
void DeleteRegistryValue(HKEY parent, const std::string& path, const std::string& name, REGSAM view);
void DeleteRegistryTree(HKEY parent, const std::string& path, REGSAM view);

// Throws what `status`, the answer of a registry function, stands for, unless it is success.
void CheckRegistry(LSTATUS status, const std::string& what);

}  // namespace simulator
