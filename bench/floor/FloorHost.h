// A host without the bridge: what the bridge does for it, in the least code that does the job.
#pragma once

#include <windows.h>

#include <filesystem>
#include <mutex>
#include <string>
#include <unordered_set>

#include "VsMsgbus/CollectProperties.h"
#include "agent/ny_agent.h"
#include "bench/floor/FloorTable.h"

namespace bench {

// Opens the agent where the registry says that it is, registers its products for properties, and follows the agent from
// a thread of its own, which watches the agent's key: that must be there. One at a time. What fails throws
// std::runtime_error, on the thread that watches without a way out.
class FloorHost {
public:
    // Opens the agent, if there is one, on the calling thread, and then starts the one that watches.
    FloorHost();
    // Ends that thread, then the agent's client, and closes the agent's libraries.
    ~FloorHost();
    FloorHost(const FloorHost&) = delete;
    FloorHost& operator=(const FloorHost&) = delete;

    void Enter(const char* productId);
    void Leave(const char* productId);

    // For the agent's requests; before there are any.
    void SetModule(const wchar_t* productId, VsKitMsgbus::INYCollectProperties& module) {
        modules.Set(productId, module);
    }

private:
    static DWORD WINAPI RunWatch(void* host);
    static int32_t Provide(ny_client_t* client, const char* productId, ny_property_bag_t* bag, void* host);

    void Watch();
    // Reads the version: opens the agent anew when it is another one, closes it when there is none.
    void Follow();
    void Open();
    void Close();
    void OpenTexts();

    HKEY key = nullptr;
    HANDLE change = nullptr;
    HANDLE stop = nullptr;
    HANDLE thread = nullptr;

    std::mutex mutex;  // of all below
    std::unordered_set<std::string> products;
    std::string version;
    std::filesystem::path folder;
    HMODULE library = nullptr;  // null without an agent
    HMODULE texts = nullptr;    // null until the first request
    ny_client_t* client = nullptr;
    ny_msgbus_t* bus = nullptr;

    FloorTable<VsKitMsgbus::INYCollectProperties> modules;
};

}  // namespace bench
