/// @file
/// Policies: reading what the agent holds for a product.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "VsMsgbus/EnforcePolicy.h"
#include "VsMsgbus/cpp/Error.hpp"
#include "VsMsgbus/cpp/Log.hpp"
#include "VsMsgbus/cpp/PolicyWalker.hpp"
#include "VsMsgbus/cpp/Setting.hpp"
#include "VsMsgbus/cpp/Text.hpp"

namespace vsmsgbus {

/// The policies that the agent holds at the moment, valid while the handler runs and on its thread. Each function asks
/// the agent anew. The names of policies of five well-known categories are recorded in the registry by every walk, see
/// VsKitMsgbus::INYEnforcePolicy::IPolicyBag::EnumeratePolicies.
class Policies {
public:
    /// The bag that the bridge hands over.
    using Bag = VsKitMsgbus::INYEnforcePolicy::IPolicyBag;

    /// For the layer alone.
    Policies(const wchar_t* idOfProduct, Bag& policyBag, detail::Log& productLog)
        : productId(idOfProduct), bag(policyBag), log(productLog) {}
    Policies(const Policies&) = delete;
    Policies& operator=(const Policies&) = delete;

    /// Zero-terminated.
    std::wstring_view ProductId() const noexcept { return productId; }

    /// Calls `visitor(const Setting&)` for each setting of the product, in the agent's order; a visitor that returns
    /// bool ends the walk with false. The setting and its texts are valid during the call: name and value are the
    /// bridge's own, the others are copied where they change, into memory that is used again. What the visitor throws
    /// ends the walk and leaves this function. Throws Error when the agent failed; what was visited until then stays
    /// visited.
    template <class Visitor>
    void Walk(Visitor&& visitor) {
        Enumerate(detail::VisitedSettings(visitor));
    }

    /// The same for the policies of a user account.
    template <class Visitor>
    void WalkOfUser(const Text& user, const Text& domain, Visitor&& visitor) {
        EnumerateOfUser(user, domain, detail::VisitedSettings(visitor));
    }

    /// All settings, as a range that may be kept. Throws as Walk does.
    SettingList Settings() {
        SettingList list;
        Enumerate(detail::KeptSettings(list));
        return list;
    }

    /// The same for the policies of a user account.
    SettingList SettingsOfUser(const Text& user, const Text& domain) {
        SettingList list;
        EnumerateOfUser(user, domain, detail::KeptSettings(list));
        return list;
    }

    /// The names and values of all sections of that name; of a name that comes twice the last value. Throws as Walk
    /// does.
    std::map<std::wstring, std::wstring, std::less<>> Section(const Text& name) {
        std::map<std::wstring, std::wstring, std::less<>> section;
        Walk([&](const Setting& setting) {
            if (setting.section == name.Terminated()) {
                section.insert_or_assign(setting.name.Terminated(), setting.value.Terminated());
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
    template <class Store>
    void Enumerate(Store store) {
        detail::PolicyWalker walker(store);
        Check(bag.EnumeratePolicies(productId.c_str(), &walker), "reading the policies");
    }

    template <class Store>
    void EnumerateOfUser(const Text& user, const Text& domain, Store store) {
        detail::PolicyWalker walker(store);
        Check(bag.EnumerateUserPolicies(productId.c_str(), &walker, user.Terminated(), domain.Terminated()),
              "reading the policies of a user");
    }

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
