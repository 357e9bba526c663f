#include "bench/floor/FloorHost.h"

#include <utility>

#include "bench/bare/BareAgent.h"
#include "bench/floor/AgentPointers.h"
#include "bench/floor/FloorAgent.h"

namespace bench {

namespace {

int32_t TakeLine(uint32_t /*severity*/, const char* /*module*/, const char* /*message*/, void* /*userData*/) {
    return NY_OK;
}

int32_t GivePassphrase(ny_msgbus_t* /*bus*/, unsigned char* /*passphrase*/, size_t* /*size*/, void* /*userData*/) {
    return NY_OK;
}

void RequireSystem(bool isGood) {
    if (!isGood) {
        throw std::runtime_error("a call of the system failed");
    }
}

}  // namespace

FloorHost::FloorHost() {
    RequireSystem(::RegOpenKeyExA(HKEY_LOCAL_MACHINE, R"(Software\Corvane\Agent)", 0, KEY_READ, &key) == ERROR_SUCCESS);
    Follow();
    change = ::CreateEventA(nullptr, FALSE, FALSE, nullptr);
    stop = ::CreateEventA(nullptr, TRUE, FALSE, nullptr);
    thread = ::CreateThread(nullptr, 0, RunWatch, this, 0, nullptr);
    RequireSystem(change != nullptr && stop != nullptr && thread != nullptr);
}

FloorHost::~FloorHost() {
    ::SetEvent(stop);
    ::WaitForSingleObject(thread, INFINITE);
    for (const HANDLE handle : {change, stop, thread}) {
        ::CloseHandle(handle);
    }
    ::RegCloseKey(key);
    Close();
}

void FloorHost::Enter(const char* productId) {
    const std::lock_guard guard(mutex);
    if (products.emplace(productId).second && library != nullptr) {
        Require(pointerTo<&::ny_property_register_provider_callback>(client, productId, Provide, this));
    }
}

void FloorHost::Leave(const char* productId) {
    const std::lock_guard guard(mutex);
    if (products.erase(productId) != 0 && library != nullptr) {
        Require(pointerTo<&::ny_property_unregister_provider_callback>(client, productId));
    }
}

DWORD WINAPI FloorHost::RunWatch(void* host) {
    static_cast<FloorHost*>(host)->Watch();
    return 0;
}

// Asks for the next change before it reads, so that none goes by unseen.
void FloorHost::Watch() {
    const HANDLE events[] = {change, stop};
    do {
        ::RegNotifyChangeKeyValue(key, TRUE, REG_NOTIFY_CHANGE_NAME | REG_NOTIFY_CHANGE_LAST_SET, change, TRUE);
        Follow();
    } while (::WaitForMultipleObjects(2, events, FALSE, INFINITE) == WAIT_OBJECT_0);
}

void FloorHost::Follow() {
    char text[20] = {};
    DWORD size = sizeof text - 1;
    ::RegQueryValueExA(key, "MsgbusVersion", nullptr, nullptr, reinterpret_cast<BYTE*>(text), &size);
    const std::lock_guard guard(mutex);
    if (version != text) {
        Close();
        version = text;
        if (!version.empty()) {
            Open();
        }
    }
}

void FloorHost::Open() {
    folder = RegisteredFolder();
    library = LoadedLibrary((folder / "ny_client.dll").string());
    Resolve<&::ny_client_handler_create, &::ny_client_handler_start, &::ny_client_handler_stop,
            &::ny_client_handler_release, &::ny_client_handler_set_thread_option,
            &::ny_client_handler_set_logger_callback, &::ny_client_handler_set_msgbus_passphrase_callback,
            &::ny_client_handler_get_msgbus, &::ny_property_register_provider_callback,
            &::ny_property_unregister_provider_callback, &::ny_property_bag_add_property>(library);
    Require(pointerTo<&::ny_client_handler_create>(bareProductId, &client));
    Require(pointerTo<&::ny_client_handler_set_msgbus_passphrase_callback>(client, GivePassphrase, nullptr));
    Require(pointerTo<&::ny_client_handler_set_thread_option>(client, 0));
    Require(pointerTo<&::ny_client_handler_set_logger_callback>(client, TakeLine, nullptr));
    Require(pointerTo<&::ny_client_handler_start>(client));
    Require(pointerTo<&::ny_client_handler_get_msgbus>(client, &bus));
    for (const std::string& product : products) {
        Require(pointerTo<&::ny_property_register_provider_callback>(client, product.c_str(), Provide, this));
    }
}

// With the bus library, which is needed for one call at the end.
void FloorHost::Close() {
    if (library == nullptr) {
        return;
    }
    const HMODULE busLibrary = LoadedLibrary((folder / "ny_msgbus.dll").string());
    Resolve<&::ny_msgbus_disable_watcher>(busLibrary);
    Require(pointerTo<&::ny_msgbus_disable_watcher>(bus));
    for (const std::string& product : products) {
        Require(pointerTo<&::ny_property_unregister_provider_callback>(client, product.c_str()));
    }
    Require(pointerTo<&::ny_client_handler_stop>(client));
    Require(pointerTo<&::ny_client_handler_release>(client));
    ::FreeLibrary(busLibrary);
    if (texts != nullptr) {
        ::FreeLibrary(std::exchange(texts, nullptr));
    }
    ::FreeLibrary(std::exchange(library, nullptr));
}

void FloorHost::OpenTexts() {
    const std::lock_guard guard(mutex);
    if (texts == nullptr) {
        texts = OpenFloorTexts(folder);
    }
}

int32_t FloorHost::Provide(ny_client_t* /*client*/, const char* productId, ny_property_bag_t* bag, void* host) {
    auto& self = *static_cast<FloorHost*>(host);
    self.OpenTexts();
    const auto found = self.modules.Find(FloorWiden(productId));
    FloorCollect(**found, bag);
    return NY_OK;
}

}  // namespace bench
