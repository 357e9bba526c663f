#include "simulator/core/services/Information.h"

#include <utility>

namespace simulator {

namespace {

Information& theInformation = *new Information;

}  // namespace

void Information::Set(const std::string& key, ValuePointer value) {
    const std::lock_guard lock(mutex);
    if (value == nullptr) {
        values.erase(key);
    } else {
        values.insert_or_assign(key, std::move(value));
    }
}

void Information::SetAll(const Table& table) {
    std::map<std::string, ValuePointer, std::less<>> replacement(table.entries.begin(), table.entries.end());
    const std::lock_guard lock(mutex);
    values.swap(replacement);
}

ValuePointer Information::Find(std::string_view key) const {
    const std::lock_guard lock(mutex);
    const auto entry = values.find(key);
    return entry == values.end() ? nullptr : entry->second;
}

Information& TheInformation() {
    return theInformation;
}

}  // namespace simulator
