// The registry's functions for values, and for notifications.
#include <cstring>

#include "OpenKey.h"
#include "Text.h"

using win32::ErrorOf;
using win32::Failure;
using win32::NodeOf;
using win32::RegistryValue;

namespace {

std::string_view NameOf(LPCSTR name) {
    return name != nullptr ? name : "";
}

std::string NameOf(LPCWSTR name) {
    return win32::Narrow(name != nullptr ? name : L"");
}

bool IsText(DWORD type) {
    return type == REG_SZ || type == REG_EXPAND_SZ;
}

// The value as the functions for wide text see it, and back.
RegistryValue Widened(const RegistryValue& value) {
    if (!IsText(value.type)) {
        return value;
    }
    const std::wstring text = win32::Widen({reinterpret_cast<const char*>(value.data.data()), value.data.size()});
    const auto* const bytes = reinterpret_cast<const BYTE*>(text.data());
    return {value.type, {bytes, bytes + text.size() * sizeof(wchar_t)}};
}

RegistryValue Narrowed(DWORD type, const BYTE* data, DWORD size) {
    if (!IsText(type)) {
        return {type, {data, data + size}};
    }
    std::wstring wide(size / sizeof(wchar_t), L'\0');
    std::memcpy(wide.data(), data, wide.size() * sizeof(wchar_t));
    const std::string text = win32::Narrow(wide);
    return {type, {text.begin(), text.end()}};
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

RegistryValue Unchanged(const RegistryValue& value) {
    return value;
}

void Query(HKEY key, std::string_view name, RegistryValue (*asSeen)(const RegistryValue&), LPDWORD type, LPBYTE data,
           LPDWORD size) {
    if (data != nullptr && size == nullptr) {
        throw Failure{ERROR_INVALID_PARAMETER};
    }
    const std::lock_guard guard(win32::RegistryLock());
    const RegistryValue* const value = NodeOf(key, KEY_QUERY_VALUE)->Value(name);
    if (value == nullptr) {
        throw Failure{ERROR_FILE_NOT_FOUND};
    }
    if (type != nullptr) {
        *type = value->type;
    }
    Give(asSeen(*value), data, size);
}

}  // namespace

LSTATUS RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD /*reserved*/, LPDWORD type, LPBYTE data, LPDWORD size) {
    return ErrorOf("RegQueryValueExA", [&] { Query(key, NameOf(name), Unchanged, type, data, size); });
}

LSTATUS RegQueryValueExW(HKEY key, LPCWSTR name, LPDWORD /*reserved*/, LPDWORD type, LPBYTE data, LPDWORD size) {
    return ErrorOf("RegQueryValueExW", [&] { Query(key, NameOf(name), Widened, type, data, size); });
}

LSTATUS RegSetValueExA(HKEY key, LPCSTR name, DWORD /*reserved*/, DWORD type, const BYTE* data, DWORD size) {
    return ErrorOf("RegSetValueExA", [&] {
        const std::lock_guard guard(win32::RegistryLock());
        NodeOf(key, KEY_SET_VALUE)->SetValue(NameOf(name), {type, {data, data + size}});
    });
}

LSTATUS RegSetValueExW(HKEY key, LPCWSTR name, DWORD /*reserved*/, DWORD type, const BYTE* data, DWORD size) {
    return ErrorOf("RegSetValueExW", [&] {
        const std::lock_guard guard(win32::RegistryLock());
        NodeOf(key, KEY_SET_VALUE)->SetValue(NameOf(name), Narrowed(type, data, size));
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
        auto waiting = win32::ObjectOf<win32::Event>(event);
        const auto open = win32::OpenKeyOf(key, KEY_NOTIFY);
        waiting->Reset();
        if (!open->interest) {
            open->interest = {watchSubtree != FALSE, filter};
        }
        node->Watch(*open, *open->interest, std::move(waiting));
    });
}
