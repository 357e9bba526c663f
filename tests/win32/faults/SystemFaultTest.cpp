// The operating system fails at every call that the bridge makes in a flow, once or from then on.
#include <windows.h>

#include <map>

#include "Registry.h"
#include "faults/FaultCases.h"
#include "win32_faults.h"

using win32::Callers;
using win32::FaultMode;

namespace {

// The error with which the function is made to fail.
DWORD ErrorOf(std::string_view function) {
    static const std::map<std::string_view, LONG> errors = {{"GetProcAddress", ERROR_PROC_NOT_FOUND},
                                                            {"LoadLibraryExA", ERROR_MOD_NOT_FOUND},
                                                            {"RegOpenKeyExA", ERROR_ACCESS_DENIED},
                                                            {"RegOpenKeyExW", ERROR_ACCESS_DENIED},
                                                            {"RegQueryValueExA", ERROR_ACCESS_DENIED},
                                                            {"RegSetValueExW", ERROR_ACCESS_DENIED},
                                                            {"SetEvent", ERROR_INVALID_HANDLE},
                                                            {"ResetEvent", ERROR_INVALID_HANDLE},
                                                            {"WaitForSingleObject", ERROR_INVALID_HANDLE},
                                                            {"WaitForMultipleObjects", ERROR_INVALID_HANDLE},
                                                            {"RegCloseKey", ERROR_INVALID_HANDLE},
                                                            {"CloseHandle", ERROR_INVALID_HANDLE},
                                                            {"FreeLibrary", ERROR_INVALID_HANDLE},
                                                            {"GetModuleHandleExA", ERROR_MOD_NOT_FOUND},
                                                            {"RegNotifyChangeKeyValue", ERROR_ACCESS_DENIED}};
    const auto found = errors.find(function);
    return static_cast<DWORD>(found != errors.end() ? found->second : ERROR_NOT_ENOUGH_MEMORY);
}

// Whether the function closes something. When it fails, the handle stays open, because there is no second way to close
// it.
bool IsClosing(std::string_view function) {
    return function == "CloseHandle" || function == "RegCloseKey" || function == "FreeLibrary";
}

// Where the watcher's thread cannot be told to end, or its end not be waited for, it does the rest on its own when the
// registry changes.
bool LeavesTheRestToTheWatcher(std::string_view function) {
    return function == "SetEvent" || function == "WaitForSingleObject";
}

struct OpenThings {
    size_t handles = win32::OpenHandles();
    size_t libraries = win32::LibraryReferences();

    bool operator==(const OpenThings&) const = default;
    size_t Sum() const { return handles + libraries; }
    std::string Text() const {
        return std::to_string(handles) + " handles, " + std::to_string(libraries) + " libraries";
    }
};

// Knows, from its construction on, whether the watcher's thread that was created since has come to wait, so that its
// first calls are made before or after a fault, and not now before and now after.
class WatcherStart {
public:
    void Wait() const {
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(200);
        while (win32::Uses("CreateThread", Callers::Watched) != threads &&
               win32::Uses("WaitForMultipleObjects", Callers::Watched) == waits &&
               std::chrono::steady_clock::now() < end) {
            ::Sleep(1);
        }
    }

private:
    size_t threads = win32::Uses("CreateThread", Callers::Watched);
    size_t waits = win32::Uses("WaitForMultipleObjects", Callers::Watched);
};

// Has the watched library's calls of one function fail.
class FunctionFault {
public:
    FunctionFault(const char* functionName, const OpenThings& openBefore)
        : function(functionName), before(openBefore) {}

    void Fail(size_t nth, bool isOnce) {
        watcherStart.Wait();
        failuresBefore = win32::FailedUses();
        if (nth != 0) {
            win32::FailCall(function, nth, ErrorOf(function), isOnce ? FaultMode::Once : FaultMode::FromThenOn,
                            Callers::Watched);
        }
    }
    void Rest() {
        watcherStart.Wait();
        win32::ClearFaults();
        failures = win32::FailedUses() - failuresBefore;
        // An Exit may have left the rest to the watcher's thread; no other code calls these functions in a flow.
        if (LeavesTheRestToTheWatcher(function) && failures != 0) {
            WaitUntil([this] { return OpenThings() == before; });
        }
    }
    size_t Failed() const { return failures; }

    std::string TakeLeftOver() {
        if (IsClosing(function) && failures != 0) {
            // For each failure there may be one thing that is still open.
            WaitUntil([this] { return OpenThings().Sum() <= before.Sum() + failures; });
            if (OpenThings().Sum() <= before.Sum() + failures) {
                CloseWhatFailedToBeClosed();
            }
        }
        WaitUntil([this] { return OpenThings() == before; });
        watcherStart = {};
        const OpenThings now;
        return now == before ? "" : "before: " + before.Text() + ", now: " + now.Text();
    }

    // A library that cannot be freed is there until TakeLeftOver. What cannot be resolved may be what a handle is given
    // back with: then the agent keeps it. A call from the agent is turned away when there is no memory to count it.
    bool Explains(const std::string& line) const {
        const std::string_view name = function;
        return (line.starts_with("LEFT:") && name == "FreeLibrary") ||
               (line.starts_with("kept:") && name == "GetProcAddress") ||
               (line.starts_with("agent: answer 3, result ") && name == "TlsSetValue");
    }

private:
    // Threads of the agent's that have done their work may still be ending.
    template <class Condition>
    void WaitUntil(const Condition& isMet) const {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        for (int i = 0; !isMet() && std::chrono::steady_clock::now() < end; ++i) {
            if (LeavesTheRestToTheWatcher(function)) {
                simulator::RegistryKey(HKEY_LOCAL_MACHINE, "Software\\Corvane\\Agent", KEY_SET_VALUE | KEY_WOW64_64KEY)
                    .WriteText("Touched", std::to_string(i));
            }
            ::Sleep(1);
        }
    }

    void CloseWhatFailedToBeClosed() const {
        win32::CloseHandlesSince(mark);
        for (const char* library : {"ny_client.dll", "ny_variant.dll", "ny_msgbus.dll", "ny_logger.dll"}) {
            while (const HMODULE module = ::GetModuleHandleA(library)) {
                ::FreeLibrary(module);
            }
        }
    }

    const char* const function;
    const OpenThings before;
    const size_t mark = win32::HandleMark();
    WatcherStart watcherStart;
    size_t failuresBefore = 0;
    size_t failures = 0;
};

// A good run, with the functions that the bridge called in it, and how often.
struct GoodRun {
    GoodRun(FlowWorld& world, const FlowKind& flow) {
        const WatcherStart watcherStart;
        const auto count = [&] {
            watcherStart.Wait();
            for (size_t i = 0; const char* const name = win32::FunctionAt(i); ++i) {
                calls[name] = win32::Uses(name, Callers::Watched) - calls[name];
            }
        };
        outcome = RunFlow(world, flow, {count, count});
    }

    std::map<std::string, size_t> calls;
    FlowOutcome outcome;
};

class SystemFault : public testing::TestWithParam<FlowKind> {
protected:
    void SetUp() override {
        ASSERT_TRUE(win32::WatchLibrary("VsMsgbus.dll"));
        ASSERT_TRUE(win32::WatchLibrary("LogLib.dll"));
        win32::LimitWatchedWaits(1000);
    }
    void TearDown() override {
        win32::ClearFaults();
        win32::UnwatchLibraries();
    }
};

TEST_P(SystemFault, IsAnsweredAndLeavesNothing) {
    FlowWorld world;
    const OpenThings before;
    FaultCount count;
    const GoodRun good(world, GetParam());
    for (const auto& [name, calls] : good.calls) {
        FunctionFault function(name.c_str(), before);
        const FaultKind fault{.name = name,
                              .fail = [&](size_t nth, bool isOnce) { function.Fail(nth, isOnce); },
                              .rest = [&] { function.Rest(); },
                              .failed = [&] { return function.Failed(); },
                              .takeLeftOver = [&] { return function.TakeLeftOver(); },
                              .explains = [&](const std::string& line) { return function.Explains(line); }};
        count += RunFaultCases(world, GetParam(), good.outcome, calls, fault);
    }
    PrintCount(std::string("operating system, ") + GetParam().name, count);
}

INSTANTIATE_TEST_SUITE_P(Each, SystemFault, testing::ValuesIn(AllFlows()),
                         [](const testing::TestParamInfo<FlowKind>& flow) { return std::string(flow.param.name); });

}  // namespace
