#include "simulator/core/policy/PolicyJson.h"

#include <algorithm>
#include <string_view>

#include "simulator/core/frame/Failure.h"
#include "simulator/core/values/JsonConversion.h"

namespace simulator {

namespace {

struct TextKey {
    std::string_view key;
    PolicyText Policy::*text;
};

constexpr TextKey policyTexts[] = {
    {"user", &Policy::user}, {"feature", &Policy::feature}, {"category", &Policy::category},
    {"type", &Policy::type}, {"name", &Policy::name},
};

constexpr TextKey settingsObjectTexts[] = {
    {"name", &Policy::settingsObjectName},
    {"intParameter", &Policy::intParameter},
    {"stringParameter", &Policy::stringParameter},
    {"digest", &Policy::digest},
};

PolicyText ReadText(const Json& json) {
    Require(json.is_null() || json.is_string());
    return json.is_null() ? std::nullopt : PolicyText(json.get<std::string>());
}

// False when the key is none of those.
template <size_t count>
bool ReadKnownText(const TextKey (&keys)[count], std::string_view key, const Json& json, Policy& policy) {
    const auto known =
        std::find_if(std::begin(keys), std::end(keys), [&](const TextKey& each) { return each.key == key; });
    if (known == std::end(keys)) {
        return false;
    }
    policy.*known->text = ReadText(json);
    return true;
}

PolicySetting MakeSetting(PolicyText name, const Json& value) {
    return {std::move(name), value.is_null() ? nullptr : ValueFrom(value)};
}

std::vector<PolicySetting> ReadSettings(const Json& json) {
    std::vector<PolicySetting> settings;
    Require(json.is_null() || json.is_structured());
    settings.reserve(json.size());
    if (json.is_object()) {
        for (const auto& [name, value] : json.items()) {
            settings.push_back(MakeSetting(name, value));
        }
        return settings;
    }
    for (const Json& pair : json) {
        Require(pair.is_array() && pair.size() == 2);
        settings.push_back(MakeSetting(ReadText(pair[0]), pair[1]));
    }
    return settings;
}

PolicySection ReadSection(const Json& json) {
    PolicySection section;
    Require(json.is_object());
    for (const auto& [key, value] : json.items()) {
        if (key == "name") {
            section.name = ReadText(value);
        } else {
            Require(key == "settings");
            section.settings = ReadSettings(value);
        }
    }
    return section;
}

void ReadSettingsObject(const Json& json, Policy& policy) {
    Require(json.is_null() || json.is_object());
    for (const auto& [key, value] : json.items()) {
        Require(ReadKnownText(settingsObjectTexts, key, value, policy));
    }
}

void ReadSections(const Json& json, Policy& policy) {
    Require(json.is_null() || json.is_array());
    for (const Json& section : json) {
        policy.sections.push_back(ReadSection(section));
    }
}

PolicyPointer ReadPolicy(const Json& json) {
    auto policy = std::make_shared<Policy>();
    Require(json.is_object() && json.contains("softwareId"));
    for (const auto& [key, value] : json.items()) {
        if (key == "softwareId") {
            Require(value.is_string());
            policy->softwareId = value.get<std::string>();
        } else if (key == "settingsObject") {
            ReadSettingsObject(value, *policy);
        } else if (key == "sections") {
            ReadSections(value, *policy);
        } else {
            Require(ReadKnownText(policyTexts, key, value, *policy));
        }
    }
    return policy;
}

}  // namespace

std::vector<PolicyPointer> PoliciesFromJson(const char* json) {
    const Json parsed = Json::parse(json, nullptr, false);
    Require(parsed.is_array());
    std::vector<PolicyPointer> policies;
    policies.reserve(parsed.size());
    std::transform(parsed.begin(), parsed.end(), std::back_inserter(policies), ReadPolicy);
    return policies;
}

}  // namespace simulator
