// What the record has of the bridge's own doing. The linker leads the bridge's calls of these functions here, and the
// calls from here to them.
#include <cstdint>
#include <typeinfo>

#include "VsMsgbus/ny_dl.h"
#include "checking/AgentLook.h"
#include "checking/trace/Trace.h"
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

}  // namespace checking
