#include "Settings.h"

#include <utility>

void Settings::Replace(Values newValues) {
    const std::lock_guard guard(mutex);
    values = std::move(newValues);
}

std::wstring Settings::Get(std::wstring_view name) const {
    const std::lock_guard guard(mutex);
    const auto found = values.find(name);
    return found != values.end() ? found->second : std::wstring();
}
