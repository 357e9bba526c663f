#pragma once

#include <optional>

#include "VsMsgbus/EnforcePolicy.h"
#include "policy/PolicyFunctions.h"
#include "policy/PolicyIterators.h"
#include "values/BorrowedText.h"
#include "values/ModuleInterface.h"
#include "values/WideText.h"

namespace bridge {

// One walk over a bag of policies: tells a module's callbacks of each item, in the agent's order.
//
// A walk keeps no copy of what it tells: its memory grows with the longest text, not with the number of items.
//
// An exception of a callback passes the walk. When another compiler built the module, no destructor in the walk's
// functions runs then: everything held during a callback is held by this object.
class PolicyWalk {
public:
    using ICallbacks = VsKitMsgbus::INYEnforcePolicy::IPolicyBag::ICallbacks;
    // Only a walk of the machine's policies records names in the registry and withholds the one setting that modules
    // must not see.
    enum class Scope { Machine, User };

    // Both kinds of functions are those of the libraries that the bag comes from.
    PolicyWalk(InsidePassage passage, const PolicyFunctions& functionsForPolicies,
               const TextFunctions& functionsForTexts, ICallbacks& moduleCallbacks, Scope walkedScope) noexcept
        : inside(passage),
          policyFunctions(functionsForPolicies),
          textFunctions(functionsForTexts),
          callbacks(&moduleCallbacks),
          scope(walkedScope) {}
    ~PolicyWalk();
    PolicyWalk(const PolicyWalk&) = delete;
    PolicyWalk& operator=(const PolicyWalk&) = delete;

    // Raises the agent exception with the code of an agent call that did not succeed; lets out what the module throws.
    // While it runs the object holds handles of the agent's; when it has returned, none.
    void Run(ny_policy_bag_t* bag);

private:
    // Calls one of the module's callbacks and returns its answer. Raises the agent exception with NY_FUNCTION_MISSING
    // when a library of the agent's was closed during the callback.
    template <class Operation, class... Texts>
    bool Tell(Operation operation, const Texts&... texts) const;
    // True when the module wants more of this item.
    bool TellContainer(ny_policy_uri_t* uri);
    bool TellSettingsObject(ny_policy_uri_t* uri);

    // Null stays null.
    void Widen(const char* text, WideText& into);
    // Reads one text of a policy through the agent function for it.
    template <class Getter>
    void Read(const Getter& get, ny_policy_uri_t* uri, WideText& into);
    void WalkSections(ny_policy_bag_t* bag, ny_policy_uri_t* uri);
    void WalkSettings(ny_policy_bag_t* bag, ny_policy_uri_t* uri, const char* sectionName);

    const InsidePassage inside;
    const PolicyFunctions& policyFunctions;
    const TextFunctions& textFunctions;
    const ModuleInterface<ICallbacks> callbacks;
    const Scope scope;
    WideText feature;
    WideText category;
    WideText type;
    WideText policyName;
    WideText settingsObject;
    WideText intParameter;
    WideText stringParameter;
    WideText section;
    bool withholdsSetting = false;  // in this policy
    // In the order in which they are opened.
    std::optional<PolicyUris> uris;
    std::optional<PolicySections> sections;
    std::optional<PolicySettings> settings;
    // The texts of the current setting, which are on the stack of WalkSettings; null when there is none.
    BorrowedWide* settingName = nullptr;
    BorrowedWide* settingValue = nullptr;
};

}  // namespace bridge
