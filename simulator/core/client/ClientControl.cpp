// Control functions: clients and what the agent does to all of them.
#include <algorithm>
#include <cstddef>
#include <iterator>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "ny_simulator.h"
#include "simulator/core/client/Client.h"
#include "simulator/core/client/ClientTable.h"
#include "simulator/core/frame/Guarded.h"
#include "simulator/core/threads/AgentThread.h"
#include "simulator/core/threads/Signal.h"

using namespace simulator;

namespace {

void Log(Client& client, uint32_t severity, const char* module, const char* message) {
    const LogCallback callback = client.Settings().logCallback;
    if (const CallbackPass pass(client.logGate); pass && callback.call != nullptr) {
        callback.call(severity, module, message, callback.userData);
    }
}

// The ids of all products that are registered with any client for anything.
std::set<std::string> RegisteredProducts() {
    std::set<std::string> products;
    // A name may have a task's type behind a zero.
    const auto add = [&](const std::string& name) { products.insert(name.c_str()); };
    for (const auto& client : TheClients().All()) {
        client->propertyProviders.ForEachName(add);
        client->policyCallbacks.ForEachName(add);
        client->updaters.ForEachName(add);
        client->taskHandlers.ForEachName(add);
    }
    return products;
}

// The same text, valid until the process ends.
const char* Keep(const std::string& text) {
    static std::mutex& mutex = *new std::mutex;
    static std::set<std::string>& texts = *new std::set<std::string>;
    const std::lock_guard lock(mutex);
    return texts.insert(text).first->c_str();
}

}  // namespace

size_t ny_sim_started_clients(void) {
    const auto clients = TheClients().All();
    return static_cast<size_t>(
        std::count_if(clients.begin(), clients.end(), [](const auto& client) { return client->started.load(); }));
}

int32_t ny_sim_get_product(size_t index, const char** productId) {
    return Guarded("ny_sim_get_product", [&] {
        const std::set<std::string> products = RegisteredProducts();
        Require(productId != nullptr && index < products.size());
        *productId = Keep(*std::next(products.begin(), static_cast<std::ptrdiff_t>(index)));
    });
}

int32_t ny_sim_emit_log(uint32_t severity, const char* module, const char* message) {
    return Guarded("ny_sim_emit_log", [&] {
        Require(module != nullptr && message != nullptr);
        auto clients = TheClients().All();
        std::erase_if(clients, [](const auto& client) { return client->Settings().logCallback.call == nullptr; });
        if (clients.empty()) {
            throw Failure{NY_SIM_NOT_REGISTERED};
        }
        const auto done = std::make_shared<Signal>();
        StartAgentThread([=] {
            for (const auto& client : clients) {
                Log(*client, severity, module, message);
            }
            done->Set();
        });
        done->Wait();
    });
}
