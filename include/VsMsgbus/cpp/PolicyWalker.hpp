/// @file
/// Walks through policies, for a visitor and for a list. Used by Policies.hpp alone.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <type_traits>

#include "VsMsgbus/EnforcePolicy.h"
#include "VsMsgbus/cpp/Setting.hpp"

namespace vsmsgbus::detail {

/// The texts that say where a setting stands. Many settings have them in common.
enum class PlaceText : size_t { Feature, Category, Type, Policy, Settings, IntParam, StrParam, Section, Count };

/// Shows each setting of a walk to the visitor. A place's text stands in a string that is used again for the next
/// place.
template <class Visitor>
class VisitedSettings {
public:
    explicit VisitedSettings(Visitor& settingVisitor) : visitor(settingVisitor) {}

    /// Until the same text of the next place is kept.
    PolicyText Keep(PlaceText which, PolicyText text) {
        if (text.IsAbsent()) {
            return {};
        }
        std::wstring& kept = place[static_cast<size_t>(which)];
        kept = text.View();
        return kept.c_str();
    }

    /// False when the visitor wants no more settings.
    bool Take(const Setting& setting) {
        if constexpr (std::is_same_v<std::invoke_result_t<Visitor&, const Setting&>, bool>) {
            return visitor(setting);
        } else {
            visitor(setting);
            return true;
        }
    }

private:
    Visitor& visitor;
    std::array<std::wstring, static_cast<size_t>(PlaceText::Count)> place;
};

/// Puts each setting of a walk into the list, which stays where it is meanwhile. The list keeps all texts.
class KeptSettings {
public:
    explicit KeptSettings(SettingList& toFill) : list(toFill) {}

    PolicyText Keep(PlaceText /*which*/, PolicyText text) { return list.Keep(text); }

    bool Take(const Setting& setting) {
        Setting kept = setting;
        kept.name = list.Keep(setting.name);
        kept.value = list.Keep(setting.value);
        list.all.push_back(kept);
        return true;
    }

private:
    SettingList& list;
};

/// Hands each setting of a walk to the store, and none any more once the store has answered false. The texts of each
/// callback are valid during that callback alone: the store keeps those of the place, which later settings need as
/// well.
template <class Store>
class PolicyWalker final : public VsKitMsgbus::INYEnforcePolicy::IPolicyBag::ICallbacks {
public:
    explicit PolicyWalker(Store& settingStore) : store(settingStore) {}

    bool OnContainer(const wchar_t* feature, const wchar_t* category, const wchar_t* type,
                     const wchar_t* name) override {
        setting.feature = store.Keep(PlaceText::Feature, feature);
        setting.category = store.Keep(PlaceText::Category, category);
        setting.type = store.Keep(PlaceText::Type, type);
        setting.policy = store.Keep(PlaceText::Policy, name);
        return goesOn;
    }
    bool OnSettings(const wchar_t* name, const wchar_t* intParam, const wchar_t* strParam) override {
        setting.settings = store.Keep(PlaceText::Settings, name);
        setting.intParam = store.Keep(PlaceText::IntParam, intParam);
        setting.strParam = store.Keep(PlaceText::StrParam, strParam);
        return goesOn;
    }
    bool OnSection(const wchar_t* name, const wchar_t* /*reserved*/) override {
        setting.section = store.Keep(PlaceText::Section, name);
        return goesOn;
    }
    bool OnSetting(const wchar_t* /*section*/, const wchar_t* name, const wchar_t* value) override {
        setting.name = name;
        setting.value = value;
        goesOn = store.Take(setting);
        return goesOn;
    }

private:
    Store& store;
    Setting setting;
    bool goesOn = true;
};

}  // namespace vsmsgbus::detail
