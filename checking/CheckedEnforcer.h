#pragma once

#include <memory>
#include <utility>

#include "VsMsgbus/EnforcePolicy.h"
#include "checking/CheckedSink.h"
#include "checking/Lent.h"
#include "checking/Registration.h"

namespace checking {

// The bag that the bridge lends a module's enforcer, to read policies from.
class CheckedPolicyBag final : public VsKitMsgbus::INYEnforcePolicy::IPolicyBag,
                               public Lent<VsKitMsgbus::INYEnforcePolicy::IPolicyBag, LentFor::OwnThread> {
public:
    bool EnumerateUserPolicies(const wchar_t* productId, ICallbacks* callbacks, const wchar_t* user,
                               const wchar_t* domain) override;
    bool EnumeratePolicies(const wchar_t* productId, ICallbacks* callbacks) override;
    void Dump(VsKitMsgbus::lpc_buffer* result) override;
    std::string GetDigest(const char* productId) override;
    bool GetDigestText(const char* productId, VsKitMsgbus::lpc_buffer* digests) override;

private:
    void LookAtProduct(const char* operation, const std::string& productId);
    template <class Enumerate>
    bool Walk(const char* operation, const wchar_t* productId, ICallbacks* callbacks, const Enumerate& enumerate);
};

// A module's policy enforcer.
class CheckedEnforcer final : public VsKitMsgbus::INYEnforcePolicy, public Registration {
public:
    // `moduleSink` may be null; the bridge knows it as long as the enforcer.
    CheckedEnforcer(const wchar_t* productId, VsKitMsgbus::INYEnforcePolicy* moduleEnforcer,
                    std::shared_ptr<CheckedSink> moduleSink)
        : Registration(services[Policy], productId, moduleEnforcer),
          enforcer(moduleEnforcer),
          sink(std::move(moduleSink)) {}

    int32_t GetLogLevel() override;
    void Reserved() override {}
    void EnforcePolicy(const wchar_t* productId, IPolicyBag* bag) override;

private:
    VsKitMsgbus::INYEnforcePolicy* const enforcer;
    const std::shared_ptr<CheckedSink> sink;
};

}  // namespace checking
