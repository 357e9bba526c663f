// Control functions: clients and what the agent does to all of them.
#include <algorithm>
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

}  // namespace

size_t ny_sim_started_clients(void) {
    const auto clients = TheClients().All();
    return static_cast<size_t>(
        std::count_if(clients.begin(), clients.end(), [](const auto& client) { return client->started.load(); }));
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
