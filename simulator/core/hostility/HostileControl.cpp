// Control functions: they have the agent do what no agent should.
#include "ny_simulator.h"
#include "simulator/core/frame/Guarded.h"
#include "simulator/core/hostility/Hostility.h"
#include "simulator/core/threads/AgentLock.h"
#include "simulator/core/threads/AgentThread.h"
#include "simulator/core/threads/CallbackGate.h"
#include "simulator/core/threads/Signal.h"

namespace simulator {

// The agent thread's share in a late call.
struct LateCall {
    std::function<int32_t()> call;
    int32_t answer = NY_OK;  // once it is answered
    Signal answered;

    void Run() {
        answer = call();
        answered.Set();
    }
};

}  // namespace simulator

using namespace simulator;

namespace {

// 0 for a null product and for an unknown callback.
size_t Count(const char* function, size_t (RememberedRegistrations::*count)(ny_sim_callback, std::string_view) const,
             ny_sim_callback callback, const char* productId) {
    size_t counted = 0;
    Guarded(function, [&] {
        Require(productId != nullptr);
        counted = (TheHostility().remembered.*count)(callback, productId);
    });
    return counted;
}

}  // namespace

struct ny_sim_late_call {
    std::shared_ptr<LateCall> call;
    uint32_t threadId = 0;
};

void ny_sim_set_one_lock(int32_t on) {
    TheAgentLock().Switch(on != 0);
}

void ny_sim_set_impatient(int32_t on) {
    CallbackGate::SetImpatient(on != 0);
}

int32_t ny_sim_call_in_register(ny_sim_callback callback, ny_sim_register_call mode) {
    return Guarded("ny_sim_call_in_register", [&] { TheHostility().registerCalls.Set(callback, mode); });
}

size_t ny_sim_register_call_count(void) {
    return TheHostility().registerCalls.Count();
}

int32_t ny_sim_register_call_answer(size_t index, int32_t* answer) {
    return Guarded("ny_sim_register_call_answer", [&] {
        const auto given = TheHostility().registerCalls.AnswerAt(index);
        Require(given && answer != nullptr);
        *answer = *given;
    });
}

void ny_sim_set_remember(int32_t on) {
    TheHostility().remembered.Switch(on != 0);
}

size_t ny_sim_remembered_count(ny_sim_callback callback, const char* productId) {
    return Count("ny_sim_remembered_count", &RememberedRegistrations::Count, callback, productId);
}

size_t ny_sim_unregistered_count(ny_sim_callback callback, const char* productId) {
    return Count("ny_sim_unregistered_count", &RememberedRegistrations::CountUnregistered, callback, productId);
}

int32_t ny_sim_call_late(ny_sim_callback callback, const char* productId, size_t index, ny_sim_late_call_t** out) {
    return Guarded("ny_sim_call_late", [&] {
        Require(productId != nullptr && out != nullptr);
        auto handle = std::make_unique<ny_sim_late_call_t>();
        handle->call = std::make_shared<LateCall>();
        handle->call->call = TheHostility().remembered.MakeCall(callback, productId, index);
        handle->threadId = StartAgentThread([call = handle->call] { call->Run(); });
        *out = handle.release();
    });
}

int32_t ny_sim_late_call_wait(ny_sim_late_call_t* call, uint32_t milliseconds, int32_t* answer) {
    return Guarded("ny_sim_late_call_wait", [&] {
        Require(call != nullptr);
        if (!call->call->answered.WaitFor(std::chrono::milliseconds(milliseconds))) {
            throw Failure{NY_SIM_TIMEOUT};
        }
        if (answer != nullptr) {
            *answer = call->call->answer;
        }
    });
}

uint32_t ny_sim_late_call_thread(ny_sim_late_call_t* call) {
    return call == nullptr ? 0 : call->threadId;
}

void ny_sim_late_call_release(ny_sim_late_call_t* call) {
    if (call != nullptr) {
        call->call->answered.Wait();
        delete call;
    }
}
