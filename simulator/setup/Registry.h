// The registry functions of the setup. Every failure throws std::system_error.
#pragma once

#include <windows.h>

#include <string>

namespace simulator {

// An open key, closed by the destructor.
class RegistryKey {
public:
    // Opens the key. Makes it, and the keys above it, where they are not there. `access` may name a view.
    RegistryKey(HKEY parent, const std::string& path, REGSAM access);
    ~RegistryKey();
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;

    HKEY Get() const { return key; }
    void WriteText(const std::string& name, const std::string& text) const;

private:
    HKEY key = nullptr;
};

// `view` is 0, KEY_WOW64_32KEY or KEY_WOW64_64KEY. All three do nothing when the key, or the value to be deleted, is
// not there. TouchRegistryKey writes a value without a meaning, which wakes the threads that wait for a change of the
// key.
void TouchRegistryKey(HKEY parent, const std::string& path, REGSAM view);
void DeleteRegistryValue(HKEY parent, const std::string& path, const std::string& name, REGSAM view);
void DeleteRegistryTree(HKEY parent, const std::string& path, REGSAM view);

// Throws what `status`, the answer of a registry function, stands for, unless it is success.
void CheckRegistry(LSTATUS status, const std::string& what);

}  // namespace simulator
