#include "tool/doctor/trial/ModuleTrial.h"

#include <windows.h>

#include "tool/doctor/trial/Record.h"

namespace tool::doctor {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// The system's code; 0 when the library is loaded.
DWORD Load(const std::filesystem::path& file, DWORD flags, HMODULE& library) {
    library = ::LoadLibraryExW(file.c_str(), nullptr, flags);
    return library != nullptr ? ERROR_SUCCESS : ::GetLastError();
}

// Calls a function whose parameters, if any, are pointers or numbers: all of them are null.
bool CallWithNothing(FARPROC address) {
    using Function = bool (*)(void*, void*, void*, void*);
    return reinterpret_cast<Function>(reinterpret_cast<void*>(address))(nullptr, nullptr, nullptr, nullptr);
}

// The function's answer; true when the module has no such function.
bool CallFunction(HMODULE module, const std::string& name, const TrialSteps& steps) {
    const FARPROC address = name.empty() ? nullptr : ::GetProcAddress(module, name.c_str());
    return address == nullptr || steps.Make(name, [&] { return CallWithNothing(address) ? 1 : 0; }) != 0;
}

// Waits until a product has entered and the record has not grown for a second: a module may enter and register on any
// thread and in any order, and does not say when it is done.
bool WaitForEntry(const ModuleTrialOptions& options) {
    constexpr milliseconds pause{50};
    constexpr milliseconds quiet{1000};
    const auto limit = steady_clock::now() + options.wait;
    size_t known = 0;
    auto changed = steady_clock::now();
    for (;;) {
        const Record record(options.record);
        const auto now = steady_clock::now();
        if (record.Events() != known) {
            known = record.Events();
            changed = now;
        }
        const bool hasEntered = !record.Products().empty();
        if ((hasEntered && now - changed >= quiet) || now >= limit) {
            return hasEntered;
        }
        ::Sleep(static_cast<DWORD>(pause.count()));
    }
}

void SetUpChecks(const ModuleTrialOptions& options) {
    // In bytes: enough for a module's entering, and small because the record is read again and again.
    ::SetEnvironmentVariableW(L"VSMSGBUS_TRACE_LIMIT", L"1048576");
    ::SetEnvironmentVariableW(L"VSMSGBUS_TRACE", options.record.c_str());
    ::SetEnvironmentVariableW(L"VSMSGBUS_CHECK_FILE", options.findings.c_str());
    ::SetEnvironmentVariableW(L"VSMSGBUS_CHECK_GRACE", L"500");
    ::SetEnvironmentVariableW(L"VSMSGBUS_CHECK", nullptr);
}

}  // namespace

void TryModule(const ModuleTrialOptions& options, const TrialSteps& steps) {
    SetUpChecks(options);
    HMODULE library = nullptr;
    // The libraries that the bridge needs stand beside this program. The module then uses this bridge, because it is
    // loaded already, and not one that it would find elsewhere.
    if (steps.Make(loadingBridgeStep, [&] { return Load(options.checkingBridge, 0, library); }) != ERROR_SUCCESS) {
        return;
    }
    if (steps.Make(loadingModuleStep, [&] { return Load(options.module, LOAD_WITH_ALTERED_SEARCH_PATH, library); }) !=
        ERROR_SUCCESS) {
        return;
    }
    // After a failure without an Entry no product will enter.
    if (CallFunction(library, options.enter, steps) || !Record(options.record).Products().empty()) {
        steps.Make(waitingStep, [&] { return WaitForEntry(options) ? 1 : 0; });
    }
    CallFunction(library, options.leave, steps);
}

}  // namespace tool::doctor
