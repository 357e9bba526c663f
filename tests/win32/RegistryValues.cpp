// The registry's functions for values, and for notifications.
#include <cstring>

#include "OpenKey.h"

using win32::ErrorOf;
using win32::Failure;
using win32::NodeOf;
using win32::RegistryValue;

namespace {

std::string_view NameOf(LPCSTR name) {
    return name != nullptr ? name : "";
}

// Copies the value's data into `data`, of which `size` tells the size before and the data's size afterwards.
void Give(const RegistryValue& value, LPBYTE data, LPDWORD size) {
    if (size == nullptr) {
        return;
    }
    const DWORD place = *size;
    *size = static_cast<DWORD>(value.data.size());
    if (data == nullptr) {
        return;
    }
    if (place < *size) {
        throw Failure{ERROR_MORE_DATA};
    }
    std::copy(value.data.begin(), value.data.end(), data);
}

}  // namespace

LSTATUS RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD /*reserved*/, LPDWORD type, LPBYTE data, LPDWORD size) {
    return ErrorOf("RegQueryValueExA", [&] {
        if (data != nullptr && size == nullptr) {
            throw Failure{ERROR_INVALID_PARAMETER};
        }
        const std::lock_guard guard(win32::RegistryLock());
        const RegistryValue* const value = NodeOf(key, KEY_QUERY_VALUE)->Value(NameOf(name));
        if (value == nullptr) {
            throw Failure{ERROR_FILE_NOT_FOUND};
        }
        if (type != nullptr) {
            *type = value->type;
        }
        Give(*value, data, size);
    });
}

LSTATUS RegSetValueExA(HKEY key, LPCSTR name, DWORD /*reserved*/, DWORD type, const BYTE* data, DWORD size) {
    return ErrorOf("RegSetValueExA", [&] {
        const std::lock_guard guard(win32::RegistryLock());
        NodeOf(key, KEY_SET_VALUE)->SetValue(NameOf(name), {type, {data, data + size}});
    });
}

LSTATUS RegDeleteValueA(HKEY key, LPCSTR name) {
    return ErrorOf("RegDeleteValueA", [&] {
        const std::lock_guard guard(win32::RegistryLock());
        if (!NodeOf(key, KEY_SET_VALUE)->DeleteValue(NameOf(name))) {
            throw Failure{ERROR_FILE_NOT_FOUND};
        }
    });
}

LSTATUS RegNotifyChangeKeyValue(HKEY key, BOOL watchSubtree, DWORD filter, HANDLE event, BOOL asynchronous) {
    win32::Support(asynchronous != FALSE, "waiting inside RegNotifyChangeKeyValue");
    win32::Support(!win32::IsPredefined(key), "watching a predefined key");
    return ErrorOf("RegNotifyChangeKeyValue", [&] {
        const std::lock_guard guard(win32::RegistryLock());
        const auto node = NodeOf(key, KEY_NOTIFY);
        node->Watch(*win32::OpenKeyOf(key, KEY_NOTIFY), watchSubtree != FALSE, filter,
                    win32::ObjectOf<win32::Event>(event));
    });
}
