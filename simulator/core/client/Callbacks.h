// The registrations of a product with a client of the agent: its functions, and the data that they are called with.
#pragma once

#include <string>
#include <string_view>

#include "ny_agent.h"

namespace simulator {

struct LogCallback {
    ny_log_callback_t call = nullptr;
    void* userData = nullptr;
};

struct PropertyProvider {
    ny_property_provider_t call = nullptr;
    void* callbackData = nullptr;
};

struct PolicyCallback {
    ny_policy_callback_t call = nullptr;
    void* callbackData = nullptr;
    uint32_t mask = 0;
};

struct UpdaterCallbacks {
    ny_updater_callbacks_t table = {};
    void* userData = nullptr;
};

struct TaskHandler {
    ny_task_callbacks_t callbacks = {};
    void* userData = nullptr;
    ny_task_methods_t accessors = {};  // of the library through which the product registered
};

// The key of a TaskHandler in a client's table. A null type stands for every type.
std::string TaskHandlerKey(std::string_view productId, const char* taskType);

}  // namespace simulator
