#include "soak/Hostility.h"

#include <gtest/gtest.h>

#include <list>
#include <string_view>
#include <vector>

#include "ny_sim_hostile.h"
#include "ny_simulator.h"
#include "simulator/core/frame/FunctionName.h"
#include "soak/Agent.h"
#include "soak/Trouble.h"
#include "support/AllCallbacks.h"
#include "support/LineLog.h"

namespace {

// In operations of the plan.
constexpr unsigned calmTime = 25;
constexpr unsigned troubledTime = 15;

// One of the agent's own, a negative one, and those that the bridge answers itself.
constexpr int32_t codes[] = {77, -5, NY_INVALID_ARGUMENT, NY_UNEXPECTED, NY_OUT_OF_MEMORY, NY_FUNCTION_MISSING};

constexpr ny_sim_register_call registerCalls[] = {NY_SIM_NO_CALL, NY_SIM_ON_SAME_THREAD, NY_SIM_ON_OTHER_THREAD};

// A client that the agent does not let go of keeps its registrations for good: nothing about them would be certain
// any more.
constexpr std::string_view neverRefused = "ny_client_handler_release";

// A call that the agent makes late, waited for at the latest when the object ends.
class LateCall {
public:
    LateCall(ny_sim_callback callback, const std::string& id, size_t index, bool hasBeenUnregistered)
        : productId(id),
          isUnregistered(hasBeenUnregistered),
          isMade(ny_sim_call_late(callback, id.c_str(), index, &call) == NY_OK) {}
    ~LateCall() { ny_sim_late_call_release(call); }
    LateCall(const LateCall&) = delete;
    LateCall& operator=(const LateCall&) = delete;

    // Returns when it is answered.
    int32_t Answer() const {
        int32_t answer = NY_UNEXPECTED;
        if (isMade) {
            EXPECT_EQ(ny_sim_late_call_wait(call, static_cast<uint32_t>(soon.count()), &answer), NY_OK);
        }
        return answer;
    }

    const std::string productId;
    // When the call was made.
    const bool isUnregistered;

private:
    ny_sim_late_call_t* call = nullptr;
    const bool isMade;
};

}  // namespace

Hostility::Hostility(uint64_t seed, const HostileKinds& whatToDo, Conductor& conductorToUse)
    : random(seed), kinds(whatToDo), conductor(conductorToUse), operationsLeft(calmTime) {
    ForgetRegistrations();
}

void Hostility::Act() {
    if (!kinds.Any()) {
        return;
    }
    if (--operationsLeft == 0) {
        Trouble::IsOn() ? End() : Begin();
    } else if (Trouble::IsOn()) {
        DoSomething();
    }
}

void Hostility::Begin() {
    operationsLeft = troubledTime;
    Trouble::Begin();
    ++troubles;
    current = {.errors = IsChosen(kinds.errors),
               .lateCalls = IsChosen(kinds.lateCalls),
               .callsInRegister = IsChosen(kinds.callsInRegister),
               .lostFiles = IsChosen(kinds.lostFiles)};
    ny_sim_set_impatient(current.lateCalls && random.OneIn(2) ? 1 : 0);
    ny_sim_set_one_lock(current.callsInRegister && random.OneIn(2) ? 1 : 0);
}

void Hostility::End() {
    operationsLeft = calmTime;
    if (!Trouble::IsOn()) {
        return;
    }
    ny_sim_clear_faults();
    for (const ny_sim_callback callback : allCallbacks) {
        ny_sim_call_in_register(callback, NY_SIM_NO_CALL);
    }
    ny_sim_set_one_lock(0);
    ny_sim_set_impatient(0);
    ForgetRegistrations();
    conductor.EndTrouble();
}

void Hostility::ForgetRegistrations() const {
    ny_sim_set_remember(0);
    ny_sim_set_remember(kinds.lateCalls ? 1 : 0);
}

void Hostility::DoSomething() {
    if (current.errors && random.OneIn(2)) {
        AnswerErrors();
    }
    if (current.lateCalls) {
        CallLate();
    }
    if (current.callsInRegister && random.OneIn(2)) {
        CallInsideRegister();
    }
    if (current.lostFiles && random.OneIn(6)) {
        ++losses;
        conductor.LoseAgent();
    }
}

void Hostility::AnswerErrors() {
    const std::string_view function = AnyOf(simulator::simulatedFunctions);
    const auto mode = random.OneIn(3) ? NY_SIM_FROM_THEN_ON : NY_SIM_ONCE;
    const uint32_t nth = random.Below(20) + 1;
    const int32_t code = AnyOf(codes);
    if (function != neverRefused) {
        ++faults;
        EXPECT_EQ(ny_sim_fail_call(function.data(), nth, code, mode), NY_OK);
    }
}

// Several at once. A product that is out has nothing that could be called once the agent has unregistered it. An agent
// that refused to, or that could not be asked because it had changed, may call until its client is let go of. What a
// later client registers may have the same callback data: nothing is certain any more once one was started, before the
// call or while it was made, nor while the agent changes.
void Hostility::CallLate() {
    const std::vector<std::string> ids = AllProductIds();
    std::list<LateCall> calls;
    for (unsigned count = random.Below(4); count > 0; --count) {
        const ny_sim_callback callback = AnyOf(allCallbacks);
        const std::string& id = ids[random.Below(static_cast<uint32_t>(ids.size()))];
        const uint32_t choice = random.Below(1000);
        const size_t remembered = ny_sim_remembered_count(callback, id.c_str());
        if (remembered != 0) {
            ++lateCalls;
            const bool isUnregistered = !current.lostFiles && conductor.IsSettled() &&
                                        ny_sim_unregistered_count(callback, id.c_str()) == remembered;
            calls.emplace_back(callback, id, choice % remembered, isUnregistered);
        }
    }
    for (const LateCall& call : calls) {
        const int32_t answer = call.Answer();
        if (call.isUnregistered && conductor.HasLeft(call.productId)) {
            ++refusals;
            EXPECT_EQ(answer, NY_UNEXPECTED) << "of a late call of " << call.productId;
        }
    }
}

void Hostility::CallInsideRegister() {
    const ny_sim_callback callback = AnyOf(allCallbacks);
    EXPECT_EQ(ny_sim_call_in_register(callback, AnyOf(registerCalls)), NY_OK);
}

std::string Hostility::Summary() const {
    return std::to_string(troubles) + " times of trouble: " + std::to_string(faults) + " faults, " +
           std::to_string(lateCalls) + " late calls (" + std::to_string(refusals) + " to be refused), " +
           std::to_string(ny_sim_register_call_count()) + " calls inside register, " + std::to_string(losses) +
           " losses of all files, " + std::to_string(conductor.Left().Of(NY_SIM_ANY)) + " handles not taken back";
}
