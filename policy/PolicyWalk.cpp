#include "policy/PolicyWalk.h"

#include <memory>
#include <string_view>

#include "base/Attributes.h"
#include "dispatcher/groups/PolicyGroup.h"
#include "policy/OutOfMemory.h"
#include "policy/VsMsgbusIEnforcePolicy.h"

namespace bridge {

namespace {

// The one setting that modules must not see, and the category of the policies that have it.
constexpr std::wstring_view categoryOfWithheld = L"QTP_BufferOverflow_Policies";
constexpr std::wstring_view withheldSetting = L"bopEnabled";

// The text for a module. Null stays null.
ALWAYS_INLINE inline const wchar_t* Shown(BorrowedWide& text) {
    return BadAllocAsAgentException([&] { return text.Get(); });
}

// Points `place` to an object on the stack while both live.
template <class Object>
class OnStack {
public:
    OnStack(Object*& placeOfObject, Object& object) noexcept : place(placeOfObject) { place = &object; }
    ~OnStack() { place = nullptr; }
    OnStack(const OnStack&) = delete;
    OnStack& operator=(const OnStack&) = delete;

private:
    Object*& place;
};

}  // namespace

// An exception that passed the walk may have left the texts of the current setting on the stack undestroyed.
PolicyWalk::~PolicyWalk() {
    for (BorrowedWide* const left : {settingValue, settingName}) {
        if (left != nullptr) {
            std::destroy_at(left);
        }
    }
}

void PolicyWalk::Widen(const char* text, WideText& into) {
    if (text == nullptr) {
        into.Clear();
    } else {
        BadAllocAsAgentException([&] { into.Assign(textFunctions, text); });
    }
}

template <class Getter>
void PolicyWalk::Read(const Getter& get, ny_policy_uri_t* uri, WideText& into) {
    const char* text = nullptr;
    Check(policyFunctions(get)(uri, &text));
    Widen(text, into);
}

// A module may leave the bridge from inside its callback, and even enter it again: the bag is then of a client that is
// gone.
template <class Operation, class... Texts>
ALWAYS_INLINE inline bool PolicyWalk::Tell(Operation operation, const Texts&... texts) const {
    const bool wantsMore = callbacks.Call(inside, operation, texts...);
    textFunctions.RequireCurrent();
    return wantsMore;
}

void PolicyWalk::Run(ny_policy_bag_t* bag) {
    uris.emplace(policyFunctions, agent::ny_policy_bag_get_uri_iterator, agent::ny_policy_bag_uri_iterator_get_next,
                 bag);
    ny_policy_uri_t* uri = nullptr;
    while (uris->Next(uri)) {
        if (!TellContainer(uri)) {
            continue;
        }
        if (scope == Scope::Machine && category.Get() != nullptr) {
            StorePolicyName(category.Get(), policyName.Get());
        }
        WalkSections(bag, uri);
    }
    uris.reset();
}

bool PolicyWalk::TellContainer(ny_policy_uri_t* uri) {
    Read(agent::ny_policy_uri_get_feature, uri, feature);
    Read(agent::ny_policy_uri_get_category, uri, category);
    Read(agent::ny_policy_uri_get_type, uri, type);
    Read(agent::ny_policy_uri_get_name, uri, policyName);
    withholdsSetting =
        scope == Scope::Machine && category.Get() != nullptr && std::wstring_view(category.Get()) == categoryOfWithheld;
    return Tell(&ICallbacks::OnContainer, feature.Get(), category.Get(), type.Get(), policyName.Get());
}

bool PolicyWalk::TellSettingsObject(ny_policy_uri_t* uri) {
    Read(agent::ny_policy_uri_get_pso_name, uri, settingsObject);
    Read(agent::ny_policy_uri_get_pso_param_int, uri, intParameter);
    Read(agent::ny_policy_uri_get_pso_param_str, uri, stringParameter);
    return Tell(&ICallbacks::OnSettings, settingsObject.Get(), intParameter.Get(), stringParameter.Get());
}

void PolicyWalk::WalkSections(ny_policy_bag_t* bag, ny_policy_uri_t* uri) {
    sections.emplace(policyFunctions, agent::ny_policy_bag_get_section_iterator,
                     agent::ny_policy_bag_section_iterator_get_next, bag, uri);
    const char* name = nullptr;
    while (sections->Next(name)) {
        if (!TellSettingsObject(uri)) {
            continue;
        }
        Widen(name, section);
        if (Tell(&ICallbacks::OnSection, section.Get(), nullptr)) {
            WalkSettings(bag, uri, name);
        }
    }
    sections.reset();
}

void PolicyWalk::WalkSettings(ny_policy_bag_t* bag, ny_policy_uri_t* uri, const char* sectionName) {
    settings.emplace(policyFunctions, agent::ny_policy_bag_get_setting_iterator,
                     agent::ny_policy_bag_setting_iterator_get_next, bag, uri, sectionName);
    const char* name = nullptr;
    ny_variant_t* variant = nullptr;
    bool wantsMore = true;
    while (wantsMore && settings->Next(name, variant)) {
        // Both texts go back to the agent before the next setting: there may be a million settings, and none is copied.
        BorrowedWide nameText =
            name != nullptr ? BorrowedWide(textFunctions, std::string_view(name)) : BorrowedWide(textFunctions);
        const OnStack nameOnStack(settingName, nameText);
        const wchar_t* const shownName = Shown(nameText);
        if (withholdsSetting && nameText.View() == withheldSetting) {
            continue;
        }
        BorrowedWide valueText =
            variant != nullptr ? BorrowedWide(textFunctions, variant) : BorrowedWide(textFunctions);
        const OnStack valueOnStack(settingValue, valueText);
        wantsMore = Tell(&ICallbacks::OnSetting, section.Get(), shownName, Shown(valueText));
    }
    settings.reset();
}

}  // namespace bridge
