#include "checking/CheckedWalk.h"

#include <utility>

#include "checking/Walks.h"

namespace checking {

namespace {

// Adds a callback's answer to those before, and returns it.
bool Remembered(std::optional<bool>& hasGoneOn, bool goesOn) noexcept {
    hasGoneOn = hasGoneOn.value_or(false) || goesOn;
    return goesOn;
}

}  // namespace

template <class... Parameters>
bool CheckedWalk::Call(const char* name, bool (ICallbacks::*operation)(Parameters...), Parameters... given) {
    item = name;
    Trace(TracePhase::Begin, name, [&](TraceArguments& arguments) {
        static constexpr const char* names[] = {"first", "second", "third", "fourth"};
        size_t number = 0;
        (arguments.Add(names[number++], given), ...);
    });
    const bool goesOn = callbacks.Call(*inside, operation, texts.Copy(given)...);
    EndItem();
    texts.Forget();
    return goesOn;
}

void CheckedWalk::EndItem() noexcept {
    if (item != nullptr) {
        Trace(TracePhase::End, std::exchange(item, nullptr), TraceArguments());
    }
}

bool CheckedWalk::OnContainer(const wchar_t* featureId, const wchar_t* categoryId, const wchar_t* typeId,
                              const wchar_t* name) {
    return Remembered(containers, Call("OnContainer", &ICallbacks::OnContainer, featureId, categoryId, typeId, name));
}

bool CheckedWalk::OnSettings(const wchar_t* name, const wchar_t* intParam, const wchar_t* strParam) {
    return Remembered(settings, Call("OnSettings", &ICallbacks::OnSettings, name, intParam, strParam));
}

bool CheckedWalk::OnSection(const wchar_t* name, const wchar_t* reserved) {
    return Remembered(sections, Call("OnSection", &ICallbacks::OnSection, name, reserved));
}

bool CheckedWalk::OnSetting(const wchar_t* section, const wchar_t* name, const wchar_t* value) {
    return Call("OnSetting", &ICallbacks::OnSetting, section, name, value);
}

void CheckedWalk::NoteAnswers() const {
    // OnSetting is left out: below a setting there is nothing, so that answering false misses nothing.
    const std::pair<const HasGoneOn*, const char*> callbacksWithMore[] = {
        {&containers, "OnContainer"}, {&settings, "OnSettings"}, {&sections, "OnSection"}};
    for (const auto& [answers, name] : callbacksWithMore) {
        if (answers->has_value()) {
            NoteWalk(scope.ProductId(), name, **answers);
        }
    }
}

}  // namespace checking
