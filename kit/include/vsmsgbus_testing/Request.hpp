/// @file
/// A request of the agent's that is under way. Used by Machine.hpp alone.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "ny_simulator.h"

namespace vsmsgbus::testing::detail {

/// Requests that were not answered in time. To release one waits for its answer, so that is only tried here, at the
/// end.
class UnansweredRequests {
public:
    UnansweredRequests() = default;
    ~UnansweredRequests() {
        for (const auto& releaseIfAnswered : all) {
            releaseIfAnswered();
        }
    }
    UnansweredRequests(const UnansweredRequests&) = delete;
    UnansweredRequests& operator=(const UnansweredRequests&) = delete;

    void Add(std::function<void()> releaseIfAnswered) { all.push_back(std::move(releaseIfAnswered)); }

private:
    std::vector<std::function<void()>> all;
};

/// Owns a request until it is answered, or for ever when the product never answers.
/// `Wait(handle, milliseconds, outs...)` and `Release(handle)` are those of ny_simulator.h.
template <class Handle, auto Wait, auto Release>
class Request {
public:
    explicit Request(UnansweredRequests& unanswered) : others(unanswered) {}
    ~Request() {
        if (isAnswered) {
            Release(handle);
        }
    }
    Request(const Request&) = delete;
    Request& operator=(const Request&) = delete;

    /// Where a ny_sim_request function puts it.
    Handle** Out() { return &handle; }
    Handle* Get() const { return handle; }

    /// Waits for the answer, which goes to `outs`. False when it has not come in time; the request is then kept among
    /// the unanswered ones.
    template <class... Out>
    bool IsAnsweredWithin(std::chrono::milliseconds limit, Out*... outs) {
        const auto milliseconds = static_cast<uint32_t>(limit.count() < 0 ? 0 : limit.count());
        isAnswered = Wait(handle, milliseconds, outs...) == NY_OK;
        if (!isAnswered) {
            others.Add([late = handle] {
                if (Wait(late, 0, static_cast<Out*>(nullptr)...) == NY_OK) {
                    Release(late);
                }
            });
        }
        return isAnswered;
    }

private:
    UnansweredRequests& others;
    Handle* handle = nullptr;
    bool isAnswered = false;
};

using PropertyRequest =
    Request<ny_sim_property_request_t, &ny_sim_property_request_wait, &ny_sim_property_request_release>;
using PolicyRequest = Request<ny_sim_policy_request_t, &ny_sim_policy_request_wait, &ny_sim_policy_request_release>;
using TaskRequest = Request<ny_sim_task_request_t, &ny_sim_task_request_wait, &ny_sim_task_request_release>;
using UpdaterRequest = Request<ny_sim_updater_request_t, &ny_sim_updater_request_wait, &ny_sim_updater_request_release>;

}  // namespace vsmsgbus::testing::detail
