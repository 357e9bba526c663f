#pragma once

#include <functional>
#include <utility>

#include "ny_simulator.h"
#include "tool/play/player/Request.h"
#include "tool/play/player/Stage.h"

namespace tool::play {

// A request of the agent's. `Wait(handle, milliseconds, outs...)`, `ThreadOf(handle)` and `Release(handle)` are those
// of ny_simulator.h; `Outs` are what Wait writes.
template <class Handle, auto Wait, auto ThreadOf, auto Release, class... Outs>
class AgentRequest : public Request {
public:
    // Looks at the answer, which it gets as the handle and the values that Wait wrote.
    using Judge = std::function<void(Stage& stage, const nlohmann::json& step, Handle* handle, Outs... outs)>;

    AgentRequest(Handle* requestHandle, Judge requestJudge) : handle(requestHandle), judge(std::move(requestJudge)) {}
    ~AgentRequest() override {
        if (isAnswered) {
            Release(handle);
        }
    }

    uint32_t Thread() const override { return ThreadOf(handle); }
    bool IsAnsweredWithin(std::chrono::milliseconds limit) override {
        isAnswered = Wait(handle, static_cast<uint32_t>(limit.count()), static_cast<Outs*>(nullptr)...) == NY_OK;
        return isAnswered;
    }
    void Look(Stage& stage, const nlohmann::json& step) override {
        std::tuple<Outs...> outs{};
        std::apply([&](auto&... out) { Wait(handle, 0, &out...); }, outs);
        std::apply([&](auto... out) { judge(stage, step, handle, out...); }, outs);
    }

private:
    Handle* const handle;
    const Judge judge;
    bool isAnswered = false;
};

using PropertyRequest = AgentRequest<ny_sim_property_request_t, &ny_sim_property_request_wait,
                                     &ny_sim_property_request_thread, &ny_sim_property_request_release, int32_t>;
using PolicyRequest = AgentRequest<ny_sim_policy_request_t, &ny_sim_policy_request_wait, &ny_sim_policy_request_thread,
                                   &ny_sim_policy_request_release, int32_t>;
using TaskRequest = AgentRequest<ny_sim_task_request_t, &ny_sim_task_request_wait, &ny_sim_task_request_thread,
                                 &ny_sim_task_request_release, int32_t>;
using UpdaterRequest = AgentRequest<ny_sim_updater_request_t, &ny_sim_updater_request_wait,
                                    &ny_sim_updater_request_thread, &ny_sim_updater_request_release, int32_t, int32_t>;

}  // namespace tool::play
