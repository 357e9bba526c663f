// A module that throws where it is told to: one source, compiled for the C++ ABI of each compiler that modules are
// built by. Both sides include this.
#pragma once

#include <cstddef>
#include <cstdint>

#include "VsMsgbus/HealthCheck.h"

namespace LogUtils {
class LogEvent;
class LogManager;
}  // namespace LogUtils

// Where the bridge calls a module.
enum class Place : int32_t {
    Nowhere,
    CollectProperties,
    LevelOfCollector,
    LevelOfEnforcer,
    EnforcePolicy,
    OnContainer,
    OnSettings,
    OnSection,
    OnSetting,
    OnSettingOfInnerWalk,
    ExecuteTask,
    UpdateTaskStatus,
    StopTask,
    RemoveTask,
    VisitSetting,
    FreeCookie,
    UpdateNotify,
    GetProductInfo,
    SetProductInfo,
    WriteOfBridge,        // of the sink given to Entry
    WriteOfRegistration,  // of the sink given with an interface
    OnLogEvent,
    HostsManager,
    HostsWideEvent,
    HostsFormattedEvent,
    HealthCheck,
};

// The thing that the module throws.
enum class Thrown : int32_t {
    Number,
    RuntimeError,
    Self,            // an object that knows its own address
    SelfAgain,       // the same, caught and thrown on by `throw;`
    AgentException,  // with the code 77
    // No C++ exceptions; on Windows alone.
    AccessViolation,
    Breakpoint,
    StackOverflow,
};

// The code that catches it.
enum class Catcher : int32_t { Bridge, ModuleAroundWalk, ModuleAroundUserWalk };

// The module's functions for the test. They use the bridge that the module is linked with; the id says for which
// product.
struct ThrowingModule {
    // Registers all that it has and enters for all services; and the way back.
    bool (*enter)(const char* id, const wchar_t* wideId);
    bool (*leave)(const char* id, const wchar_t* wideId);
    // Registers the enforcer alone, or takes it back.
    bool (*setEnforcer)(const wchar_t* wideId, bool isSet);
    void (*freeCookie)(const wchar_t* wideId);
    // Listens to the host's log, or does not any more.
    void (*listen)(bool isListening);
    VsKitHealthCheckCallback healthCheck;
    // A host's log: stand for what LogLib.dll exports.
    LogUtils::LogManager* (*getLogManager)();
    void (*logWide)(const LogUtils::LogEvent* event, const wchar_t* component, const wchar_t* text);
    void (*logFormatted)(const LogUtils::LogEvent* event, const wchar_t* component, const char* format, ...);
};

// The objects that know their own address.
struct ThrownObjects {
    int32_t made;
    int32_t destroyed;
    int32_t damaged;  // found at another address than they know
};

extern "C" {

__declspec(dllexport) const ThrowingModule* GetThrowingModule();

// From now on the module throws there, and tells `tell(line, userData)` what it sees, on any thread.
typedef void (*ThrowingModuleTell)(const char* line, void* userData);
__declspec(dllexport) void ThrowingModuleTellTo(ThrowingModuleTell tell, void* userData);
__declspec(dllexport) void ThrowAt(Place place, Thrown thrown, Catcher catcher);

// How often it has thrown since the last ThrowAt.
__declspec(dllexport) int32_t CountThrows();
__declspec(dllexport) ThrownObjects CountThrownObjects();

}  // extern "C"
