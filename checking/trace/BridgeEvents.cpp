// Records the bridge's own doings, for the trace and for a few checks. The linker leads the bridge's calls of these
// functions here, and the calls from here to the functions themselves.
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <typeinfo>

#include "VsMsgbus/ny_dl.h"
#include "base/Boundary.h"
#include "checking/AgentLook.h"
#include "checking/StateLock.h"
#include "checking/Watch.h"
#include "checking/trace/Trace.h"
#include "dispatcher/AgentCalls.h"
#include "msgbus/client/AgentKey.h"
#include "msgbus/client/NyClient.h"
#include "values/AgentException.h"

using checking::Trace;
using checking::TraceArguments;
using checking::TracePhase;

extern "C" {

uint32_t __real_ny_dl_open(const char* path, unsigned flags, ny_dl_t* lib) noexcept;
uint32_t __wrap_ny_dl_open(const char* path, unsigned flags, ny_dl_t* lib) noexcept;
uint32_t __wrap_ny_dl_open(const char* path, unsigned flags, ny_dl_t* lib) noexcept {
    const uint32_t code = __real_ny_dl_open(path, flags, lib);
    Trace(TracePhase::Instant, "library opened",
          [&](TraceArguments& arguments) { arguments.Add("path", path).Add("code", int64_t{code}); });
    if (code != 0 && path != nullptr) {
        checking::NoteLibraryNotOpened(path, code);
    }
    return code;
}

void __real_ny_dl_close(ny_dl_t* lib) noexcept;
void __wrap_ny_dl_close(ny_dl_t* lib) noexcept;
void __wrap_ny_dl_close(ny_dl_t* lib) noexcept {
    Trace(TracePhase::Instant, "library closed", TraceArguments());
    __real_ny_dl_close(lib);
}

using Destroy = void (*)(void* object);
[[noreturn]] void __real___cxa_throw(void* object, std::type_info* type, Destroy destroy);
[[noreturn]] void __wrap___cxa_throw(void* object, std::type_info* type, Destroy destroy);
void __wrap___cxa_throw(void* object, std::type_info* type, Destroy destroy) {
    if (*type == typeid(bridge::AgentException)) {
        const int32_t code = static_cast<const bridge::AgentException*>(object)->Code();
        checking::NoteRefusal(code);
        Trace(TracePhase::Instant, "the agent refuses",
              [&](TraceArguments& arguments) { arguments.Add("code", int64_t{code}); });
    }
    __real___cxa_throw(object, type, destroy);
}

}  // extern "C"

namespace checking {

void RealMakeStart(bridge::NyClient& client, uint32_t state) noexcept
    asm("__real__ZN6bridge17NyClientMakeStartERNS_8NyClientEj");
void WrapMakeStart(bridge::NyClient& client, uint32_t state) noexcept
    asm("__wrap__ZN6bridge17NyClientMakeStartERNS_8NyClientEj");
void WrapMakeStart(bridge::NyClient& client, uint32_t state) noexcept {
    const Span span("agent client starts");
    RealMakeStart(client, state);
}

void RealMakeStop(bridge::NyClient& client) noexcept asm("__real__ZN6bridge16NyClientMakeStopERNS_8NyClientE");
void WrapMakeStop(bridge::NyClient& client) noexcept asm("__wrap__ZN6bridge16NyClientMakeStopERNS_8NyClientE");
void WrapMakeStop(bridge::NyClient& client) noexcept {
    const Span span("agent client stops");
    RealMakeStop(client);
}

void RealMakeRelease(bridge::NyClient& client) noexcept asm("__real__ZN6bridge19NyClientMakeReleaseERNS_8NyClientE");
void WrapMakeRelease(bridge::NyClient& client) noexcept asm("__wrap__ZN6bridge19NyClientMakeReleaseERNS_8NyClientE");
void WrapMakeRelease(bridge::NyClient& client) noexcept {
    const Span span("agent client ends");
    RealMakeRelease(client);
}

void RealBeginAgentCall(bridge::AgentCall* call, const bridge::AgentCallData& data, std::string_view product) noexcept
    asm("__real__ZN6bridge9AgentCallC1ERKNS_13AgentCallDataESt17basic_string_viewIcSt11char_traitsIcEE");
void WrapBeginAgentCall(bridge::AgentCall* call, const bridge::AgentCallData& data, std::string_view product) noexcept
    asm("__wrap__ZN6bridge9AgentCallC1ERKNS_13AgentCallDataESt17basic_string_viewIcSt11char_traitsIcEE");
void WrapBeginAgentCall(bridge::AgentCall* call, const bridge::AgentCallData& data, std::string_view product) noexcept {
    if (!product.empty()) {
        bridge::Guarded([&] { Watch::OfProcess().LookAtAgentsId(std::string(product)); });
    }
    RealBeginAgentCall(call, data, product);
}

namespace {

// Records the version when it is another one than at the last reading.
void NoteVersion(const bridge::AgentVersion& version) noexcept {
    static StateLock lock;
    static bridge::AgentVersion last = {};
    const Guard guard(lock);
    if (std::memcmp(version, last, sizeof last) == 0) {
        return;
    }
    std::memcpy(last, version, sizeof last);
    Trace(TracePhase::Instant, version[0] != '\0' ? "agent installed" : "agent removed",
          [&](TraceArguments& arguments) { arguments.Add("version", version); });
}

}  // namespace

LSTATUS RealReadVersion(const bridge::AgentKey& key, bridge::AgentVersion& version) noexcept
    asm("__real__ZNK6bridge8AgentKey11ReadVersionERA20_c");
LSTATUS WrapReadVersion(const bridge::AgentKey& key, bridge::AgentVersion& version) noexcept
    asm("__wrap__ZNK6bridge8AgentKey11ReadVersionERA20_c");
LSTATUS WrapReadVersion(const bridge::AgentKey& key, bridge::AgentVersion& version) noexcept {
    const LSTATUS status = RealReadVersion(key, version);
    if (IsTracing()) {
        NoteVersion(version);
    }
    return status;
}

}  // namespace checking
