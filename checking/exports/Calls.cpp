// The exports that a module calls between Entry and Exit.
#include <windows.h>

#include <algorithm>
#include <limits>

#include "base/Boundary.h"
#include "checking/Buffers.h"
#include "checking/Findings.h"
#include "checking/ModuleMemory.h"
#include "checking/Scope.h"
#include "checking/Tasks.h"
#include "checking/Texts.h"
#include "checking/Watch.h"
#include "checking/exports/Checked.h"

using namespace checking;
using VsKitMsgbus::INYTaskEnforcer;
using VsKitMsgbus::lpc_buffer;

namespace {

// Reports a call that does nothing because no product has entered.
void LookWhetherEntered(const char* function) noexcept {
    if (!Watch::OfProcess().IsAnyProductIn()) {
        Report(Rule::NotEntered, "", {function});
    }
}

int32_t ReportNothingDone(const char* function) noexcept {
    Scope scope(function, "");
    Report(Rule::NothingDone, "", {function});
    return scope.Answered(0);
}

// Memory of the system's, with nothing behind it.
class Area {
public:
    explicit Area(size_t wanted) noexcept
        : memory(
              static_cast<unsigned char*>(::VirtualAlloc(nullptr, wanted, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE))) {}
    ~Area() {
        if (memory != nullptr) {
            ::VirtualFree(memory, 0, MEM_RELEASE);
        }
    }
    Area(const Area&) = delete;
    Area& operator=(const Area&) = delete;

    unsigned char* Get() const noexcept { return memory; }

private:
    unsigned char* const memory;
};

using Convert = int32_t (*)(const unsigned char* data, unsigned int size, unsigned char* out, unsigned int* outSize,
                            uint64_t type) noexcept;

int32_t AnsweredZeroForSuccess(Scope& scope, int32_t answer) noexcept {
    return scope.Answered(answer, answer != 0);
}

int32_t AnsweredOneForSuccess(Scope& scope, int32_t answer) noexcept {
    return scope.Answered(answer, answer != 1);
}

// The agent's result goes into memory with room for more, and from there as far as the module's has room.
int32_t ConvertChecked(const char* function, Convert convert, const unsigned char* data, unsigned int size,
                       unsigned char* out, unsigned int* outSize, uint64_t type) noexcept {
    constexpr size_t more = 1U << 20U;
    constexpr unsigned untouched = std::numeric_limits<unsigned>::max();
    Scope scope(function, "", [&](TraceArguments& arguments) { arguments.Add("size", int64_t{size}); });
    const Area area(size_t{2} * size + more);
    if (out == nullptr || outSize == nullptr || area.Get() == nullptr) {
        return AnsweredZeroForSuccess(scope, convert(data, size, out, outSize, type));
    }
    unsigned resultSize = untouched;
    const int32_t answer = AnsweredZeroForSuccess(scope, convert(data, size, area.Get(), &resultSize, type));
    if (resultSize == untouched) {
        return answer;
    }
    *outSize = resultSize;
    const size_t room = RoomAt(out, resultSize);
    if (room < resultSize) {
        bridge::Guarded([&] {
            Report(Rule::OutputTooSmall, Watch::OfProcess().AnyProduct(),
                   {function, std::to_string(resultSize), std::to_string(room)});
        });
    }
    std::copy_n(area.Get(), std::min<size_t>(room, resultSize), out);
    return answer;
}

}  // namespace

int CheckedVsKitEnforceLocalPolicy(const wchar_t* productId) noexcept {
    Scope scope("VsKitEnforceLocalPolicy", productId);
    LookWhetherEntered("VsKitEnforceLocalPolicy");
    if (productId != nullptr) {
        bridge::Guarded([&] { Watch::OfProcess().LookAtId("VsKitEnforceLocalPolicy", productId); });
    }
    return AnsweredOneForSuccess(scope, VsKitEnforceLocalPolicy(productId));
}

void CheckedUpdateMsgbusTaskStatus(const wchar_t* taskId, int status) noexcept {
    const Scope scope("UpdateMsgbusTaskStatus", "",
                      [&](TraceArguments& arguments) { arguments.Add("task", taskId).Add("status", int64_t{status}); });
    bridge::Guarded([&] {
        const bool isKnown = status == INYTaskEnforcer::NothingDecided || status == INYTaskEnforcer::Failed ||
                             status == INYTaskEnforcer::Succeeded || status == INYTaskEnforcer::AgentDefined;
        if (!isKnown) {
            Report(Rule::TaskStatus, Watch::OfProcess().AnyProduct(), {std::to_string(status)});
        }
        // A task may end while its product leaves, or later: Exit has told of that.
        if (taskId == nullptr || !NoteTaskStatus(taskId, status)) {
            LookWhetherEntered("UpdateMsgbusTaskStatus");
        }
    });
    UpdateMsgbusTaskStatus(taskId, status);
}

void CheckedVsKitHealthCheckRegisterCB(const wchar_t* name, VsKitHealthCheckCallback callback) noexcept {
    const Scope scope("VsKitHealthCheckRegisterCB", "",
                      [&](TraceArguments& arguments) { arguments.Add("name", name); });
    LookWhetherEntered("VsKitHealthCheckRegisterCB");
    VsKitHealthCheckRegisterCB(name, callback);
}

int32_t CheckedVsKitMsgbusEncryptData(const unsigned char* data, unsigned int size, unsigned char* out,
                                      unsigned int* outSize, uint64_t type) noexcept {
    return ConvertChecked("VsKitMsgbusEncryptData", &VsKitMsgbusEncryptData, data, size, out, outSize, type);
}

int32_t CheckedVsKitMsgbusDecryptData(const unsigned char* data, unsigned int size, unsigned char* out,
                                      unsigned int* outSize, uint64_t type) noexcept {
    return ConvertChecked("VsKitMsgbusDecryptData", &VsKitMsgbusDecryptData, data, size, out, outSize, type);
}

int32_t CheckedVsKitMsgbusDecodeData(...) noexcept {
    return ReportNothingDone("VsKitMsgbusDecodeData");
}

int32_t CheckedVsKitMsgbusEncodeData(...) noexcept {
    return ReportNothingDone("VsKitMsgbusEncodeData");
}

int32_t CheckedVsKitMsgbusDecodeAndDecryptData(...) noexcept {
    return ReportNothingDone("VsKitMsgbusDecodeAndDecryptData");
}

int32_t CheckedVsKitMsgbusEncryptAndEncodeData(...) noexcept {
    return ReportNothingDone("VsKitMsgbusEncryptAndEncodeData");
}

int32_t CheckedVsKitMsgbusIsRunningInFIPSMode(...) noexcept {
    Scope scope("VsKitMsgbusIsRunningInFIPSMode", "");
    return scope.Answered(VsKitMsgbusIsRunningInFIPSMode());
}

int32_t CheckedVsKitMsgbusHashBuffer(const unsigned char* data, unsigned int size, unsigned char* out,
                                     unsigned int* outSize, uint64_t type) noexcept {
    Scope scope("VsKitMsgbusHashBuffer", "", [&](TraceArguments& arguments) { arguments.Add("size", int64_t{size}); });
    return AnsweredZeroForSuccess(scope, VsKitMsgbusHashBuffer(data, size, out, outSize, type));
}

int32_t CheckedVsKitMsgbusGetInformation(unsigned int index, lpc_buffer* out) noexcept {
    Scope scope("VsKitMsgbusGetInformation", "",
                [&](TraceArguments& arguments) { arguments.Add("index", int64_t{index}); });
    return AnsweredOneForSuccess(
        scope, CallWithBuffer("VsKitMsgbusGetInformation", out, [&] { return VsKitMsgbusGetInformation(index, out); }));
}

int32_t CheckedVsKitMsgbusGetInfoByKeyName(const char* key, lpc_buffer* out) noexcept {
    Scope scope("VsKitMsgbusGetInfoByKeyName", "", [&](TraceArguments& arguments) { arguments.Add("key", key); });
    return AnsweredZeroForSuccess(scope, CallWithBuffer("VsKitMsgbusGetInfoByKeyName", out,
                                                        [&] { return VsKitMsgbusGetInfoByKeyName(key, out); }));
}

int32_t CheckedVsKitMsgbusManagedMode(unsigned int* mode) noexcept {
    Scope scope("VsKitMsgbusManagedMode", "");
    return AnsweredOneForSuccess(scope, VsKitMsgbusManagedMode(mode));
}

void CheckedVsKitMsgbusFreeTaskCookie(const wchar_t* productId, void* cookie) noexcept {
    const Scope scope("VsKitMsgbusFreeTaskCookie", productId);
    VsKitMsgbusFreeTaskCookie(productId, cookie);
}

void CheckedLpcBufferRelease(lpc_buffer* buffer) noexcept {
    if (MayRelease(*buffer)) {
        buffer->Release();
    } else {
        *buffer = lpc_buffer{};
    }
}

unsigned VsMsgbusCheckFindings(const char* rule) noexcept {
    return CountFindings(rule);
}
