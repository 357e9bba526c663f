#include "fuzz/FuzzedRegistry.h"

#include <utility>

#include "Registry.h"

FuzzedRegistryValue::FuzzedRegistryValue(std::string keyPath, std::string valueName, REGSAM keyView)
    : path(std::move(keyPath)), name(std::move(valueName)), view(keyView) {}

FuzzedRegistryValue::~FuzzedRegistryValue() {
    DeleteKey();
}

void FuzzedRegistryValue::DeleteKey() {
    simulator::DeleteRegistryTree(HKEY_LOCAL_MACHINE, path, view);
    isThere = false;
    bytes.clear();
}

void FuzzedRegistryValue::Change(FuzzInput& input) {
    if (input.Rarely()) {
        DeleteKey();
        return;
    }
    const simulator::RegistryKey key(HKEY_LOCAL_MACHINE, path, KEY_ALL_ACCESS | view);
    if (input.Rarely()) {
        ::RegDeleteValueA(key.Get(), name.c_str());
        isThere = false;
        bytes.clear();
        return;
    }
    bytes = input.Text();
    // As long as the two readers' buffers, or one more or less.
    if (const unsigned size = input.Byte(); size >= 0xC0) {
        bytes.resize((size < 0xE0 ? 17U : 510U) + size % 5, input.Often() ? 'x' : '\0');
    }
    const DWORD type = input.Often() ? DWORD{REG_SZ} : input.Below(12);
    ::RegSetValueExA(key.Get(), name.c_str(), 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                     static_cast<DWORD>(bytes.size()));
    isThere = true;
}
