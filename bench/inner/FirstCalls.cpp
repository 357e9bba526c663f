// The first call of a group: the agent's folder looked up, the library opened, all names resolved.
#include "bench/floor/AgentPointers.h"
#include "bench/floor/FloorAgent.h"
#include "bench/harness/Module.h"
#include "bench/harness/Stage.h"
#include "bench/inner/Measurements.h"
#include "dispatcher/Dispatcher.h"
#include "dispatcher/groups/BufferGroup.h"
#include "dispatcher/groups/ClientHandlerGroup.h"
#include "dispatcher/groups/CryptoGroup.h"
#include "dispatcher/groups/InfoGroup.h"
#include "dispatcher/groups/LoggerGroup.h"
#include "dispatcher/groups/MsgbusGroup.h"
#include "dispatcher/groups/PolicyGroup.h"
#include "dispatcher/groups/PropertyGroup.h"
#include "dispatcher/groups/SchedulerGroup.h"
#include "dispatcher/groups/UpdaterGroup.h"
#include "dispatcher/groups/VariantGroup.h"

using namespace bridge;

namespace bench {

namespace {

// A group with one call that makes it load.
struct LoadedGroup {
    const Group* group;
    void (*call)();
};

const LoadedGroup groups[] = {
    {&variantGroup, [] { agent::ny_variant_release(nullptr); }},
    {&bufferGroup, [] { agent::ny_buffer_release(nullptr); }},
    {&clientHandlerGroup, [] { agent::ny_client_handler_stop(nullptr); }},
    {&propertyGroup, [] { agent::ny_property_bag_add_property(nullptr, "", "", nullptr); }},
    {&policyGroup, [] { agent::ny_policy_uri_release(nullptr); }},
    {&schedulerGroup, [] { agent::ny_scheduler_update_task_status(nullptr, "", 0); }},
    {&updaterGroup, [] { agent::ny_updater_unregister_callbacks(nullptr, ""); }},
    {&cryptoGroup, [] { agent::ny_crypto_hash_data_by_type(nullptr, 0, nullptr, 0, nullptr); }},
    {&infoGroup,
     [] {
         ny_variant_t* variant = nullptr;
         agent::ny_info_get(nullptr, "", &variant);
     }},
    {&msgbusGroup, [] { agent::ny_msgbus_disable_watcher(nullptr); }},
    {&loggerGroup, [] { agent::ny_log(nullptr, 0, "", "", 0, "", ""); }},
};

constexpr const char* libraries[] = {"ny_variant.dll", "ny_client.dll", "ny_msgbus.dll", "ny_logger.dll"};

double FirstCallsOfOurs(size_t count, size_t howMany) {
    double seconds = 0;
    for (size_t i = 0; i < count; ++i) {
        seconds += SecondsOf([&] {
            for (size_t group = 0; group < howMany; ++group) {
                groups[group].call();
            }
        });
        for (const char* library : libraries) {
            DispatcherUnload(agentSoftwareId, library);
        }
        if (groups[0].group->table.load() != nullptr) {
            throw std::runtime_error("a library was not closed");
        }
    }
    return seconds;
}

// By hand: each library opened once, each name of each group looked up. The calls themselves, which take nanoseconds,
// are left out. `findFolder` says where the libraries are.
template <class FindFolder>
double FirstCallsByHand(size_t count, size_t howMany, FindFolder findFolder) {
    double seconds = 0;
    for (size_t i = 0; i < count; ++i) {
        HMODULE opened[std::size(libraries)] = {};
        seconds += SecondsOf([&] {
            const std::filesystem::path folder = findFolder();
            void* addresses[128] = {};
            for (size_t group = 0; group < howMany; ++group) {
                const Group& wanted = *groups[group].group;
                size_t library = 0;
                while (std::string_view(libraries[library]) != wanted.library) {
                    ++library;
                }
                if (opened[library] == nullptr) {
                    opened[library] = LoadedLibrary((folder / libraries[library]).string());
                }
                for (size_t name = 0; name < wanted.count; ++name) {
                    addresses[name] = reinterpret_cast<void*>(::GetProcAddress(opened[library], wanted.names[name]));
                }
                if (addresses[0] == nullptr) {
                    throw std::runtime_error("a name was not found");
                }
            }
        });
        for (const HMODULE library : opened) {
            if (library != nullptr) {
                ::FreeLibrary(library);
            }
        }
    }
    return seconds;
}

}  // namespace

void MeasureFirstCalls(Session& session) {
    const Stage stage;
    // The bridge as it is in a product's process, its log included, and so far without an agent.
    simulator::AgentInstaller::DeleteVersion();
    const Entered entered(0);
    const std::filesystem::path folder = stage.Folder();
    for (const size_t howMany : {size_t{1}, std::size(groups)}) {
        session.Race(
            {"first call",
             howMany == 1 ? "one group of 66 names" : "all 11 groups",
             0,
             1,
             {{"ours", [=](size_t count) { return FirstCallsOfOurs(count, howMany); }},
              {"by hand", [=](size_t count) { return FirstCallsByHand(count, howMany, [=] { return folder; }); }},
              {"by hand, found in the registry",
               [=](size_t count) { return FirstCallsByHand(count, howMany, RegisteredFolder); }}},
             1.3});
    }
}

}  // namespace bench
