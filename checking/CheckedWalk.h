#pragma once

#include <optional>
#include <string>

#include "VsMsgbus/EnforcePolicy.h"
#include "checking/LentTexts.h"
#include "checking/Scope.h"
#include "values/ModuleInterface.h"

namespace checking {

// A module's callbacks during one walk. Their exceptions pass through to the module.
class CheckedWalk final : public VsKitMsgbus::INYEnforcePolicy::IPolicyBag::ICallbacks {
public:
    using ICallbacks = VsKitMsgbus::INYEnforcePolicy::IPolicyBag::ICallbacks;

    CheckedWalk(const char* operation, const std::string& productId, ICallbacks* moduleCallbacks)
        : scope(operation, productId), texts(productId, "a callback of a walk"), callbacks(moduleCallbacks) {}
    ~CheckedWalk() { EndItem(); }
    CheckedWalk(const CheckedWalk&) = delete;
    CheckedWalk& operator=(const CheckedWalk&) = delete;

    // From now on the callbacks may be called.
    void Begin(bridge::InsidePassage passage) { inside = passage; }
    // Notes which callbacks were called, and answered true.
    void NoteAnswers() const;

    bool OnContainer(const wchar_t* featureId, const wchar_t* categoryId, const wchar_t* typeId,
                     const wchar_t* name) override;
    bool OnSettings(const wchar_t* name, const wchar_t* intParam, const wchar_t* strParam) override;
    bool OnSection(const wchar_t* name, const wchar_t* reserved) override;
    bool OnSetting(const wchar_t* section, const wchar_t* name, const wchar_t* value) override;

private:
    // Whether a callback has answered true; none before its first answer.
    using HasGoneOn = std::optional<bool>;

    template <class... Parameters>
    bool Call(const char* name, bool (ICallbacks::*operation)(Parameters...), Parameters... given);
    void EndItem() noexcept;

    Scope scope;
    LentTexts texts;
    const bridge::ModuleInterface<ICallbacks> callbacks;
    std::optional<bridge::InsidePassage> inside;
    const char* item = nullptr;  // the callback that runs
    HasGoneOn containers;
    HasGoneOn settings;
    HasGoneOn sections;
};

}  // namespace checking
