#include "simulator/core/values/Values.h"

#include <algorithm>

#include "simulator/core/frame/Failure.h"
#include "simulator/core/values/TextConversion.h"

namespace simulator {

const std::string& Text::Narrow() const {
    const std::lock_guard lock(mutex);
    if (!narrow) {
        narrow = Utf8FromWide(*wide);
    }
    return *narrow;
}

const std::wstring& Text::Wide() const {
    const std::lock_guard lock(mutex);
    if (!wide) {
        wide = WideFromUtf8(*narrow);
    }
    return *wide;
}

ValuePointer MakeText(std::string text) {
    return std::make_shared<Value>(Value{std::make_shared<Text>(std::move(text))});
}

ValuePointer MakeText(std::wstring text) {
    return std::make_shared<Value>(Value{std::make_shared<Text>(std::move(text))});
}

const Text& TextOf(const Value& value) {
    const auto* text = std::get_if<std::shared_ptr<Text>>(&value.content);
    Require(text != nullptr);
    return **text;
}

std::shared_ptr<Table> TableOf(const Value& value) {
    const auto* table = std::get_if<std::shared_ptr<Table>>(&value.content);
    Require(table != nullptr);
    return *table;
}

ValuePointer FindInTable(const Table& table, std::string_view key) {
    const auto entry = std::find_if(table.entries.begin(), table.entries.end(),
                                    [key](const auto& candidate) { return candidate.first == key; });
    return entry == table.entries.end() ? nullptr : entry->second;
}

std::shared_ptr<Array> KeysOf(const Table& table) {
    auto keys = std::make_shared<Array>();
    for (const auto& [key, value] : table.entries) {
        keys->elements.push_back(MakeText(key));
    }
    return keys;
}

}  // namespace simulator
