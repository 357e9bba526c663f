#include "Registry.h"

#include <chrono>
#include <system_error>

namespace simulator {

namespace {

// Null when the key is not there.
HKEY OpenExisting(HKEY parent, const std::string& path, REGSAM access) {
    HKEY key = nullptr;
    const LSTATUS status = RegOpenKeyExA(parent, path.c_str(), 0, access, &key);
    if (status == ERROR_FILE_NOT_FOUND) {
        return nullptr;
    }
    CheckRegistry(status, "cannot open the registry key " + path);
    return key;
}

}  // namespace

RegistryKey::RegistryKey(HKEY parent, const std::string& path, REGSAM access) {
    CheckRegistry(RegCreateKeyExA(parent, path.c_str(), 0, nullptr, 0, access, nullptr, &key, nullptr),
                  "cannot make the registry key " + path);
}

RegistryKey::~RegistryKey() {
    RegCloseKey(key);
}

void RegistryKey::WriteText(const std::string& name, const std::string& text) const {
    const auto* bytes = reinterpret_cast<const BYTE*>(text.c_str());
    CheckRegistry(RegSetValueExA(key, name.c_str(), 0, REG_SZ, bytes, static_cast<DWORD>(text.size() + 1)),
                  "cannot write the registry value " + name);
}

void TouchRegistryKey(HKEY parent, const std::string& path, REGSAM view) {
    const HKEY key = OpenExisting(parent, path, KEY_SET_VALUE | view);
    if (key == nullptr) {
        return;
    }
    const std::string now = std::to_string(std::chrono::steady_clock::now().time_since_epoch().count());
    const LSTATUS status = RegSetValueExA(key, "Touched", 0, REG_SZ, reinterpret_cast<const BYTE*>(now.c_str()),
                                          static_cast<DWORD>(now.size() + 1));
    RegCloseKey(key);
    CheckRegistry(status, "cannot touch the registry key " + path);
}

void DeleteRegistryValue(HKEY parent, const std::string& path, const std::string& name, REGSAM view) {
    const HKEY key = OpenExisting(parent, path, KEY_SET_VALUE | view);
    if (key == nullptr) {
        return;
    }
    const LSTATUS status = RegDeleteValueA(key, name.c_str());
    RegCloseKey(key);
    if (status != ERROR_FILE_NOT_FOUND) {
        CheckRegistry(status, "cannot delete the registry value " + name);
    }
}

void DeleteRegistryTree(HKEY parent, const std::string& path, REGSAM view) {
    const HKEY key = OpenExisting(parent, path, KEY_ALL_ACCESS | view);
    if (key == nullptr) {
        return;
    }
    const LSTATUS status = RegDeleteTreeA(key, nullptr);
    RegCloseKey(key);
    CheckRegistry(status, "cannot empty the registry key " + path);
    CheckRegistry(RegDeleteKeyExA(parent, path.c_str(), view, 0), "cannot delete the registry key " + path);
}

void CheckRegistry(LSTATUS status, const std::string& what) {
    if (status != ERROR_SUCCESS) {
        throw std::system_error(static_cast<int>(status), std::system_category(), what);
    }
}

}  // namespace simulator
