#pragma once

#include <array>
#include <atomic>
#include <bitset>
#include <chrono>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "soak/Agent.h"
#include "soak/LeftHandles.h"
#include "soak/Modules.h"
#include "soak/Plan.h"
#include "soak/Signal.h"
#include "soak/Trouble.h"
#include "support/AgentCalls.h"

// Does what a plan says, and compares what comes of it with what the bridge promises, as far as that is certain at that
// moment: a change of the agent that was not waited for may not have been followed yet.
class Conductor {
public:
    explicit Conductor(AgentOfTheSoak& agentToUse);

    void Do(const Operation& operation);
    // Everybody leaves, everything is taken back, the agent is removed.
    void EndAll();
    // Installs the agent, enters a product for everything, has each service answered, and ends all again.
    void CheckThatEverythingAnswers();

    // The agent's version and its files go, also while they are used.
    void LoseAgent();
    // After trouble that the agent causes no more: everybody leaves, nothing may be left but what the agent refused to
    // take back, and the products that were in enter again.
    void EndTrouble();
    // The handles whose release the agent has refused.
    const LeftHandles& Left() const { return left; }
    // Whether it is a product of the plan's that has left the agent's client that there is now: nobody else enters with
    // that id.
    bool HasLeft(const std::string& id) const;

    // Whether the bridge has followed every change of the agent, as far as that was waited for.
    bool IsSettled() const { return pendingChanges == 0; }
    // Whether that is so because the agent does what it should.
    bool IsCertain() const { return IsSettled() && !Trouble::IsOn(); }
    // Waits until the bridge has done what the agent's state asks for. Empty, or when it has not in time, a report:
    // what is missing, what the watcher saw and told, the agent's answers, the bridge's lines.
    std::string WaitUntilFollowed(std::chrono::milliseconds limit);

private:
    void ChangeAgent(const Operation& operation);
    void Enter(size_t product, uint32_t mask);
    void Leave(size_t product);
    void EnterOne(const std::string& id, uint32_t mask);
    void LeaveOne(const std::string& id);
    void Set(size_t product, Service service);
    void Remove(size_t product, Service service);
    void Ask(size_t product, Service service, uint32_t variant);

    // Returns when the bridge has done what the agent's state asks for. Returns at once when no product is in.
    void Settle();
    // The things that the agent's state asks for and the bridge has not done yet.
    std::vector<std::string> Missing() const;
    std::vector<std::string> MissingAttachments() const;
    // The things that exist only while a thread is inside the agent.
    static std::vector<std::string> LeftOfTheAgent();
    // The last thread inside lets go of the agent: a caller of exports that is on its way out, or a thread of the
    // bridge's after a late call. Either may do so after the last Exit has returned.
    static void WaitUntilAgentIsLetGo();
    std::string ReportOn(const std::vector<std::string>& missing) const;
    void LeaveAll();
    void EnterAgain(const std::bitset<productCount>& before);
    void ExpectAttached(size_t product) const;
    static void ExpectNoClient();

    // The services of a product that is in, as masks: `first` is attached whenever the agent starts, `certain` is
    // attached now, and `possible` may be attached, because the product entered again while the agent changed.
    struct Entered {
        uint32_t first = 0;
        uint32_t certain = 0;
        uint32_t possible = 0;
        uint64_t startsBeforeLeaving = 0;  // of the agent, when it last left
    };

    AgentOfTheSoak& agent;
    Signal agentWasCalled;
    std::atomic<uint64_t> startsOfTheAgent = 0;
    uint64_t startsBeforeChange = 0;
    std::list<AgentHook> hooks;  // signal the calls with which the bridge ends what it does after a change
    VsMsgbus* instance = nullptr;
    std::array<Entered, productCount> products{};
    std::bitset<productCount> entered;
    std::array<std::array<std::unique_ptr<Registered>, serviceCount>, productCount> registered;
    // Changes of the agent that the bridge may not have followed yet; none while no product is in.
    unsigned pendingChanges = 0;
    uint32_t asked = 0;
    LeftHandles left;
};
