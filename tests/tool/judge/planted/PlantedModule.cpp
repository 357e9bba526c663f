// A module with a mistake that the environment variable PLANTED_MISTAKE names; without it, one that is right. It is on
// the plain interfaces, with which most mistakes can be made. Each mistake is one line beside what is right, by
// Makes().
#include <VsMsgbus.h>
#include <windows.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <stdexcept>
#include <thread>

namespace {

constexpr char id[] = "PLANTED_1000";
constexpr wchar_t wideId[] = L"PLANTED_1000";

// Whether it is this mistake that is to be made.
bool Makes(const char* mistake) {
    char name[64] = {};
    return ::GetEnvironmentVariableA("PLANTED_MISTAKE", name, sizeof name) != 0 && std::strcmp(name, mistake) == 0;
}

void CrashIf(bool isToCrash) {
    if (isToCrash) {
        volatile int* volatile nowhere = nullptr;
        *nowhere = 1;
    }
}

void HangIf(bool isToHang) {
    if (isToHang) {
        ::Sleep(INFINITE);
    }
}

std::mutex lock;

class Sink final : public VsKitMsgbus::ILogSink {
public:
    void Write(int /*level*/, const wchar_t* /*text*/) override { CrashIf(Makes("crash-in-sink")); }
};

class Collector final : public VsKitMsgbus::INYCollectProperties {
public:
    void CollectProperties(bool /*full*/, ISet* set) override {
        CrashIf(Makes("crash-in-ask"));
        HangIf(Makes("hang-in-ask"));
        if (Makes("throw-in-ask")) {
            throw std::runtime_error("planted");
        }
        if (Makes("abort-in-ask")) {
            std::abort();
        }
        if (Makes("slow")) {
            ::Sleep(2500);
        }
        const bool isTaken = set->SetProperty(L"General", L"Version", Makes("null-property") ? nullptr : L"1.0");
        CrashIf(!isTaken && Makes("crash-when-refused"));
        if (Makes("remove-inside")) {
            VsKitMsgbusRemoveCollectProperties(wideId);
        }
        if (Makes("lock-held")) {
            const std::lock_guard guard(lock);
        }
    }
    int32_t GetLogLevel() override { return 0; }
};

class Enforcer final : public VsKitMsgbus::INYEnforcePolicy {
public:
    int32_t GetLogLevel() override { return 0; }
    void Reserved() override {}
    void EnforcePolicy(const wchar_t* productId, IPolicyBag* bag) override {
        IPolicyBag* const former = kept.exchange(bag);
        if (former != nullptr && Makes("bag-kept")) {
            bag = former;
        }
        Walker walker;
        bag->EnumeratePolicies(productId, &walker);
    }

private:
    class Walker final : public IPolicyBag::ICallbacks {
    public:
        bool OnContainer(const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*) override { return true; }
        bool OnSettings(const wchar_t*, const wchar_t*, const wchar_t*) override { return true; }
        bool OnSection(const wchar_t*, const wchar_t*) override { return true; }
        bool OnSetting(const wchar_t*, const wchar_t*, const wchar_t*) override { return true; }
    };

    std::atomic<IPolicyBag*> kept{nullptr};
};

class Tasks final : public VsKitMsgbus::INYTaskEnforcer {
public:
    int32_t ExecuteTask(const wchar_t* /*taskId*/, ITaskBag* /*bag*/) override {
        const bool isAlone = inside.fetch_add(1) == 0;
        CrashIf(!isAlone && Makes("one-task-only"));
        if (Makes("one-task-only")) {
            ::Sleep(100);
        }
        --inside;
        CrashIf(Makes("crash-in-task"));
        return Makes("task-without-end") ? NothingDecided : Makes("percentage") ? 50 : Succeeded;
    }
    int32_t UpdateTaskStatus(const wchar_t* /*taskId*/, ITaskBag* /*bag*/) override {
        return Makes("state-percentage") ? 50 : Succeeded;
    }
    int32_t StopTask(const wchar_t* /*taskId*/, ITaskBag* /*bag*/) override { return Succeeded; }
    int32_t RemoveTask(const wchar_t* /*taskId*/, ITaskBag* /*bag*/) override { return Succeeded; }
    void FreeCookie(void* /*cookie*/) override {}

private:
    std::atomic<int> inside{0};
};

class Updates final : public VsKitMsgbus::INYUpdateNotifyCallback {
public:
    int32_t UpdateNotify(const wchar_t*, const wchar_t*, const wchar_t*, uint32_t*) override {
        HangIf(Makes("hang-in-update"));
        return 0;
    }
    VsKitMsgbus::etag_PRODUCT_RETURN_VALUE GetProductInfo(VsKit::cp_wchar, VsKit::cp_wchar, ISet* set) override {
        set->Set(L"1.0");
        return {};
    }
    int32_t SetProductInfo(const wchar_t*, const wchar_t*, const wchar_t*) override { return 0; }
};

Sink sink;
Collector collector;
Enforcer enforcer;
Tasks tasks;
Updates updates;
VsMsgbus* bridge = nullptr;

constexpr uint32_t allServices =
    VsMsgbusServiceProperty | VsMsgbusServicePolicy | VsMsgbusServiceTask | VsMsgbusServiceUpdate;

bool Enter() {
    VsKitMsgbusSetCollectProperties(Makes("other-id") ? L"planted_1000" : wideId, &collector, nullptr);
    if (Makes("set-twice")) {
        VsKitMsgbusSetCollectProperties(wideId, &collector, nullptr);
    }
    VsKitMsgbusSetEnforcePolicy(wideId, &enforcer, nullptr);
    VsKitMsgbusSetTaskEnforcer(wideId, &tasks, nullptr);
    if (!Makes("interface-missing")) {
        VsKitMsgbusSetUpdateNotify(wideId, &updates, nullptr);
    }
    const uint32_t mask = Makes("mask-missing") ? allServices & ~VsMsgbusServiceTask : allServices;
    return VsMsgbusEntry(id, mask, Makes("no-sink") ? nullptr : &sink, &bridge);
}

void RemoveAll() {
    VsKitMsgbusRemoveCollectProperties(Makes("other-id") ? L"planted_1000" : wideId);
    VsKitMsgbusRemoveEnforcerPolicy(wideId);
    VsKitMsgbusRemoveTaskEnforcer(wideId);
    if (!Makes("interface-missing")) {
        VsKitMsgbusRemoveUpdateNotify(wideId);
    }
}

void Leak() {
    if (Makes("memory-leak")) {
        static void* volatile last = nullptr;
        last = std::malloc(16 * 1024);
        if (last != nullptr) {
            std::memset(last, 1, 16 * 1024);
        }
    }
    if (Makes("handle-leak")) {
        ::CreateEventW(nullptr, FALSE, FALSE, nullptr);
    }
    if (Makes("thread-leak")) {
        // Outside of this module's code, so that it is no crash.
        const auto sleepForEver = reinterpret_cast<LPTHREAD_START_ROUTINE>(
            reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "Sleep")));
        ::CloseHandle(
            ::CreateThread(nullptr, 0, sleepForEver, reinterpret_cast<void*>(uintptr_t{INFINITE}), 0, nullptr));
    }
}

}  // namespace

extern "C" {

__declspec(dllexport) bool PlantedLoad() {
    CrashIf(Makes("crash-in-load"));
    HangIf(Makes("hang-in-load"));
    if (Makes("throw-in-load")) {
        throw std::runtime_error("planted");
    }
    if (Makes("refuses-without-agent")) {
        HKEY key = nullptr;
        if (::RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"Software\\Corvane\\Agent", 0, KEY_READ, &key) != ERROR_SUCCESS) {
            return false;
        }
        ::RegCloseKey(key);
    }
    Leak();
    return Makes("enters-in-dllmain") || Enter();
}

__declspec(dllexport) bool PlantedUnload() {
    CrashIf(Makes("crash-in-unload"));
    HangIf(Makes("hang-in-unload"));
    if (Makes("exit-in-unload")) {
        std::exit(0);
    }
    if (Makes("lock-held")) {
        const std::lock_guard guard(lock);
        VsKitMsgbusRemoveCollectProperties(wideId);
    }
    if (Makes("late-remove")) {
        std::thread([] {
            ::Sleep(300);
            VsMsgbusExit(id, bridge);
            RemoveAll();
        }).detach();
        return true;
    }
    if (!Makes("no-exit")) {
        VsMsgbusExit(id, Makes("other-instance") ? nullptr : bridge);
    }
    if (!Makes("no-remove")) {
        RemoveAll();
    }
    if (Makes("removes-twice")) {
        VsKitMsgbusRemoveTaskEnforcer(wideId);
    }
    if (Makes("answers-false")) {
        return false;
    }
    return true;
}

BOOL WINAPI DllMain(HINSTANCE /*instance*/, DWORD reason, LPVOID /*reserved*/) {
    if (reason == DLL_PROCESS_ATTACH && Makes("enters-in-dllmain")) {
        Enter();
    }
    return TRUE;
}

}  // extern "C"
