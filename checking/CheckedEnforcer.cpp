#include "checking/CheckedEnforcer.h"

#include <memory>

#include "checking/Buffers.h"
#include "checking/Callback.h"
#include "checking/CheckedWalk.h"
#include "checking/LentTexts.h"
#include "checking/Texts.h"

namespace checking {

using VsKitMsgbus::lpc_buffer;

void CheckedPolicyBag::LookAtProduct(const char* operation, const std::string& productId) {
    if (productId != ProductId()) {
        Report(Rule::WalkOfOtherId, ProductId(), {operation, productId});
    }
}

template <class Enumerate>
bool CheckedPolicyBag::Walk(const char* operation, const wchar_t* productId, ICallbacks* callbacks,
                            const Enumerate& enumerate) {
    IPolicyBag* const bag = Use(operation);
    if (bag == nullptr || productId == nullptr || callbacks == nullptr) {
        return bag != nullptr && enumerate(*bag, callbacks);
    }
    LookAtProduct(operation, Narrow(productId));
    auto walk = std::make_unique<CheckedWalk>(operation, ProductId(), callbacks);
    bool answer = false;
    bridge::PassThrough<bridge::AgentException>(
        [&](bridge::InsidePassage inside) {
            walk->Begin(inside);
            answer = enumerate(*bag, walk.get());
        },
        [&] { walk.reset(); });
    walk->NoteAnswers();
    return answer;
}

bool CheckedPolicyBag::EnumerateUserPolicies(const wchar_t* productId, ICallbacks* callbacks, const wchar_t* user,
                                             const wchar_t* domain) {
    return Walk("EnumerateUserPolicies", productId, callbacks, [&](IPolicyBag& bag, ICallbacks* checked) {
        return bag.EnumerateUserPolicies(productId, checked, user, domain);
    });
}

bool CheckedPolicyBag::EnumeratePolicies(const wchar_t* productId, ICallbacks* callbacks) {
    return Walk("EnumeratePolicies", productId, callbacks,
                [&](IPolicyBag& bag, ICallbacks* checked) { return bag.EnumeratePolicies(productId, checked); });
}

void CheckedPolicyBag::Dump(lpc_buffer* result) {
    if (IPolicyBag* const bag = Use("Dump")) {
        CallWithBuffer("Dump", result, [&] {
            bag->Dump(result);
            return true;
        });
    }
}

std::string CheckedPolicyBag::GetDigest(const char* productId) {
    IPolicyBag* const bag = Use("GetDigest");
    return bag != nullptr ? bag->GetDigest(productId) : std::string();
}

bool CheckedPolicyBag::GetDigestText(const char* productId, lpc_buffer* digests) {
    IPolicyBag* const bag = Use("GetDigestText");
    if (bag != nullptr && productId != nullptr) {
        LookAtProduct("GetDigestText", productId);
    }
    return bag != nullptr &&
           CallWithBuffer("GetDigestText", digests, [&] { return bag->GetDigestText(productId, digests); });
}

int32_t CheckedEnforcer::GetLogLevel() {
    return CallRegistered(*this, "GetLogLevel", [&] { return enforcer->GetLogLevel(); });
}

void CheckedEnforcer::EnforcePolicy(const wchar_t* productId, IPolicyBag* bag) {
    const Loan<CheckedPolicyBag> loan(bag, NarrowId(), "EnforcePolicy");
    LentTexts texts(NarrowId(), "EnforcePolicy");
    CallRegistered(*this, "EnforcePolicy", [&] { enforcer->EnforcePolicy(texts.Copy(productId), loan.Get()); });
}

}  // namespace checking
