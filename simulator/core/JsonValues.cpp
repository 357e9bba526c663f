#include "JsonValues.h"

#include <nlohmann/json.hpp>

#include "Failure.h"

namespace simulator {

namespace {

// Keeps the keys of an object in the order of the text.
using Json = nlohmann::ordered_json;

ValuePointer Convert(const Json& json) {
    if (json.is_string()) {
        return MakeText(json.get<std::string>());
    }
    if (json.is_object()) {
        auto table = std::make_shared<Table>();
        for (const auto& [key, value] : json.items()) {
            table->entries.emplace_back(key, Convert(value));
        }
        return std::make_shared<Value>(Value{std::move(table)});
    }
    if (json.is_array()) {
        auto array = std::make_shared<Array>();
        for (const Json& element : json) {
            array->elements.push_back(Convert(element));
        }
        return std::make_shared<Value>(Value{std::move(array)});
    }
    return MakeText(json.dump());
}

}  // namespace

ValuePointer ValueFromJson(const char* json) {
    const Json parsed = Json::parse(json, nullptr, false);
    Require(!parsed.is_discarded());
    return Convert(parsed);
}

}  // namespace simulator
