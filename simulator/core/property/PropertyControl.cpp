// Control functions: property requests.
#include <algorithm>

#include "ny_simulator.h"
#include "simulator/core/client/ClientTable.h"
#include "simulator/core/frame/Guarded.h"
#include "simulator/core/property/PropertyRequest.h"
#include "simulator/core/threads/AgentThread.h"

using namespace simulator;

// The caller's share in a request; the agent thread has another.
struct ny_sim_property_request {
    std::shared_ptr<PropertyRequest> request;
    uint32_t threadId = 0;
};

namespace {

// Null when no client has a provider of that product.
std::shared_ptr<PropertyRequest> FindProvider(const char* productId) {
    for (const auto& client : TheClients().All()) {
        if (auto provider = client->propertyProviders.Find(productId)) {
            return std::make_shared<PropertyRequest>(client, std::move(provider));
        }
    }
    return nullptr;
}

bool IsAnswered(const ny_sim_property_request_t* handle) {
    return handle != nullptr && handle->request->AnsweredSignal().IsSet();
}

}  // namespace

int32_t ny_sim_has_property_provider(const char* productId) {
    if (productId == nullptr) {
        return 0;
    }
    const auto clients = TheClients().All();
    return std::any_of(clients.begin(), clients.end(),
                       [productId](const auto& client) { return client->propertyProviders.Find(productId) != nullptr; })
               ? 1
               : 0;
}

int32_t ny_sim_request_properties(const char* productId, ny_sim_property_request_t** out) {
    return Guarded("ny_sim_request_properties", [&] {
        Require(productId != nullptr && out != nullptr);
        auto handle = std::make_unique<ny_sim_property_request_t>();
        const auto request = FindProvider(productId);
        if (request == nullptr) {
            throw Failure{NY_SIM_NOT_REGISTERED};
        }
        handle->request = request;
        handle->threadId = StartAgentThread([request] { request->Run(); });
        *out = handle.release();
    });
}

int32_t ny_sim_property_request_wait(ny_sim_property_request_t* request, uint32_t milliseconds, int32_t* answer) {
    return Guarded("ny_sim_property_request_wait", [&] {
        Require(request != nullptr);
        if (!request->request->AnsweredSignal().WaitFor(std::chrono::milliseconds(milliseconds))) {
            throw Failure{NY_SIM_TIMEOUT};
        }
        if (answer != nullptr) {
            *answer = request->request->Answer();
        }
    });
}

size_t ny_sim_property_request_size(ny_sim_property_request_t* request) {
    return IsAnswered(request) ? request->request->Properties().size() : 0;
}

int32_t ny_sim_property_request_get(ny_sim_property_request_t* request, size_t index, const char** path,
                                    const char** name, const char** value) {
    return Guarded("ny_sim_property_request_get", [&] {
        Require(path != nullptr && name != nullptr && value != nullptr);
        Require(IsAnswered(request) && index < request->request->Properties().size());
        const Property& property = request->request->Properties()[index];
        const char* const text = TextOf(*property.value).Narrow().c_str();
        *path = property.path.c_str();
        *name = property.name.c_str();
        *value = text;
    });
}

uint32_t ny_sim_property_request_thread(ny_sim_property_request_t* request) {
    return request == nullptr ? 0 : request->threadId;
}

void ny_sim_property_request_release(ny_sim_property_request_t* request) {
    if (request != nullptr) {
        request->request->AnsweredSignal().Wait();
        delete request;
    }
}
