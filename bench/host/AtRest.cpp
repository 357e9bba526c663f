// The threads, handles and memory that the bridge takes while the agent is there and nothing is to do, and how often
// its threads wake up.
#include <windows.h>

#include <psapi.h>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>

#include "VsMsgbus/Entry.h"
#include "bench/bare/BareAgent.h"
#include "bench/harness/Stage.h"
#include "bench/host/Measurements.h"
#include "tests/support/ModuleImports.h"
#include "tests/support/SystemFunction.h"
#include "tool/play/player/Level.h"

using namespace std::chrono_literals;

namespace bench {

namespace {

// Counts the sleeps of the bridge's threads that end. A thread sleeps nowhere else: the agent's libraries do not, and
// locks are not held while one sleeps.
class CountedSleeps {
public:
    CountedSleeps() {
        Replace("WaitForSingleObject", reinterpret_cast<void*>(&Single), single);
        Replace("WaitForMultipleObjects", reinterpret_cast<void*>(&Multiple), multiple);
        Replace("SleepConditionVariableSRW", reinterpret_cast<void*>(&Condition), condition);
        Replace("Sleep", reinterpret_cast<void*>(&Pause), pause);
    }

    size_t Ended() const { return ended; }

private:
    template <class Function>
    static void Replace(const char* name, void* replacement, Function*& original) {
        for (const ModuleImport& import : ImportsOf("VsMsgbus.dll")) {
            if (import.function == name) {
                original = reinterpret_cast<Function*>(*import.slot);
                SetImport(import.slot, replacement);
                return;
            }
        }
        throw std::runtime_error(std::string("not imported by the bridge: ") + name);
    }

    static DWORD WINAPI Single(HANDLE handle, DWORD milliseconds) {
        const DWORD result = single(handle, milliseconds);
        ++ended;
        return result;
    }
    static DWORD WINAPI Multiple(DWORD count, const HANDLE* handles, WINBOOL all, DWORD milliseconds) {
        const DWORD result = multiple(count, handles, all, milliseconds);
        ++ended;
        return result;
    }
    static WINBOOL WINAPI Condition(PCONDITION_VARIABLE variable, PSRWLOCK lock, DWORD milliseconds, ULONG flags) {
        const WINBOOL result = condition(variable, lock, milliseconds, flags);
        ++ended;
        return result;
    }
    static void WINAPI Pause(DWORD milliseconds) {
        pause(milliseconds);
        ++ended;
    }

    static inline std::atomic<size_t> ended = 0;
    static inline decltype(::WaitForSingleObject)* single = nullptr;
    static inline decltype(::WaitForMultipleObjects)* multiple = nullptr;
    static inline decltype(::SleepConditionVariableSRW)* condition = nullptr;
    static inline decltype(::Sleep)* pause = nullptr;
};

// As the system counts them: on Windows what is committed, under Wine what is in memory and in no file.
double PrivateBytes() {
    PROCESS_MEMORY_COUNTERS counters{};
    ::GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof counters);
    return static_cast<double>(counters.PagefileUsage);
}

// The bridge, entered for one product, from its loading on; stays loaded.
class LoadedBridge {
public:
    void Load() {
        library = ::LoadLibraryA("VsMsgbus.dll");
        if (library == nullptr) {
            throw std::runtime_error("the bridge cannot be loaded");
        }
    }
    void Enter() {
        if (!Export<decltype(VsMsgbusEntry)>("VsMsgbusEntry")(bareProductId, VsMsgbusServiceProperty, nullptr,
                                                              &instance) ||
            TheBareAgent()->properties.callback == nullptr) {
            throw std::runtime_error("the product was not registered");
        }
    }
    void Leave() { Export<decltype(VsMsgbusExit)>("VsMsgbusExit")(bareProductId, instance); }

private:
    template <class Function>
    Function* Export(const char* name) const {
        return reinterpret_cast<Function*>(reinterpret_cast<void*>(::GetProcAddress(library, name)));
    }

    HMODULE library = nullptr;
    VsMsgbus* instance = nullptr;
};

void Add(Session& session, const char* what, const char* unit, double ours, const char* aim = "", bool isMet = true) {
    session.report.Add(Amount{"at rest", what, 0, unit, ours, {}, aim, isMet});
}

}  // namespace

void MeasureRest(Session& session) {
    const Stage stage;
    // The agent's own libraries are not the bridge's, nor are the system's.
    const HMODULE others[] = {::LoadLibraryA("ADVAPI32.dll"),
                              ::LoadLibraryA((stage.Folder() / "ny_client.dll").string().c_str())};
    if (others[0] == nullptr || others[1] == nullptr) {
        throw std::runtime_error("the other libraries cannot be loaded");
    }
    const tool::play::Level before = tool::play::MeasureLevel();
    const double bytesBefore = PrivateBytes();
    LoadedBridge bridge;
    bridge.Load();
    const double bytesLoaded = PrivateBytes();
    const CountedSleeps sleeps;
    bridge.Enter();
    // The watcher reads the version once more when no change has come for so long.
    std::this_thread::sleep_for(16s);
    const tool::play::Level atRest = tool::play::MeasureLevel();
    const double bytesAtRest = PrivateBytes();
    const size_t endedBefore = sleeps.Ended();
    const auto rest = session.isQuick ? 5s : 60s;
    std::this_thread::sleep_for(rest);
    const size_t woken = sleeps.Ended() - endedBefore;
    // That a thread which wakes up would have been counted.
    simulator::AgentInstaller::WriteVersion("9.0");
    std::this_thread::sleep_for(1s);
    if (sleeps.Ended() == endedBefore + woken) {
        throw std::runtime_error("the bridge's thread is not seen to wake up");
    }
    bridge.Leave();
    const auto threads = static_cast<double>(atRest.threads - before.threads);
    Add(session, "threads", "of the bridge's own", threads, "1", threads == 1);
    Add(session, "handles", "more", static_cast<double>(atRest.handles - before.handles));
    session.report.Add(Amount{"at rest",
                              "private bytes",
                              0,
                              "bytes",
                              bytesAtRest - bytesBefore,
                              {{"loaded alone", bytesLoaded - bytesBefore}},
                              "",
                              true});
    Add(session, ("wake-ups in " + std::to_string(rest / 1s) + " s, after the first 16").c_str(), "in all",
        static_cast<double>(woken), "none", woken == 0);
}

}  // namespace bench
