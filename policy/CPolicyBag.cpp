#include "policy/CPolicyBag.h"

#include <optional>

#include "base/Boundary.h"
#include "dispatcher/groups/PolicyGroup.h"
#include "msgbus/BridgeLog.h"
#include "msgbus/client/AgentUse.h"
#include "msgbus/lpc_buffer.h"
#include "policy/CPolicyDump.h"
#include "policy/OutOfMemory.h"
#include "policy/PolicyIterators.h"
#include "policy/PolicyQuery.h"
#include "policy/PolicyWalk.h"
#include "policy/VsMsgbusIEnforcePolicy.h"
#include "values/AgentTexts.h"

namespace bridge {

using VsKit::CUniStream;

namespace {

std::string NarrowId(const wchar_t* wide, const LibrariesInUse* inUse) {
    return BadAllocAsAgentException([&] { return NarrowFromWide(wide, inUse); });
}

std::string NarrowAccount(const wchar_t* domain, const wchar_t* user, const LibrariesInUse* inUse) {
    return BadAllocAsAgentException([&] {
        std::wstring joined(domain != nullptr ? domain : L"");
        joined += L'\\';
        joined += user != nullptr ? user : L"";
        return NarrowFromWide(joined, inUse);
    });
}

// All that a walk holds of the agent's.
struct OpenWalk {
    OpenWalk(InsidePassage inside, const LibrariesInUse* libraries, CPolicyBag::ICallbacks& callbacks,
             PolicyWalk::Scope scope)
        : policyFunctions(libraries),
          textFunctions(LookUpTextFunctions(libraries)),
          query(policyFunctions),
          walk(inside, policyFunctions, textFunctions, callbacks, scope) {}

    const PolicyFunctions policyFunctions;
    const TextFunctions textFunctions;
    PolicyBagOwner bag;
    PolicyQuery query;
    PolicyWalk walk;
};

}  // namespace

bool CPolicyBag::EnumerateUserPolicies(const wchar_t* wantedId, ICallbacks* callbacks, const wchar_t* user,
                                       const wchar_t* domain) {
    const Account account{domain, user};
    return Walk(wantedId, callbacks, &account);
}

bool CPolicyBag::EnumeratePolicies(const wchar_t* wantedId, ICallbacks* callbacks) {
    return Walk(wantedId, callbacks, nullptr);
}

void CPolicyBag::Dump(VsKitMsgbus::lpc_buffer* result) noexcept {
    if (result == nullptr) {
        return;
    }
    result->Release();
    Guarded([&] {
        CPolicyDump dump;
        EnumeratePolicies(productId, &dump);
        // A text that was cut must not pass for the whole one.
        if (dump.IsGood()) {
            dump.Store(*result);
        }
    });
}

std::string CPolicyBag::GetDigest(const char* wantedId) noexcept {
    std::string digests;
    ReadDigests(wantedId, digests);
    return digests;
}

bool CPolicyBag::GetDigestText(const char* wantedId, VsKitMsgbus::lpc_buffer* digests) noexcept {
    if (digests == nullptr) {
        return false;
    }
    digests->Release();
    std::string text;
    const bool isWhole = ReadDigests(wantedId, text);
    return StoreText(*digests, std::string_view(text)) && isWhole;
}

bool CPolicyBag::ReadDigests(const char* wantedId, std::string& digests) const noexcept {
    const std::shared_ptr<AgentSession> session = OpenSession();
    if (session == nullptr || wantedId == nullptr) {
        return false;
    }
    try {
        BadAllocAsAgentException([&] { AppendDigests(*session, wantedId, digests); });
        return true;
    } catch (const AgentException& failure) {
        LogDigestFailure(failure.Code());
    } catch (...) {
    }
    return false;
}

std::shared_ptr<AgentSession> CPolicyBag::OpenSession() const noexcept {
    if (closed != 0 || client == nullptr) {
        return nullptr;
    }
    const AgentUse use;
    return use && use.Client() == client ? use.Session() : nullptr;
}

bool CPolicyBag::Walk(const wchar_t* wantedId, ICallbacks* callbacks, const Account* account) const {
    std::shared_ptr<AgentSession> session = OpenSession();
    if (session == nullptr || wantedId == nullptr || callbacks == nullptr) {
        return false;
    }
    try {
        std::optional<OpenWalk> open;
        PassThrough<AgentException>(
            [&](InsidePassage inside) {
                const LibrariesInUse* const libraries = session->Libraries();
                open.emplace(inside, libraries, *callbacks,
                             account != nullptr ? PolicyWalk::Scope::User : PolicyWalk::Scope::Machine);
                open->query.SetProduct(NarrowId(wantedId, libraries).c_str());
                if (account != nullptr) {
                    open->query.SetUser(NarrowAccount(account->domain, account->user, libraries).c_str());
                }
                open->bag = open->query.Fetch(client);
                open->walk.Run(open->bag.Get());
            },
            [&] {
                open.reset();
                session.reset();
            });
        return true;
    } catch (const AgentException& failure) {
        LogFailure(wantedId, failure.Code());
        return false;
    }
}

void CPolicyBag::LogFailure(const wchar_t* wantedId, int32_t code) const noexcept {
    CUniStream text;
    text << L"Failed to iterate the policy bag for product id " << wantedId << L", exception " << code;
    WriteFailure(sink, text);
}

void CPolicyBag::AppendDigests(const AgentSession& session, const char* wantedId, std::string& digests) const {
    const PolicyFunctions policyFunctions(session.Libraries());
    PolicyBagOwner bag;
    PolicyQuery query(policyFunctions);
    query.SetProduct(wantedId);
    bag = query.Fetch(client);
    PolicyUris uris(policyFunctions, agent::ny_policy_bag_get_uri_iterator, agent::ny_policy_bag_uri_iterator_get_next,
                    bag.Get());
    ny_policy_uri_t* uri = nullptr;
    while (uris.Next(uri)) {
        const char* digest = nullptr;
        Check(policyFunctions(agent::ny_policy_uri_get_pso_digest)(uri, &digest));
        digests += digest != nullptr ? digest : "";
    }
}

}  // namespace bridge
