#include "simulator/core/hostility/RegisterCalls.h"

#include <utility>

#include "simulator/core/frame/Failure.h"
#include "simulator/core/threads/AgentLock.h"
#include "simulator/core/threads/AgentThread.h"
#include "simulator/core/threads/Signal.h"

namespace simulator {

namespace {

struct CallOnOtherThread {
    std::function<int32_t()> call;
    int32_t answer = NY_OK;
    Signal done;

    void Run() {
        AgentLock& lock = TheAgentLock();
        lock.Share();
        answer = call();
        lock.EndShare();
        done.Set();
    }
};

int32_t MakeOnOtherThread(std::function<int32_t()> call) {
    const auto other = std::make_shared<CallOnOtherThread>();
    other->call = std::move(call);
    StartAgentThread([other] { other->Run(); });
    other->done.Wait();
    return other->answer;
}

}  // namespace

void RegisterCalls::Set(ny_sim_callback callback, ny_sim_register_call mode) {
    static_cast<void>(IsOf(callback, {}));
    Require(mode == NY_SIM_NO_CALL || mode == NY_SIM_ON_SAME_THREAD || mode == NY_SIM_ON_OTHER_THREAD);
    const std::lock_guard lock(mutex);
    modes[callback] = mode;
}

void RegisterCalls::Make(const std::shared_ptr<Client>& client, const AnyRegistration& registration) {
    for (const auto& [callback, mode] : CurrentModes()) {
        if (mode == NY_SIM_NO_CALL || !IsOf(callback, registration)) {
            continue;
        }
        auto call = MakeProductCall(callback, client, registration);
        const int32_t answer = mode == NY_SIM_ON_SAME_THREAD ? call() : MakeOnOtherThread(std::move(call));
        const std::lock_guard lock(mutex);
        answers.push_back(answer);
    }
}

RegisterCalls::Modes RegisterCalls::CurrentModes() const {
    const std::lock_guard lock(mutex);
    return modes;
}

size_t RegisterCalls::Count() const {
    const std::lock_guard lock(mutex);
    return answers.size();
}

std::optional<int32_t> RegisterCalls::AnswerAt(size_t index) const {
    const std::lock_guard lock(mutex);
    return index < answers.size() ? std::optional(answers[index]) : std::nullopt;
}

void RegisterCalls::Clear() {
    const std::lock_guard lock(mutex);
    modes.clear();
    answers.clear();
}

}  // namespace simulator
