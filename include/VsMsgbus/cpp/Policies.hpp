/// @file
/// Policies: reading what the agent holds for a product.
#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "VsMsgbus/EnforcePolicy.h"
#include "VsMsgbus/cpp/Error.hpp"
#include "VsMsgbus/cpp/Log.hpp"
#include "VsMsgbus/cpp/Text.hpp"

namespace vsmsgbus {

/// One setting and where it stands. The data() of a text that the policy does not have is null.
struct Setting {
    std::wstring_view feature;   ///< of the policy object
    std::wstring_view category;  ///< of the policy object
    std::wstring_view type;      ///< of the policy object
    std::wstring_view policy;    ///< the policy object's name
    std::wstring_view settings;  ///< the settings object's name
    std::wstring_view intParam;  ///< the settings object's first parameter
    std::wstring_view strParam;  ///< the settings object's second parameter
    std::wstring_view section;   ///< the section's name
    std::wstring_view name;      ///< the setting's own
    std::wstring_view value;     ///< the setting's own
};

namespace detail {

inline std::wstring_view View(const wchar_t* text) {
    return text != nullptr ? std::wstring_view(text) : std::wstring_view();
}

/// Hands each setting of a walk to the visitor, and none any more once the visitor has answered false.
template <class Visitor>
class Walker final : public VsKitMsgbus::INYEnforcePolicy::IPolicyBag::ICallbacks {
public:
    explicit Walker(Visitor& settingVisitor) : visitor(settingVisitor) {}

    bool OnContainer(const wchar_t* feature, const wchar_t* category, const wchar_t* type,
                     const wchar_t* name) override {
        setting.feature = View(feature);
        setting.category = View(category);
        setting.type = View(type);
        setting.policy = View(name);
        return goesOn;
    }
    bool OnSettings(const wchar_t* name, const wchar_t* intParam, const wchar_t* strParam) override {
        setting.settings = View(name);
        setting.intParam = View(intParam);
        setting.strParam = View(strParam);
        return goesOn;
    }
    bool OnSection(const wchar_t* name, const wchar_t* /*reserved*/) override {
        setting.section = View(name);
        return goesOn;
    }
    bool OnSetting(const wchar_t* section, const wchar_t* name, const wchar_t* value) override {
        setting.section = View(section);
        setting.name = View(name);
        setting.value = View(value);
        if constexpr (std::is_same_v<std::invoke_result_t<Visitor&, const Setting&>, bool>) {
            goesOn = visitor(std::as_const(setting));
        } else {
            visitor(std::as_const(setting));
        }
        return goesOn;
    }

private:
    Visitor& visitor;
    Setting setting;
    bool goesOn = true;
};

}  // namespace detail

/// Settings that are kept, each with texts of its own: a range of Setting. The texts live as long as this object.
class SettingList {
public:
    /// Copies the setting's texts. Throws std::bad_alloc.
    void Add(const Setting& setting) {
        Setting kept;
        for (const auto member : {&Setting::feature, &Setting::category, &Setting::type, &Setting::policy,
                                  &Setting::settings, &Setting::intParam, &Setting::strParam, &Setting::section}) {
            // Most of these texts are those of the setting before.
            const std::wstring_view before = all.empty() ? std::wstring_view() : all.back().*member;
            const bool isSame = (setting.*member).data() != nullptr && before == setting.*member && !all.empty() &&
                                before.data() != nullptr;
            kept.*member = isSame ? before : Keep(setting.*member);
        }
        kept.name = Keep(setting.name);
        kept.value = Keep(setting.value);
        all.push_back(kept);
    }

    /// The first one, in the order in which they were added.
    auto begin() const noexcept { return all.cbegin(); }
    /// Behind the last one.
    auto end() const noexcept { return all.cend(); }
    /// How many there are.
    size_t size() const noexcept { return all.size(); }
    /// Whether there is none.
    bool empty() const noexcept { return all.empty(); }
    /// By its index, which is less than size().
    const Setting& operator[](size_t index) const noexcept { return all[index]; }

private:
    std::wstring_view Keep(std::wstring_view text) {
        if (text.data() == nullptr) {
            return {};
        }
        if (text.size() > left) {
            left = std::max(blockSize, text.size());
            blocks.push_back(std::make_unique<wchar_t[]>(left));
            next = blocks.back().get();
        }
        std::copy(text.begin(), text.end(), next);
        const std::wstring_view kept(next, text.size());
        next += text.size();
        left -= text.size();
        return kept;
    }

    static constexpr size_t blockSize = 16384;  // in characters

    std::vector<Setting> all;
    std::vector<std::unique_ptr<wchar_t[]>> blocks;
    wchar_t* next = nullptr;
    size_t left = 0;
};

/// The policies that the agent holds at the moment, valid while the handler runs and on its thread. Each function asks
/// the agent anew. The names of policies of five well-known categories are recorded in the registry by every walk, see
/// VsKitMsgbus::INYEnforcePolicy::IPolicyBag::EnumeratePolicies.
class Policies {
public:
    /// What the bridge hands over.
    using Bag = VsKitMsgbus::INYEnforcePolicy::IPolicyBag;

    /// For the layer alone.
    Policies(const wchar_t* idOfProduct, Bag& policyBag, detail::Log& productLog)
        : productId(idOfProduct), bag(policyBag), log(productLog) {}
    Policies(const Policies&) = delete;
    Policies& operator=(const Policies&) = delete;

    /// Zero-terminated.
    std::wstring_view ProductId() const noexcept { return productId; }

    /// Calls `visitor(const Setting&)` for each setting of the product, in the agent's order; a visitor that returns
    /// bool ends the walk with false. The setting's texts are valid during the call: nothing is copied or allocated.
    /// What the visitor throws ends the walk and leaves this function. Throws Error when the agent failed; what was
    /// visited until then stays visited.
    template <class Visitor>
    void Walk(Visitor&& visitor) {
        detail::Walker walker(visitor);
        Check(bag.EnumeratePolicies(productId.c_str(), &walker), "reading the policies");
    }

    /// The same for the policies of a user account.
    template <class Visitor>
    void WalkOfUser(const Text& user, const Text& domain, Visitor&& visitor) {
        detail::Walker walker(visitor);
        Check(bag.EnumerateUserPolicies(productId.c_str(), &walker, user.Terminated(), domain.Terminated()),
              "reading the policies of a user");
    }

    /// All settings, as a range that may be kept. Throws as Walk does.
    SettingList Settings() {
        SettingList list;
        Walk([&](const Setting& setting) { list.Add(setting); });
        return list;
    }

    /// The same for the policies of a user account.
    SettingList SettingsOfUser(const Text& user, const Text& domain) {
        SettingList list;
        WalkOfUser(user, domain, [&](const Setting& setting) { list.Add(setting); });
        return list;
    }

    /// The names and values of all sections of that name; of a name that comes twice the last value. Throws as Walk
    /// does.
    std::map<std::wstring, std::wstring, std::less<>> Section(const Text& name) {
        std::map<std::wstring, std::wstring, std::less<>> section;
        Walk([&](const Setting& setting) {
            if (setting.section == name.Terminated()) {
                section.insert_or_assign(std::wstring(setting.name), std::wstring(setting.value));
            }
        });
        return section;
    }

    /// One line for each item, for people to read. Empty when there is none, and when memory runs out.
    std::wstring Dump() {
        VsKitMsgbus::lpc_buffer text;
        bag.Dump(&text);
        return VsKitMsgbus::TakeWideText(text);
    }

    /// The digests of the product's policy objects, one behind the other. Throws Error when the agent failed.
    std::string Digests() {
        VsKitMsgbus::lpc_buffer digests;
        const VsKitMsgbus::ReleasedAtEnd released{digests};
        Check(bag.GetDigestText(Utf8(productId).c_str(), &digests), "reading the digests");
        return VsKitMsgbus::TakeNarrowText(digests);
    }

private:
    void Check(bool isDone, const char* doing) {
        const int32_t code = log.TakeCode();
        if (!isDone) {
            throw Error(std::string(doing) + " of " + Utf8(productId), code,
                        "The agent refused or is gone; it notifies the product again when it is back.");
        }
    }

    const std::wstring productId;
    Bag& bag;
    detail::Log& log;
};

/// Told that the product's policies may have changed. For one product never called on two threads at a time.
using PoliciesHandler = std::function<void(Policies& policies)>;

}  // namespace vsmsgbus
