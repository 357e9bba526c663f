// An agent that does at one of its functions what the environment's variable PLANTED_AGENT says: "refuse", "crash" or
// "hang", behind a blank the function's name.
#include <windows.h>

#include <string>

#include "agent/ny_agent.h"

extern "C" {
int32_t PlantedCreate(const char* productId, ny_client_t** out);
int32_t PlantedStart(ny_client_t* client);
int32_t PlantedRegister(ny_client_t* client, const char* productId, ny_property_provider_t provider, void* data);
}

namespace {

constexpr int32_t itsOwnCode = 4711;

// Whether the agent is to refuse there.
bool Refuses(const std::string& function) {
    char plan[128] = {};
    ::GetEnvironmentVariableA("PLANTED_AGENT", plan, sizeof plan);
    if (plan == "crash " + function) {
        ::RaiseException(EXCEPTION_ACCESS_VIOLATION, EXCEPTION_NONCONTINUABLE, 0, nullptr);
    } else if (plan == "hang " + function) {
        // Until the process is ended.
        ::WaitForSingleObject(::GetCurrentProcess(), INFINITE);
    }
    return plan == "refuse " + function;
}

}  // namespace

int32_t PlantedCreate(const char* productId, ny_client_t** out) {
    return Refuses("create") ? itsOwnCode : ny_client_handler_create(productId, out);
}

int32_t PlantedStart(ny_client_t* client) {
    return Refuses("start") ? itsOwnCode : ny_client_handler_start(client);
}

int32_t PlantedRegister(ny_client_t* client, const char* productId, ny_property_provider_t provider, void* data) {
    return Refuses("register") ? itsOwnCode : ny_property_register_provider_callback(client, productId, provider, data);
}
