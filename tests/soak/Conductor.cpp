#include "soak/Conductor.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "ny_simulator.h"
#include "soak/Actions.h"
#include "soak/ExportCalls.h"
#include "soak/FollowReport.h"
#include "soak/KeepingSink.h"
#include "support/AgentEnvironment.h"
#include "support/LineLog.h"
#include "support/Text.h"

namespace {

using Kind = Operation::Kind;

// The agent's functions with which the bridge ends what it does after a change.
constexpr const char* lastFunctions[] = {
    "ny_property_register_provider_callback", "ny_policy_register_notification_callback",
    "ny_scheduler_register_task_callbacks",   "ny_updater_register_callbacks",
    "ny_client_handler_get_msgbus",           "ny_client_handler_release"};

}  // namespace

Conductor::Conductor(AgentOfTheSoak& agentToUse) : agent(agentToUse) {
    for (const char* function : lastFunctions) {
        hooks.emplace_back(function, [this] { agentWasCalled.Give(); });
    }
    hooks.emplace_back("ny_client_handler_create", [this] { ++startsOfTheAgent; });
}

void Conductor::Do(const Operation& operation) {
    switch (operation.kind) {
        case Kind::Install:
        case Kind::Upgrade:
        case Kind::RemoveAgent: ChangeAgent(operation); break;
        case Kind::Enter: Enter(operation.product, operation.mask); break;
        case Kind::Leave: Leave(operation.product); break;
        case Kind::LeaveAll: LeaveAll(); break;
        case Kind::LeaveNobody: {
            const std::lock_guard guard(Door());
            EXPECT_TRUE((Call<&VsMsgbusExit>("NOBODY", entered.any() ? instance : nullptr)));
            break;
        }
        case Kind::Set: Set(operation.product, operation.service); break;
        case Kind::Remove: Remove(operation.product, operation.service); break;
        case Kind::Ask: Ask(operation.product, operation.service, ++asked); break;
    }
}

void Conductor::ChangeAgent(const Operation& operation) {
    if (IsSettled()) {
        for (Entered& known : products) {
            known.possible = known.first;
        }
        TheSink().Forget();
    }
    startsBeforeChange = startsOfTheAgent;
    pendingChanges += entered.any() ? 1U : 0U;
    if (operation.kind == Kind::RemoveAgent) {
        agent.Remove();
    } else {
        agent.Install(operation.isOlderBuild);
    }
    if (operation.isWaitedFor) {
        Settle();
    }
}

void Conductor::Enter(size_t product, uint32_t mask) {
    Entered& known = products[product];
    if (!entered[product]) {
        known = {.first = mask, .certain = mask, .possible = mask};
    } else {
        known.certain |= IsSettled() ? mask : 0;
        known.possible |= mask;
    }
    if (entered.none()) {
        EnterOne(sharedId, allServicesMask);
    }
    EnterOne(ProductId(product), mask);
    entered.set(product);
    if (IsCertain() && agent.IsInstalled()) {
        ExpectAttached(product);
    }
}

void Conductor::ExpectAttached(size_t product) const {
    for (const Service service : allServices) {
        const bool isAttached = IsAttached(ProductId(product), service);
        EXPECT_TRUE(isAttached || (products[product].certain & MaskOf(service)) == 0) << NameOf(service);
        EXPECT_TRUE(!isAttached || (products[product].possible & MaskOf(service)) != 0) << NameOf(service);
    }
}

void Conductor::EnterOne(const std::string& id, uint32_t mask) {
    const std::lock_guard guard(Door());
    VsMsgbus* given = nullptr;
    const bool isEntered = Call<&VsMsgbusEntry>(id.c_str(), mask, &TheSink(), &given);
    ASSERT_NE(given, nullptr);
    // Between two agents a service may be refused; the next start of the agent asks for it again.
    EXPECT_TRUE(isEntered || !IsCertain());
    EXPECT_TRUE(given == instance || id == sharedId);
    instance = given;
}

void Conductor::Leave(size_t product) {
    if (!entered[product]) {
        return;
    }
    products[product].startsBeforeLeaving = startsOfTheAgent;
    LeaveOne(ProductId(product));
    entered.reset(product);
    for (const Service service : allServices) {
        EXPECT_FALSE(IsAttached(ProductId(product), service) && !Trouble::IsOn()) << NameOf(service);
    }
    if (entered.none()) {
        LeaveOne(sharedId);
        pendingChanges = 0;
        if (!Trouble::IsOn()) {
            ExpectNoClient();
        }
        if (!agent.IsInstalled()) {
            agent.DeleteFiles();
        }
    }
}

void Conductor::LeaveOne(const std::string& id) {
    const std::lock_guard guard(Door());
    EXPECT_TRUE(Call<&VsMsgbusExit>(id.c_str(), instance));
}

// Takes the lock of Entry and Exit first: a thread that holds it may have entered a bridge of its own.
void Conductor::ExpectNoClient() {
    const std::lock_guard guard(Door());
    WaitUntilAgentIsLetGo();
    EXPECT_EQ(ny_sim_started_clients(), 0U);
}

void Conductor::Set(size_t product, Service service) {
    std::unique_ptr<Registered>& object = registered[product][static_cast<size_t>(service)];
    if (object == nullptr) {
        object = MakeRegistered(service);
        object->whileInside = CallFromInside;
    }
    object->Set(Wide(ProductId(product)));
}

void Conductor::Remove(size_t product, Service service) {
    std::unique_ptr<Registered>& object = registered[product][static_cast<size_t>(service)];
    if (object != nullptr) {
        object->Remove(Wide(ProductId(product)));
        object.reset();
    }
}

void Conductor::Ask(size_t product, Service service, uint32_t variant) {
    Settle();
    const auto& object = registered[product][static_cast<size_t>(service)];
    const uint64_t before = object != nullptr ? object->Calls() : 0;
    const bool isAttached = IsAttached(ProductId(product), service);
    if (Trouble::IsOn()) {
        // The products attached change at any time, so that the answer is not compared: but the call must end.
        AgentCalls(ProductId(product), service, variant);
        return;
    }
    EXPECT_EQ(AgentCalls(ProductId(product), service, variant), isAttached);
    // The updater's events go to no module.
    const bool isToldNobody = service == Service::Update && variant % 4 == 3;
    if (object != nullptr && isAttached && !isToldNobody) {
        EXPECT_GT(object->Calls(), before);
    }
    if (entered[product] && agent.IsInstalled()) {
        ExpectAttached(product);
    } else {
        EXPECT_FALSE(isAttached);
    }
}

std::vector<std::string> Conductor::Missing() const {
    std::vector<std::string> missing;
    if (agent.IsInstalled()) {
        if (startsOfTheAgent == startsBeforeChange) {
            missing.emplace_back("the agent was not started since the change");
        }
        const auto attachments = MissingAttachments();
        missing.insert(missing.end(), attachments.begin(), attachments.end());
        return missing;
    }
    return LeftOfTheAgent();
}

std::vector<std::string> Conductor::LeftOfTheAgent() {
    std::vector<std::string> left;
    if (const size_t clients = ny_sim_live_handles(NY_SIM_CLIENT)) {
        left.push_back("the agent's clients that are alive: " + std::to_string(clients));
    }
    if (AgentOfTheSoak::IsLoaded()) {
        left.emplace_back("the agent's libraries are loaded");
    }
    return left;
}

std::vector<std::string> Conductor::MissingAttachments() const {
    std::vector<std::string> missing;
    for (const Service service : allServices) {
        for (size_t product = 0; product < productCount; ++product) {
            if (entered[product] && (products[product].first & MaskOf(service)) != 0 &&
                !IsAttached(ProductId(product), service)) {
                missing.push_back(ProductId(product) + " is not attached for the " + NameOf(service));
            }
        }
    }
    // The shared id's registration is the last of a start.
    if (!IsAttached(sharedId, Service::Update)) {
        missing.push_back(std::string(sharedId) + " is not attached for the " + NameOf(Service::Update));
    }
    return missing;
}

std::string Conductor::ReportOn(const std::vector<std::string>& missing) const {
    const std::string state = agent.IsInstalled() ? "installed as " + agent.Version() : "not installed";
    return "the bridge does not follow the agent\nthe agent is " + state +
           "; changes: " + std::to_string(pendingChanges) +
           ", starts since the last one: " + std::to_string(startsOfTheAgent - startsBeforeChange) + "\n" +
           Section("missing", missing) + StateOfTheBridge() + "\n" +
           Section("the agent's answers in the last start", AnswersInTheLastStart()) +
           Section("what it refused on other threads", RefusalsOnOtherThreads()) +
           Section("the bridge's last lines", TheSink().Lines());
}

std::string Conductor::WaitUntilFollowed(std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    std::chrono::milliseconds patience{1};
    for (auto missing = Missing(); !missing.empty(); missing = Missing()) {
        if (std::chrono::steady_clock::now() >= end) {
            return ReportOn(missing);
        }
        if (!agentWasCalled.Take(patience)) {
            patience = std::min(2 * patience, std::chrono::milliseconds(128));
        }
        if (patience.count() >= 32) {
            // The change may have come before the watcher was watching.
            AgentOfTheSoak::Touch();
        }
    }
    return {};
}

void Conductor::Settle() {
    if (IsSettled() || Trouble::IsOn()) {
        return;
    }
    const std::string report = WaitUntilFollowed(soon);
    ASSERT_TRUE(report.empty()) << report;
    for (Entered& known : products) {
        known.certain = known.first;
    }
    if (!agent.IsInstalled()) {
        agent.DeleteFiles();
    }
    const bool isCertain = pendingChanges == 1;
    pendingChanges = 0;
    if (!isCertain) {
        // The watcher may be about to start once more: for the version of the last change, whose libraries it has
        // loaded already, when the one before was followed late. Nothing tells; but the last Exit ends the watcher.
        const std::bitset<productCount> before = entered;
        LeaveAll();
        EnterAgain(before);
    }
}

void Conductor::EnterAgain(const std::bitset<productCount>& before) {
    for (size_t product = 0; product < productCount; ++product) {
        if (before[product]) {
            Enter(product, products[product].first);
        }
    }
}

bool Conductor::HasLeft(const std::string& id) const {
    for (size_t product = 0; product < productCount; ++product) {
        if (ProductId(product) == id) {
            return !entered[product] && products[product].startsBeforeLeaving == startsOfTheAgent;
        }
    }
    return false;
}

void Conductor::LoseAgent() {
    pendingChanges += entered.any() ? 1U : 0U;
    agent.Remove();
    agent.DeleteFiles();
}

void Conductor::WaitUntilAgentIsLetGo() {
    WaitUntil([] { return LeftOfTheAgent().empty(); });
    EXPECT_THAT(LeftOfTheAgent(), testing::IsEmpty());
}

void Conductor::EndTrouble() {
    const std::bitset<productCount> before = entered;
    LeaveAll();
    {
        // While no thread is in Entry or Exit, no product is in, and the agent has no product to call.
        const std::lock_guard guard(Door());
        EXPECT_EQ(ny_sim_wait_idle(static_cast<uint32_t>(soon.count())), NY_OK);
        WaitUntilAgentIsLetGo();
        left.Check();
        EXPECT_EQ(ny_sim_misuse_count(), 0U) << ny_sim_last_misuse();
        Trouble::End();
    }
    ExpectNoClient();
    EnterAgain(before);
}

void Conductor::LeaveAll() {
    for (size_t product = 0; product < productCount; ++product) {
        Leave(product);
    }
}

void Conductor::EndAll() {
    LeaveAll();
    for (size_t product = 0; product < productCount; ++product) {
        for (const Service service : allServices) {
            Remove(product, service);
        }
    }
    agent.Remove();
    agent.DeleteFiles();
}

void Conductor::CheckThatEverythingAnswers() {
    agent.Install(false);
    Enter(0, allServicesMask);
    for (const Service service : allServices) {
        Set(0, service);
        for (uint32_t variant = 0; variant < 4; ++variant) {
            Ask(0, service, variant);
        }
    }
    EndAll();
}
