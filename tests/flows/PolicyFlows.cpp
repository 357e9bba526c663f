#include "flows/EnteredFlow.h"
#include "flows/FlowList.h"
#include "policy/NotingCallbacks.h"
#include "support/PolicyNotice.h"
#include "support/PolicyValues.h"

namespace {

using IPolicyBag = VsKitMsgbus::INYEnforcePolicy::IPolicyBag;

// One policy of the machine, in a category whose name is recorded, and one of a user.
constexpr char policies[] = R"([
    {"softwareId": "PRODUCT1000", "feature": "F1", "category": "QTP_General_Policies", "type": "T1", "name": "N1",
     "settingsObject": {"name": "P1", "intParameter": "1", "stringParameter": "a", "digest": "d1"},
     "sections": [{"name": "S1", "settings": {"x": "1"}}]},
    {"softwareId": "PRODUCT1000", "user": "DOMAIN\\user", "feature": "F", "category": "C", "type": "T", "name": "N",
     "settingsObject": {"name": "P", "intParameter": "3", "stringParameter": "c", "digest": "u"},
     "sections": [{"name": "S", "settings": {"z": "3"}}]}])";

// Two policies, two sections and two settings, for what goes from one to the next.
constexpr char twoOfEach[] = R"([
    {"softwareId": "PRODUCT1000", "feature": "F1", "category": "QTP_General_Policies", "type": "T1", "name": "N1",
     "settingsObject": {"name": "P1", "digest": "d1"},
     "sections": [{"name": "S1", "settings": {"x": "1", "y": "2"}}, {"name": "S2", "settings": {}}]},
    {"softwareId": "PRODUCT1000", "category": "C2", "settingsObject": {"digest": "d2"}, "sections": []}])";

// The module uses its bag in one way.
class PolicyFlow : public EnteredFlow<VsMsgbusServicePolicy>, protected VsKitMsgbus::INYEnforcePolicy {
public:
    using EnteredFlow::EnteredFlow;
    void Prepare() override {
        ny_sim_policies_from_json(policies);
        EnteredFlow::Prepare();
    }
    void Begin() override {
        PolicyValues::DeleteKey();
        PolicyValues::MakeKey();
    }
    void Run() override {
        world.Note("Set: " + TextOf(VsKitMsgbusSetEnforcePolicy(FlowWorld::wideProduct, this, &world.ModuleSink())));
        Notify();
        world.Note("Remove: " + TextOf(VsKitMsgbusRemoveEnforcerPolicy(FlowWorld::wideProduct)));
    }
    void Look() override { world.Note("registry: OASPolicyName=" + Narrow(PolicyValues::Read(L"OASPolicyName"))); }

protected:
    virtual void Notify() { world.Note("agent: answer " + std::to_string(PolicyNotice(FlowWorld::product).Answer())); }
    virtual void Use(IPolicyBag& bag) = 0;

    int32_t GetLogLevel() override { return 0; }
    void Reserved() override { world.Note("module: the reserved slot was called"); }
    void EnforcePolicy(const wchar_t* productId, IPolicyBag* bag) override {
        world.Note("module: EnforcePolicy " + Narrow(productId));
        Use(*bag);
    }

    // Callbacks that note what they are told.
    NotingCallbacks Noting() {
        NotingCallbacks callbacks;
        callbacks.answer = [this](const std::string& line) {
            world.Note("module: " + line);
            return true;
        };
        return callbacks;
    }
};

class PolicyWalkFlow final : public PolicyFlow {
public:
    using PolicyFlow::PolicyFlow;
    void Prepare() override {
        PolicyFlow::Prepare();
        ny_sim_policies_from_json(twoOfEach);
    }

private:
    void Use(IPolicyBag& bag) override {
        NotingCallbacks callbacks = Noting();
        world.Note("module: EnumeratePolicies: " + TextOf(bag.EnumeratePolicies(FlowWorld::wideProduct, &callbacks)));
    }
};

class UserWalkFlow final : public PolicyFlow {
public:
    using PolicyFlow::PolicyFlow;

private:
    void Use(IPolicyBag& bag) override {
        NotingCallbacks callbacks = Noting();
        world.Note("module: EnumerateUserPolicies: " +
                   TextOf(bag.EnumerateUserPolicies(FlowWorld::wideProduct, &callbacks, L"user", L"DOMAIN")));
    }
};

class DumpFlow final : public PolicyFlow {
public:
    using PolicyFlow::PolicyFlow;

private:
    void Use(IPolicyBag& bag) override {
        VsKitMsgbus::lpc_buffer buffer{};
        bag.Dump(&buffer);
        std::string text = TakeBuffer(buffer);
        for (size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', end)) {
            text.replace(end, 1, "\\n");
        }
        world.Note("module: Dump: " + text);
    }
};

class DigestFlow : public PolicyFlow {
public:
    using PolicyFlow::PolicyFlow;
    void Prepare() override {
        PolicyFlow::Prepare();
        ny_sim_policies_from_json(twoOfEach);
    }

private:
    void Use(IPolicyBag& bag) override { world.Note("module: GetDigest: <" + bag.GetDigest(FlowWorld::product) + ">"); }
};

// The same digests in a buffer.
class DigestTextFlow final : public DigestFlow {
public:
    using DigestFlow::DigestFlow;

private:
    void Use(IPolicyBag& bag) override {
        VsKitMsgbus::lpc_buffer digests;
        const bool isWhole = bag.GetDigestText(FlowWorld::product, &digests);
        world.Note("module: GetDigestText: " + TextOf(isWhole) + " " + TakeBuffer(digests));
    }
};

// The module asks for the notification.
class EnforceFlow final : public PolicyFlow {
public:
    using PolicyFlow::PolicyFlow;

private:
    void Notify() override {
        const int answer = VsKitEnforceLocalPolicy(FlowWorld::wideProduct);
        if (ny_sim_wait_idle(static_cast<uint32_t>(soon.count())) != NY_OK) {
            world.Note("NOT SEEN: the end of the notification");
        }
        world.Note("VsKitEnforceLocalPolicy: " + std::to_string(answer));
    }
    void Use(IPolicyBag& /*bag*/) override {}
};

}  // namespace

std::vector<FlowKind> PolicyFlows() {
    return {{"PolicyWalk", MakeFlow<PolicyWalkFlow>},
            {"UserWalk", MakeFlow<UserWalkFlow>},
            {"Dump", MakeFlow<DumpFlow>},
            {"Digest", MakeFlow<DigestFlow>},
            {"DigestText", MakeFlow<DigestTextFlow>},
            {"Enforce", MakeFlow<EnforceFlow>}};
}
