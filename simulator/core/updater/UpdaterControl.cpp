// Control functions: the updater's calls.
#include <algorithm>

#include "ny_simulator.h"
#include "simulator/core/client/ClientTable.h"
#include "simulator/core/frame/Guarded.h"
#include "simulator/core/threads/AgentThread.h"
#include "simulator/core/updater/UpdaterRequest.h"

using namespace simulator;

// The caller's share in a request; the agent thread has another.
struct ny_sim_updater_request {
    std::shared_ptr<UpdaterRequest> request;
    uint32_t threadId = 0;
};

namespace {

// Null when no client has callbacks of that product.
std::shared_ptr<UpdaterRequest> FindUpdater(UpdaterCall call) {
    for (const auto& client : TheClients().All()) {
        if (auto updater = client->updaters.Find(call.product)) {
            return std::make_shared<UpdaterRequest>(std::move(call), client, std::move(updater));
        }
    }
    return nullptr;
}

}  // namespace

int32_t ny_sim_has_updater(const char* productId) {
    if (productId == nullptr) {
        return 0;
    }
    const auto clients = TheClients().All();
    return std::any_of(clients.begin(), clients.end(),
                       [productId](const auto& client) { return client->updaters.Find(productId) != nullptr; })
               ? 1
               : 0;
}

int32_t ny_sim_request_update(const char* json, ny_sim_updater_request_t** out) {
    return Guarded("ny_sim_request_update", [&] {
        Require(json != nullptr && out != nullptr);
        auto handle = std::make_unique<ny_sim_updater_request_t>();
        const auto request = FindUpdater(UpdaterCallFromJson(json));
        if (request == nullptr) {
            throw Failure{NY_SIM_NOT_REGISTERED};
        }
        handle->request = request;
        handle->threadId = StartAgentThread([request] { request->Run(); });
        *out = handle.release();
    });
}

int32_t ny_sim_updater_request_wait(ny_sim_updater_request_t* request, uint32_t milliseconds, int32_t* answer,
                                    int32_t* result) {
    return Guarded("ny_sim_updater_request_wait", [&] {
        Require(request != nullptr);
        const UpdaterRequest& asked = *request->request;
        if (!asked.AnsweredSignal().WaitFor(std::chrono::milliseconds(milliseconds))) {
            throw Failure{NY_SIM_TIMEOUT};
        }
        if (answer != nullptr) {
            *answer = asked.Answer();
        }
        if (result != nullptr) {
            *result = asked.Result();
        }
    });
}

int32_t ny_sim_updater_request_value(ny_sim_updater_request_t* request, const char** text, size_t* length) {
    return Guarded("ny_sim_updater_request_value", [&] {
        Require(request != nullptr && text != nullptr && length != nullptr);
        Require(request->request->AnsweredSignal().IsSet() && request->request->Value().has_value());
        *text = request->request->Value()->c_str();
        *length = request->request->Value()->size();
    });
}

uint32_t ny_sim_updater_request_thread(ny_sim_updater_request_t* request) {
    return request == nullptr ? 0 : request->threadId;
}

void ny_sim_updater_request_release(ny_sim_updater_request_t* request) {
    if (request != nullptr) {
        request->request->AnsweredSignal().Wait();
        delete request;
    }
}
