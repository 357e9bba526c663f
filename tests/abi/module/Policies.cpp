#include <string>

#include "VsMsgbus.h"
#include "abi/module/Module.h"
#include "abi/module/Told.h"

namespace {

using IPolicyBag = VsKitMsgbus::INYEnforcePolicy::IPolicyBag;

class Callbacks final : public IPolicyBag::ICallbacks {
public:
    bool OnContainer(const wchar_t* feature, const wchar_t* category, const wchar_t* type,
                     const wchar_t* name) override {
        Told() << L"OnContainer " << feature << L" " << category << L" " << type << L" " << name;
        return true;
    }
    bool OnSettings(const wchar_t* name, const wchar_t* intParam, const wchar_t* strParam) override {
        Told() << L"OnSettings " << name << L" " << intParam << L" " << strParam;
        return true;
    }
    bool OnSection(const wchar_t* name, const wchar_t* reserved) override {
        Told() << L"OnSection " << name << L" " << reserved;
        return true;
    }
    bool OnSetting(const wchar_t* section, const wchar_t* name, const wchar_t* value) override {
        Told() << L"OnSetting " << section << L" " << name << L" " << value;
        return true;
    }
};

class Enforcer final : public VsKitMsgbus::INYEnforcePolicy {
public:
    int32_t GetLogLevel() override {
        Told() << L"GetLogLevel";
        return 0;
    }
    void Reserved() override { Told() << L"Reserved"; }
    // Every slot but GetDigest, which has a file of its own, and the strings that the header makes.
    void EnforcePolicy(const wchar_t* productId, IPolicyBag* bag) override {
        Told() << L"EnforcePolicy " << productId;
        Callbacks callbacks;
        Told() << L"EnumeratePolicies answers " << bag->EnumeratePolicies(productId, &callbacks);
        Told() << L"EnumerateUserPolicies answers "
               << bag->EnumerateUserPolicies(productId, &callbacks, L"user", L"DOMAIN");
        VsKitMsgbus::lpc_buffer dump;
        bag->Dump(&dump);
        Told() << L"Dump gives " << static_cast<int32_t>(dump.length) << L": "
               << static_cast<const wchar_t*>(dump.data);
        dump.Release();
        VsKitMsgbus::lpc_buffer digests;
        const bool isWhole = bag->GetDigestText("ABI1000", &digests);
        Told() << L"GetDigestText answers " << isWhole << L" with kind " << static_cast<int32_t>(digests.kind);
        TellDigests(L"TakeNarrowText", VsKitMsgbus::TakeNarrowText(digests));
        TellDigests(L"Digest", bag->Digest("ABI1000"));
        Told() << L"GetDigestText answers " << bag->GetDigestText(nullptr, &digests) << L" for null";
        digests.Release();
    }

private:
    static void TellDigests(const wchar_t* what, const std::string& digests) {
        Told() << what << L" gives " << std::wstring(digests.begin(), digests.end()).c_str();
    }
};

constinit Enforcer enforcer;

}  // namespace

bool ModuleOfferPolicies(const wchar_t* productId) {
    return VsKitMsgbusSetEnforcePolicy(productId, &enforcer, nullptr);
}

bool ModuleWithdrawPolicies(const wchar_t* productId) {
    return VsKitMsgbusRemoveEnforcerPolicy(productId);
}

void ModuleEnforceLocally(const wchar_t* productId) {
    Told() << L"VsKitEnforceLocalPolicy answers " << VsKitEnforceLocalPolicy(productId);
}
