#include "simulator/core/values/JsonValues.h"

#include "simulator/core/frame/Failure.h"
#include "simulator/core/values/JsonConversion.h"

namespace simulator {

ValuePointer ValueFrom(const Json& json) {
    if (json.is_string()) {
        return MakeText(json.get<std::string>());
    }
    if (json.is_object()) {
        auto table = std::make_shared<Table>();
        for (const auto& [key, value] : json.items()) {
            table->entries.emplace_back(key, ValueFrom(value));
        }
        return std::make_shared<Value>(Value{std::move(table)});
    }
    if (json.is_array()) {
        auto array = std::make_shared<Array>();
        for (const Json& element : json) {
            array->elements.push_back(ValueFrom(element));
        }
        return std::make_shared<Value>(Value{std::move(array)});
    }
    return MakeText(json.dump());
}

ValuePointer ValueFromJson(const char* json) {
    const Json parsed = Json::parse(json, nullptr, false);
    Require(!parsed.is_discarded());
    return ValueFrom(parsed);
}

}  // namespace simulator
