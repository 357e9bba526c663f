#include "policy/PolicyWalk.h"

#include <string_view>

#include "dispatcher/groups/PolicyGroup.h"
#include "policy/PolicyIterators.h"
#include "policy/VsMsgbusIEnforcePolicy.h"

using corvane::ny::utils::Check;

namespace {

// Reads one text of a policy through the agent function for it.
template <class Getter>
void Read(const Getter& get, ny_policy_uri_t* uri, WideText& into) {
    const char* text = nullptr;
    Check(get(uri, &text));
    into.Assign(text);
}

bool IsEqual(const WideText& text, std::wstring_view expected) noexcept {
    return text.Get() != nullptr && text.Get() == expected;
}

}  // namespace

void PolicyWalk::Run(ny_policy_bag_t* bag) {
    PolicyUris uris(bag);
    ny_policy_uri_t* uri = nullptr;
    while (uris.Next(uri)) {
        if (!TellContainer(uri)) {
            continue;
        }
        if (scope == Scope::Machine && category.Get() != nullptr) {
            StorePolicyName(category.Get(), policyName.Get());
        }
        WalkSections(bag, uri);
    }
}

bool PolicyWalk::TellContainer(ny_policy_uri_t* uri) {
    Read(agent::ny_policy_uri_get_feature, uri, feature);
    Read(agent::ny_policy_uri_get_category, uri, category);
    Read(agent::ny_policy_uri_get_type, uri, type);
    Read(agent::ny_policy_uri_get_name, uri, policyName);
    return callbacks.OnContainer(feature.Get(), category.Get(), type.Get(), policyName.Get());
}

bool PolicyWalk::TellSettingsObject(ny_policy_uri_t* uri) {
    Read(agent::ny_policy_uri_get_pso_name, uri, settingsObject);
    Read(agent::ny_policy_uri_get_pso_param_int, uri, intParameter);
    Read(agent::ny_policy_uri_get_pso_param_str, uri, stringParameter);
    return callbacks.OnSettings(settingsObject.Get(), intParameter.Get(), stringParameter.Get());
}

void PolicyWalk::WalkSections(ny_policy_bag_t* bag, ny_policy_uri_t* uri) {
    PolicySections sections(bag, uri);
    const char* name = nullptr;
    while (sections.Next(name)) {
        if (!TellSettingsObject(uri)) {
            continue;
        }
        section.Assign(name);
        if (callbacks.OnSection(section.Get(), nullptr)) {
            WalkSettings(bag, uri, name);
        }
    }
}

void PolicyWalk::WalkSettings(ny_policy_bag_t* bag, ny_policy_uri_t* uri, const char* sectionName) {
    PolicySettings settings(bag, uri, sectionName);
    const char* name = nullptr;
    ny_variant_t* variant = nullptr;
    while (settings.Next(name, variant)) {
        settingName.Assign(name);
        if (IsWithheld()) {
            continue;
        }
        value.Assign(variant);
        if (!callbacks.OnSetting(section.Get(), settingName.Get(), value.Get())) {
            return;
        }
    }
}

bool PolicyWalk::IsWithheld() const noexcept {
    return scope == Scope::Machine && IsEqual(category, L"QTP_BufferOverflow_Policies") &&
           IsEqual(settingName, L"bopEnabled");
}
