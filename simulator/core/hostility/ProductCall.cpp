#include "simulator/core/hostility/ProductCall.h"

#include <optional>
#include <utility>

#include "simulator/core/ny_core.h"
#include "simulator/core/policy/PolicyNotification.h"
#include "simulator/core/property/PropertyRequest.h"
#include "simulator/core/scheduler/TaskRequest.h"
#include "simulator/core/updater/UpdaterRequest.h"

namespace simulator {

namespace {

using PropertyRegistration = RegistrationTable<PropertyProvider>::Pointer;
using PolicyRegistration = RegistrationTable<PolicyCallback>::Pointer;
using TaskRegistration = RegistrationTable<TaskHandler>::Pointer;
using UpdaterRegistration = RegistrationTable<UpdaterCallbacks>::Pointer;
using LogRegistration = RegistrationTable<LogCallback>::Pointer;

constexpr ny_task_methods_t lastingAccessors = {&ny_core_task_get_id, &ny_core_task_get_name, &ny_core_task_get_setting,
                                                &ny_core_task_get_section, &ny_core_task_get_settings};

// The request runs on the thread that calls the function.
template <class Request>
std::function<int32_t()> CallOf(std::shared_ptr<Request> request) {
    return [request = std::move(request)] {
        request->Run();
        return request->Answer();
    };
}

TaskPointer HostileTask(const TaskRegistration& registration) {
    const std::string& key = registration->productId;
    const auto task = std::make_shared<Task>();
    task->id = "hostile";
    task->productId = key.substr(0, key.find('\0'));
    if (const size_t end = key.find('\0'); end != std::string::npos) {
        task->type = key.substr(end + 1);
    }
    task->settings = std::make_shared<Value>(Value{std::make_shared<Table>()});
    return task;
}

TaskRequest::Callback TaskCallbackOf(ny_sim_callback callback) {
    switch (callback) {
        case NY_SIM_CALL_TASK_STOP: return &ny_task_callbacks_t::stop;
        case NY_SIM_CALL_TASK_REMOVE: return &ny_task_callbacks_t::remove;
        case NY_SIM_CALL_TASK_UPDATE_STATUS: return &ny_task_callbacks_t::update_status;
        default: return &ny_task_callbacks_t::execute;
    }
}

UpdaterCall HostileUpdaterCall(ny_sim_callback callback, const std::string& productId) {
    UpdaterCall call;
    call.kind = callback == NY_SIM_CALL_SET_PRODUCT_INFO   ? UpdaterCall::Kind::SetProductInfo
                : callback == NY_SIM_CALL_GET_PRODUCT_INFO ? UpdaterCall::Kind::GetProductInfo
                : callback == NY_SIM_CALL_UPDATE_EVENT     ? UpdaterCall::Kind::Event
                                                           : UpdaterCall::Kind::UpdateNotify;
    call.product = productId;
    call.second = "second";
    call.third = "third";
    call.fourth = "fourth";
    call.key = "key";
    call.value = MakeText(std::string("value"));
    return call;
}

int32_t WriteHostileLine(const LogRegistration& registration) {
    const CallbackPass pass(registration->gate);
    const LogCallback& callback = registration->callbacks;
    return callback.call(3, "hostile", "a line", callback.userData);
}

// One function for each kind of registration.
struct CallMaker {
    std::function<int32_t()> operator()(const PropertyRegistration& registration) const {
        return CallOf(std::make_shared<PropertyRequest>(client, registration));
    }
    std::function<int32_t()> operator()(const PolicyRegistration& registration) const {
        return CallOf(std::make_shared<PolicyNotification>(client, registration, registration->productId));
    }
    std::function<int32_t()> operator()(const TaskRegistration& registration) const {
        return CallOf(
            std::make_shared<TaskRequest>(client, registration, HostileTask(registration), TaskCallbackOf(callback)));
    }
    std::function<int32_t()> operator()(const UpdaterRegistration& registration) const {
        return CallOf(std::make_shared<UpdaterRequest>(HostileUpdaterCall(callback, registration->productId), client,
                                                       registration));
    }
    std::function<int32_t()> operator()(const LogRegistration& registration) const {
        return [registration] { return WriteHostileLine(registration); };
    }

    ny_sim_callback callback;
    std::shared_ptr<Client> client;
};

}  // namespace

bool IsOf(ny_sim_callback callback, const AnyRegistration& registration) {
    switch (callback) {
        case NY_SIM_CALL_PROPERTIES: return std::holds_alternative<PropertyRegistration>(registration);
        case NY_SIM_CALL_POLICY: return std::holds_alternative<PolicyRegistration>(registration);
        case NY_SIM_CALL_TASK_EXECUTE:
        case NY_SIM_CALL_TASK_STOP:
        case NY_SIM_CALL_TASK_REMOVE:
        case NY_SIM_CALL_TASK_UPDATE_STATUS: return std::holds_alternative<TaskRegistration>(registration);
        case NY_SIM_CALL_UPDATE_NOTIFY:
        case NY_SIM_CALL_SET_PRODUCT_INFO:
        case NY_SIM_CALL_GET_PRODUCT_INFO:
        case NY_SIM_CALL_UPDATE_EVENT: return std::holds_alternative<UpdaterRegistration>(registration);
        case NY_SIM_CALL_LOG: return std::holds_alternative<LogRegistration>(registration);
    }
    throw Failure{NY_INVALID_ARGUMENT};
}

std::string ProductOf(const AnyRegistration& registration) {
    const std::string key = std::visit([](const auto& pointer) { return pointer->productId; }, registration);
    // In the key of a TaskHandler the task type follows a zero.
    return key.substr(0, key.find('\0'));
}

bool IsUnregistered(const AnyRegistration& registration) {
    return std::visit([](const auto& pointer) { return pointer->isUnregistered->load(); }, registration);
}

AnyRegistration CopyOf(const AnyRegistration& registration) {
    return std::visit(
        [](const auto& pointer) -> AnyRegistration {
            auto callbacks = pointer->callbacks;
            if constexpr (std::is_same_v<decltype(callbacks), TaskHandler>) {
                callbacks.accessors = lastingAccessors;
            }
            using Copy = typename std::remove_cvref_t<decltype(pointer)>::element_type;
            auto copy = std::make_shared<Copy>(pointer->productId, callbacks);
            copy->isUnregistered = pointer->isUnregistered;
            return copy;
        },
        registration);
}

std::function<int32_t()> MakeProductCall(ny_sim_callback callback, std::shared_ptr<Client> client,
                                         AnyRegistration registration) {
    return std::visit(CallMaker{callback, std::move(client)}, registration);
}

}  // namespace simulator
