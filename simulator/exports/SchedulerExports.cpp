// ny_client.dll: the scheduler, and the accessors of the task objects that it lends.
#include "ny_agent.h"
#include "simulator/core/ny_core.h"

namespace {

int32_t GetId(ny_task_t* task, const char** id) {
    return ny_core_task_get_id(task, id);
}

int32_t GetName(ny_task_t* task, const char** name) {
    return ny_core_task_get_name(task, name);
}

int32_t GetSetting(ny_task_t* task, const char* section, const char* name, ny_variant_t** out) {
    return ny_core_task_get_setting(task, section, name, out);
}

int32_t GetSection(ny_task_t* task, const char* section, ny_variant_t** out) {
    return ny_core_task_get_section(task, section, out);
}

int32_t GetSettings(ny_task_t* task, ny_variant_t** out) {
    return ny_core_task_get_settings(task, out);
}

constexpr ny_task_methods_t accessors = {&GetId, &GetName, &GetSetting, &GetSection, &GetSettings};

}  // namespace

int32_t ny_scheduler_register_task_callbacks(ny_client_t* client, const char* productId, const char* taskType,
                                             const ny_task_callbacks_t* callbacks, void* userData) {
    return ny_core_scheduler_register_task_callbacks(client, productId, taskType, callbacks, userData, &accessors);
}

int32_t ny_scheduler_unregister_task_callbacks(ny_client_t* client, const char* productId, const char* taskType) {
    return ny_core_scheduler_unregister_task_callbacks(client, productId, taskType);
}

int32_t ny_scheduler_update_task_status(ny_client_t* client, const char* taskId, int32_t status) {
    return ny_core_scheduler_update_task_status(client, taskId, status);
}
