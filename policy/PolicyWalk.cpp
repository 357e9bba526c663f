#include "policy/PolicyWalk.h"

#include <string_view>

#include "base/Attributes.h"
#include "dispatcher/groups/PolicyGroup.h"
#include "policy/PolicyIterators.h"
#include "policy/VsMsgbusIEnforcePolicy.h"
#include "policy/WithMemory.h"
#include "values/BorrowedText.h"

using corvane::ny::utils::Check;

namespace {

// The one setting that modules must not see, and the category of the policies that have it.
constexpr std::wstring_view categoryOfWithheld = L"QTP_BufferOverflow_Policies";
constexpr std::wstring_view withheldSetting = L"bopEnabled";

// The text for a module. Null stays null.
INTO_CALLER inline const wchar_t* Shown(BorrowedWide& text) {
    return WithMemory([&] { return text.Get(); });
}

}  // namespace

void PolicyWalk::Widen(const char* text, WideText& into) {
    if (text == nullptr) {
        into.Clear();
    } else {
        WithMemory([&] { into.Assign(functions, text); });
    }
}

template <class Getter>
void PolicyWalk::Read(const Getter& get, ny_policy_uri_t* uri, WideText& into) {
    const char* text = nullptr;
    Check(policies(get)(uri, &text));
    Widen(text, into);
}

// A module may leave the bridge from inside its callback, and even enter it again: the bag is then of a client that is
// gone.
bool PolicyWalk::Answered(bool wantsMore) const {
    functions.RequireCurrent();
    return wantsMore;
}

void PolicyWalk::Run(ny_policy_bag_t* bag) {
    PolicyUris uris(policies, bag);
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
    return Answered(callbacks.OnContainer(feature.Get(), category.Get(), type.Get(), policyName.Get()));
}

bool PolicyWalk::TellSettingsObject(ny_policy_uri_t* uri) {
    Read(agent::ny_policy_uri_get_pso_name, uri, settingsObject);
    Read(agent::ny_policy_uri_get_pso_param_int, uri, intParameter);
    Read(agent::ny_policy_uri_get_pso_param_str, uri, stringParameter);
    return Answered(callbacks.OnSettings(settingsObject.Get(), intParameter.Get(), stringParameter.Get()));
}

void PolicyWalk::WalkSections(ny_policy_bag_t* bag, ny_policy_uri_t* uri) {
    PolicySections sections(policies, bag, uri);
    const char* name = nullptr;
    while (sections.Next(name)) {
        if (!TellSettingsObject(uri)) {
            continue;
        }
        Widen(name, section);
        if (Answered(callbacks.OnSection(section.Get(), nullptr))) {
            WalkSettings(bag, uri, name);
        }
    }
}

void PolicyWalk::WalkSettings(ny_policy_bag_t* bag, ny_policy_uri_t* uri, const char* sectionName) {
    PolicySettings settings(policies, bag, uri, sectionName);
    const char* name = nullptr;
    ny_variant_t* variant = nullptr;
    while (settings.Next(name, variant)) {
        // Both texts go back to the agent before the next setting: no copy is made of what there may be a million of.
        BorrowedWide settingName =
            name != nullptr ? BorrowedWide(functions, std::string_view(name)) : BorrowedWide(functions);
        const wchar_t* const shownName = Shown(settingName);
        if (withholdsSetting && settingName.View() == withheldSetting) {
            continue;
        }
        BorrowedWide value = variant != nullptr ? BorrowedWide(functions, variant) : BorrowedWide(functions);
        if (!Answered(callbacks.OnSetting(section.Get(), shownName, Shown(value)))) {
            return;
        }
    }
}
