// Policies: notifications, both walks, dumps and digests, and enforcing on request.
#include <string>

#include "Registry.h"
#include "VsMsgbus/EnforcePolicy.h"
#include "fuzz/FuzzedSession.h"
#include "msgbus/lpc_buffer.h"

using VsKitMsgbus::INYEnforcePolicy;

namespace {

constexpr unsigned mostRounds = 8;

class ReadingCallbacks final : public INYEnforcePolicy::IPolicyBag::ICallbacks {
public:
    explicit ReadingCallbacks(FuzzInput& fuzzInput) : input(fuzzInput) {}

    bool OnContainer(const wchar_t* featureId, const wchar_t* categoryId, const wchar_t* typeId,
                     const wchar_t* name) override {
        return Read({featureId, categoryId, typeId, name});
    }
    bool OnSettings(const wchar_t* name, const wchar_t* intParam, const wchar_t* strParam) override {
        return Read({name, intParam, strParam});
    }
    bool OnSection(const wchar_t* name, const wchar_t* reserved) override { return Read({name, reserved}); }
    bool OnSetting(const wchar_t* section, const wchar_t* name, const wchar_t* value) override {
        return Read({section, name, value});
    }

private:
    bool Read(std::initializer_list<const wchar_t*> texts) {
        for (const wchar_t* const text : texts) {
            Touch(text);
        }
        const uint8_t answer = input.Byte();
        if (answer == 0xFF) {
            throw answer;
        }
        return answer < 0xE0;
    }

    FuzzInput& input;
};

class FuzzedEnforcer final : public INYEnforcePolicy {
public:
    explicit FuzzedEnforcer(FuzzInput& fuzzInput) : input(fuzzInput) {}

    int32_t GetLogLevel() override { return static_cast<int32_t>(input.Below(8)); }
    void Reserved() override {}
    void EnforcePolicy(const wchar_t* productId, IPolicyBag* bag) override {
        Touch(productId);
        for (unsigned rounds = input.Below(4) + 1; rounds != 0; --rounds) {
            Use(*bag);
        }
    }

private:
    void Use(IPolicyBag& bag) {
        ReadingCallbacks callbacks(input);
        VsKitMsgbus::lpc_buffer dump;
        const ExactText<wchar_t> id(input, input.WideText());
        switch (input.Below(6)) {
            case 0: bag.EnumeratePolicies(id.Get(), &callbacks); break;
            case 1: bag.EnumeratePolicies(fuzzedProductWide, input.Rarely() ? nullptr : &callbacks); break;
            case 2: {
                const ExactText<wchar_t> user(input, input.WideText());
                bag.EnumerateUserPolicies(fuzzedProductWide, &callbacks, user.Get(), id.Get());
                break;
            }
            case 3: {
                const ExactText<char> digestId(input, input.Text());
                Touch(bag.GetDigest(digestId.Get()).c_str());
                break;
            }
            case 4: VsKitMsgbusRemoveEnforcerPolicy(fuzzedProductWide); break;
            default:
                bag.Dump(&dump);
                if (dump.data != nullptr) {
                    Touch(dump.data, (dump.length + 1) * sizeof(wchar_t));
                }
                dump.Release();
        }
    }

    FuzzInput& input;
};

// The agent's own uri, which is gone after the call unless the bridge took a reference.
void NotifyOfPolicies(FuzzedSession& session) {
    const auto found = session.agent.Client()->policies.find(fuzzedProduct);
    if (found == session.agent.Client()->policies.end()) {
        return;
    }
    ny_policy_uri* const uri =
        session.input.Rarely() ? nullptr : session.agent.handles.Lend(std::make_unique<ny_policy_uri>());
    const ExactText<char> product(session.input, session.input.Often() ? session.input.Text() : fuzzedProduct);
    const auto [callback, userData] = found->second;
    callback(session.agent.Client(), product.Get(), uri, userData);
    session.agent.handles.EndLoan(uri);
}

void Run(FuzzedSession& session) {
    FuzzedEnforcer enforcer(session.input);
    for (unsigned round = 0; round < mostRounds && (round == 0 || !session.input.IsOver()); ++round) {
        VsKitMsgbusSetEnforcePolicy(fuzzedProductWide, &enforcer, session.input.Rarely() ? nullptr : &session.sink);
        if (session.agent.Client() != nullptr) {
            NotifyOfPolicies(session);
        }
        const ExactText<wchar_t> product(session.input, session.input.WideText());
        VsKitEnforceLocalPolicy(product.Get());
    }
    VsKitMsgbusRemoveEnforcerPolicy(fuzzedProductWide);
}

// The key in which the walks keep policies' names.
void MakePolicyKey() {
    static const simulator::RegistryKey key(HKEY_LOCAL_MACHINE, "SOFTWARE\\Corvane\\Endpoint\\AV", KEY_ALL_ACCESS);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    MakePolicyKey();
    RunSession(data, size, Run);
    return 0;
}
