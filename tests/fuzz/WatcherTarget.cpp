// The install watcher: the version in the registry, changed before each of its waits. It runs on the fuzzer's own
// thread, with waits that return at once.
#include <algorithm>
#include <cstring>

#include "dispatcher/DispatcherLog.h"
#include "fuzz/FuzzedRegistry.h"
#include "msgbus/client/NyClient.h"
#include "msgbus/client/NyClientNotifier.h"
#include "support/SystemFunction.h"
#include "win32_faults.h"

using namespace bridge;

namespace {

constexpr unsigned mostWaits = 12;
constexpr size_t lineCapacity = 2048;

class FuzzedWatcher {
public:
    explicit FuzzedWatcher(FuzzInput& fuzzInput) : input(fuzzInput) { current = this; }

    void Run() {
        NyClient client;
        client.log.sink = &ReadLine;
        client.stateHandler = &FollowState;
        NyClientNotifier* notifier = nullptr;
        if (NotifierCreate(&client, &notifier) != NY_OK) {
            Found("no watcher");
        }
        value.Change(input);
        NotifierCheckAgent(notifier);
        ExpectVersion(*notifier);
        notifier->running = 1;
        watched = notifier;
        NotifierWatch(*notifier);
        if (notifier->running.load() != 0) {
            Found("a watcher that ends and says that it runs");
        }
        NotifierDestroy(notifier);
    }

private:
    // At most so long, and ended by a zero.
    static void ExpectVersion(const NyClientNotifier& notifier) {
        if (std::memchr(notifier.version, '\0', sizeof notifier.version) == nullptr) {
            Found("a version without an end");
        }
    }

    static int32_t ReadLine(uint32_t /*severity*/, const char* module, const char* message, void* /*userData*/) {
        Touch(module);
        if (std::strlen(message) >= lineCapacity) {
            Found("a log line that is too long");
        }
        return NY_OK;
    }

    static int32_t FollowState(NyClient* /*client*/, uint32_t state, void* /*userData*/) {
        if (state > 1) {
            Found("a state that there is not");
        }
        // The watcher must not lose a change that comes while it tells the point product.
        if (current->input.Rarely()) {
            current->value.Change(current->input);
        }
        return NY_OK;
    }

    // The input chooses how the wait ends: by a change, by its time, by a failure, or by the order to stop. It is the
    // order to stop when the input is used up.
    static DWORD WINAPI WaitForMultiple(DWORD /*count*/, const HANDLE* /*handles*/, BOOL /*all*/, DWORD milliseconds) {
        FuzzInput& input = current->input;
        ExpectVersion(*current->watched);
        if (input.IsOver() || ++current->waits > mostWaits) {
            return WAIT_OBJECT_0 + 1;
        }
        switch (input.Below(8)) {
            case 0: return milliseconds == INFINITE ? DWORD{WAIT_OBJECT_0 + 1} : DWORD{WAIT_TIMEOUT};
            case 1: return WAIT_FAILED;
            default: current->value.Change(input); return WAIT_OBJECT_0;
        }
    }

    // The pause for a missing key.
    static DWORD WINAPI WaitForSingle(HANDLE /*handle*/, DWORD /*milliseconds*/) {
        if (current->input.IsOver() || ++current->waits > mostWaits) {
            return WAIT_OBJECT_0;
        }
        current->value.Change(current->input);
        return WAIT_TIMEOUT;
    }

    static void WINAPI SleepNot(DWORD /*milliseconds*/) {}

    static inline FuzzedWatcher* current = nullptr;

    FuzzInput& input;
    unsigned waits = 0;
    const NyClientNotifier* watched = nullptr;
    FuzzedRegistryValue value{"Software\\Corvane\\Agent", "MsgbusVersion", 0};
    SystemFunction<decltype(::WaitForMultipleObjects)> waitingForMultiple{&::WaitForMultipleObjects, &WaitForMultiple};
    SystemFunction<decltype(::WaitForSingleObject)> waitingForSingle{&::WaitForSingleObject, &WaitForSingle};
    SystemFunction<decltype(::Sleep)> sleeping{&::Sleep, &SleepNot};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzInput input(data, size);
    FuzzedWatcher(input).Run();
    if (win32::OpenHandles() != 0) {
        Found("a handle that stays open");
    }
    return 0;
}
