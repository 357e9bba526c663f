#include "policy/PolicyWalk.h"

#include <string_view>

#include "dispatcher/groups/PolicyGroup.h"
#include "policy/PolicyIterators.h"
#include "policy/VsMsgbusIEnforcePolicy.h"
#include "values/AgentValues.h"

using corvane::ny::utils::Check;

namespace {

// The one setting that modules must not see, and the category of the policies that have it.
constexpr std::wstring_view categoryOfWithheld = L"QTP_BufferOverflow_Policies";
constexpr std::wstring_view withheldSetting = L"bopEnabled";

// Reads one text of a policy through the agent function for it.
template <class Getter>
void Read(const Getter& get, ny_policy_uri_t* uri, WideText& into) {
    const char* text = nullptr;
    Check(get(uri, &text));
    into.Assign(text);
}

// A text that the policy has, read where the agent keeps it; null as it comes.
BorrowedWide Borrow(const char* narrow) {
    return narrow != nullptr ? BorrowWideFromNarrow(narrow) : BorrowedWide{{}, {}};
}

BorrowedWide Borrow(ny_variant_t* variant) {
    return variant != nullptr ? BorrowWide(variant) : BorrowedWide{{}, {}};
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
    withholdsSetting =
        scope == Scope::Machine && category.Get() != nullptr && std::wstring_view(category.Get()) == categoryOfWithheld;
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
        // Both texts go back to the agent before the next setting: no copy is made of what there may be a million of.
        const BorrowedWide settingName = Borrow(name);
        if (withholdsSetting && settingName.text == withheldSetting) {
            continue;
        }
        const BorrowedWide value = Borrow(variant);
        if (!callbacks.OnSetting(section.Get(), settingName.text.data(), value.text.data())) {
            return;
        }
    }
}
