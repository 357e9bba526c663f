// The fuzzed agent's client handler, what is registered with it, and the services that modules ask for.
#include "fuzz/FuzzedAgent.h"

namespace {

constexpr size_t largestResult = 4096;

// Registers one product. The bridge never registers one twice.
template <class Registrations, class Callback>
int32_t Register(ny_client_t* client, const char* productId, Registrations ny_client::*table, const Callback& callback,
                 void* userData) {
    return Answer([&](FuzzedAgent& agent) {
        agent.handles.Require(client);
        if (!(client->*table).try_emplace(productId, typename Registrations::mapped_type{callback, userData}).second) {
            Found("a product that is registered twice");
        }
    });
}

template <class Registrations>
int32_t Unregister(ny_client_t* client, const char* productId, Registrations ny_client::*table) {
    return Answer([&](FuzzedAgent& agent) {
        agent.handles.Require(client);
        if ((client->*table).erase(productId) == 0) {
            Found("a product that is taken back without having been registered");
        }
    });
}

int32_t Transform(ny_client_t* client, const unsigned char* data, uint32_t size, ny_buffer_t** buffer) {
    return Answer([=](FuzzedAgent& agent) {
        agent.handles.Require(client);
        agent.handles.Require(*buffer);
        Touch(data, size);
        if (agent.input.Often()) {
            agent.handles.Release(*buffer);
            *buffer = nullptr;
            Give(agent, std::make_unique<ny_buffer>(), buffer);
        }
        if (*buffer != nullptr) {
            (*buffer)->bytes.assign(agent.input.Number(2) % largestResult + 1, agent.input.Byte());
        }
    });
}

}  // namespace

int32_t ny_client_handler_create(const char* productId, ny_client_t** out) {
    return Answer([=](FuzzedAgent& agent) {
        Touch(productId);
        auto created = std::make_unique<ny_client>();
        created->bus = agent.handles.Lend(std::make_unique<ny_msgbus>());
        agent.client = agent.handles.Own(std::move(created));
        *out = agent.client;
    });
}

int32_t ny_client_handler_start(ny_client_t* client) {
    return Answer([=](FuzzedAgent& agent) { agent.handles.Require(client); });
}

int32_t ny_client_handler_stop(ny_client_t* client) {
    return Answer([=](FuzzedAgent& agent) { agent.handles.Require(client); });
}

// Always lets go: what becomes of a client that is not let go of stays until the process ends.
int32_t ny_client_handler_release(ny_client_t* client) {
    FuzzedAgent& agent = FuzzedAgent::Current();
    if (client == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    agent.handles.Require(client);
    agent.handles.EndLoan(client->bus);
    agent.handles.Release(client);
    agent.client = nullptr;
    return NY_OK;
}

int32_t ny_client_handler_set_thread_option(ny_client_t* client, uint32_t /*option*/) {
    return ny_client_handler_start(client);
}

int32_t ny_client_handler_set_logger_callback(ny_client_t* client, ny_log_callback_t callback, void* userData) {
    return Answer([=](FuzzedAgent& agent) {
        agent.handles.Require(client);
        client->log = {callback, userData};
    });
}

int32_t ny_client_handler_set_msgbus_passphrase_callback(ny_client_t* client, ny_passphrase_callback_t /*callback*/,
                                                         void* /*userData*/) {
    return ny_client_handler_start(client);
}

int32_t ny_client_handler_get_msgbus(ny_client_t* client, ny_msgbus_t** out) {
    return Answer([=](FuzzedAgent& agent) {
        agent.handles.Require(client);
        *out = agent.input.Rarely() ? nullptr : client->bus;
    });
}

int32_t ny_msgbus_get_version(uint32_t* out) {
    return Answer([=](FuzzedAgent& agent) { *out = static_cast<uint32_t>(agent.input.Number()); });
}

int32_t ny_msgbus_disable_watcher(ny_msgbus_t* bus) {
    return Answer([=](FuzzedAgent& agent) { agent.handles.Require(bus); });
}

int32_t ny_property_register_provider_callback(ny_client_t* client, const char* productId,
                                               ny_property_provider_t provider, void* callbackData) {
    return Register(client, productId, &ny_client::properties, provider, callbackData);
}

int32_t ny_property_unregister_provider_callback(ny_client_t* client, const char* productId) {
    return Unregister(client, productId, &ny_client::properties);
}

int32_t ny_property_bag_add_property(ny_property_bag_t* bag, const char* path, const char* name, ny_variant_t* value) {
    return Answer([=](FuzzedAgent& agent) {
        agent.handles.Require(bag);
        agent.handles.Require(value);
        Touch(path);
        Touch(name);
    });
}

int32_t ny_policy_register_notification_callback(ny_client_t* client, const char* productId, uint32_t /*mask*/,
                                                 ny_policy_callback_t callback, void* callbackData) {
    return Register(client, productId, &ny_client::policies, callback, callbackData);
}

int32_t ny_policy_unregister_notification_callback(ny_client_t* client, const char* productId) {
    return Unregister(client, productId, &ny_client::policies);
}

int32_t ny_scheduler_register_task_callbacks(ny_client_t* client, const char* productId, const char* taskType,
                                             const ny_task_callbacks_t* callbacks, void* userData) {
    Touch(taskType);
    return Register(client, productId, &ny_client::tasks, *callbacks, userData);
}

int32_t ny_scheduler_unregister_task_callbacks(ny_client_t* client, const char* productId, const char* taskType) {
    Touch(taskType);
    return Unregister(client, productId, &ny_client::tasks);
}

int32_t ny_scheduler_update_task_status(ny_client_t* client, const char* taskId, int32_t status) {
    return Answer([=](FuzzedAgent& agent) {
        agent.handles.Require(client);
        Touch(taskId);
        if (status != 2 && status != 3 && status != 4 && status != 6) {
            Found("a task status that there is not");
        }
    });
}

int32_t ny_updater_register_callbacks(ny_client_t* client, const char* productId,
                                      const ny_updater_callbacks_t* callbacks, void* userData) {
    return Register(client, productId, &ny_client::updates, *callbacks, userData);
}

int32_t ny_updater_unregister_callbacks(ny_client_t* client, const char* productId) {
    return Unregister(client, productId, &ny_client::updates);
}

int32_t ny_crypto_encrypt_data_by_type(ny_client_t* client, uint64_t /*type*/, const unsigned char* data, uint32_t size,
                                       ny_buffer_t** buffer) {
    return Transform(client, data, size, buffer);
}

int32_t ny_crypto_decrypt_data_by_type(ny_client_t* client, uint64_t /*type*/, const unsigned char* data, uint32_t size,
                                       ny_buffer_t** buffer) {
    return Transform(client, data, size, buffer);
}

int32_t ny_crypto_hash_data_by_type(ny_client_t* client, uint64_t /*type*/, const unsigned char* data, uint32_t size,
                                    ny_buffer_t** buffer) {
    return Transform(client, data, size, buffer);
}

int32_t ny_info_get(ny_client_t* client, const char* key, ny_variant_t** out) {
    return Answer([=](FuzzedAgent& agent) {
        agent.handles.Require(client);
        Touch(key);
        Give(agent, agent.MakeVariant(), out);
    });
}
